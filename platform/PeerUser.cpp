#include "platform/PeerUser.h"

#include <sys/socket.h>
#include <unistd.h>

namespace roost {

bool isPeerThisUser(int descriptor)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && size == sizeof peer &&
           peer.uid == ::geteuid();
}

} // namespace roost

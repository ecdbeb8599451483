#include "platform/FreedMemory.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace roost {

void giveBackFreedMemory()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

} // namespace roost

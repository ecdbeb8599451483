#include "platform/CallbackInbox.h"

#include "model/RoostLog.h"
#include "platform/CallbackAddress.h"
#include "service/QueryItems.h"

#include <utility>

namespace roost {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view{}
                                           : text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

CallbackInbox::Verdict ignored(const char* why)
{
    qCInfo(RoostLog::auth, "callback ignored: %s", why);
    return CallbackInbox::Verdict::ignored;
}

} // namespace

CallbackInbox::Verdict CallbackInbox::offer(std::string_view address)
{
    address = trimmed(address);
    if (!isCallback(address, expected_ ? expected_->scheme : scheme_)) {
        qCInfo(RoostLog::auth, "callback ignored: it is no callback address");
        return Verdict::notCallback;
    }
    if (!expected_) {
        return ignored("no sign-in is waiting");
    }
    if (firstQueryItem(address, "state") != expected_->state) {
        return ignored("it belongs to another sign-in");
    }
    const Expected met = *std::exchange(expected_, std::nullopt);
    return met.take(std::string{address}) ? Verdict::taken : ignored("its sign-in is over");
}

} // namespace roost

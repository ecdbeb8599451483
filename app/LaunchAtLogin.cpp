#include "app/LaunchAtLogin.h"

namespace roost {

std::expected<void, std::string> LaunchAtLogin::set(LoginItem& item, bool enabled)
{
    const LoginItem::Status status = item.status();
    if (enabled) {
        return status == LoginItem::Status::enabled ? std::expected<void, std::string>{} : item.add();
    }
    return status == LoginItem::Status::notRegistered ? std::expected<void, std::string>{} : item.remove();
}

} // namespace roost

#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/ServiceState.h"

namespace roost::local {

/// What the links of a snapshot lead to: the overview "/roost/overview" and each profile's picture
/// "/roost/avatars/ID.svg". Main thread.
class PageRoutes {
public:
    explicit PageRoutes(const ServiceState& state) : state_(state) {}

    /// Whether the path belongs to these pages.
    static bool owns(const QByteArray& path);

    /// 200 with the page or picture, 404 for one that is not there, 405 unless the method is GET.
    Answer answer(const Request& request) const;

private:
    Answer overview() const;

    const ServiceState& state_;
};

} // namespace roost::local

#pragma once

#include "model/JsonFields.h"
#include "notify/AnnouncedLedger.h"

namespace roost {

template <>
struct JsonFields<AnnouncedLedger> {
    static constexpr auto fields = std::tuple(required("entries", &AnnouncedLedger::entries));
};

} // namespace roost

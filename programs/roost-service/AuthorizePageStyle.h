#pragma once

namespace roost::local {

/// The style sheet of the authorization page, light and dark.
extern const char* const authorizePageStyle;

} // namespace roost::local

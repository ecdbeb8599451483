#pragma once

#include "model/WebURL.h"

#include <functional>

namespace roost {

/// Shows a web address to the user. Main thread.
class BrowserOpener {
public:
    enum class Trouble {
        /// There is no display that a browser could show itself on.
        noDisplay,
        /// There is no opener on this machine, or it cannot be started.
        noOpener,
        /// The opener says that it failed.
        failed,
    };

    virtual ~BrowserOpener() = default;

    /// Opens `url` and goes on. `failed` is called at most once, inside this call or from the event loop,
    /// possibly much later, and not after this object is gone. Without that call the browser is taken to be
    /// open.
    virtual void open(WebURL url, std::function<void(Trouble)> failed) = 0;
};

} // namespace roost

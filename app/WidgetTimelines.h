#pragma once

namespace roost {

/// The widgets, as far as the app knows of them. Main thread.
class WidgetTimelines {
public:
    virtual ~WidgetTimelines() = default;

    /// Has every widget look at the shared file again. May reach nobody.
    virtual void reloadAll() = 0;
};

} // namespace roost

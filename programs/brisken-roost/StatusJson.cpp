#include "programs/brisken-roost/StatusJson.h"

#include "model/JsonEncode.h"
#include "programs/brisken-roost/StatusText.h"

namespace roost {

namespace {

/// What waybar reads from a module that returns JSON. Pango markup is on there, so texts are escaped.
struct WaybarModule {
    std::string text;
    std::string tooltip;
    std::string cssClass;
};

std::string escaped(const std::string& text)
{
    return QString::fromStdString(text).toHtmlEscaped().toStdString();
}

} // namespace

template <>
struct JsonNames<StatusReport::State> {
    static constexpr std::array<std::string_view, 5> names{"fresh", "stale", "waiting", "signedOut", "empty"};
};

template <>
struct JsonFields<StatusReport::Best> {
    using Record = StatusReport::Best;
    static constexpr auto fields =
        std::tuple(required("label", &Record::label), required("text", &Record::text),
                   link("url", &Record::url), required("views", &Record::views));
};

template <>
struct JsonFields<StatusReport::Entry> {
    using Record = StatusReport::Entry;
    static constexpr auto fields = std::tuple(
        optional("ageSeconds", &Record::ageSeconds), optional("best", &Record::best),
        optional("failed", &Record::failed), optional("fetchedAt", &Record::fetchedAt),
        optional("followersTotal", &Record::followersTotal),
        optional("lastAttemptAt", &Record::lastAttemptAt), required("profileId", &Record::profileId),
        required("profileName", &Record::profileName), optional("scheduled", &Record::scheduled),
        required("state", &Record::state), optional("viewsPrevious", &Record::viewsPrevious),
        optional("viewsTotal", &Record::viewsTotal));
};

template <>
struct JsonFields<StatusReport> {
    static constexpr auto fields =
        std::tuple(required("accounts", &StatusReport::accounts), required("state", &StatusReport::state));
};

template <>
struct JsonFields<WaybarModule> {
    using Record = WaybarModule;
    static constexpr auto fields =
        std::tuple(required("class", &Record::cssClass), required("text", &Record::text),
                   required("tooltip", &Record::tooltip));
};

std::string statusJson(const StatusReport& report) { return RoostJSON::encoder().encode(report) + "\n"; }

std::string statusWaybar(const StatusReport& report, const RoostFormat& format)
{
    WaybarModule module;
    module.cssClass = JsonNames<StatusReport::State>::names[static_cast<std::size_t>(report.state)];
    const auto shown = std::ranges::find(report.accounts, report.state, &StatusReport::Entry::state);
    if (shown != report.accounts.end()) {
        module.text = escaped(shown->viewsTotal ? format.compact(*shown->viewsTotal) : "–");
    }
    module.tooltip = escaped(statusText(report, format, {}));
    if (!module.tooltip.empty()) {
        module.tooltip.pop_back();
    }
    return RoostJSON::encoder().encode(module) + "\n";
}

} // namespace roost

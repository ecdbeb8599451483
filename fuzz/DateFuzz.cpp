#include "fuzz/Require.h"
#include "model/RoostJSON.h"

#include <QDateTime>

#include <cstdint>
#include <cstring>

namespace {

using namespace roost;
using fuzz::require;
using RoostJSON::formatDate;
using RoostJSON::parseDate;

/// The text with `what` at `at` instead of what follows there.
std::string ending(std::string_view text, std::size_t at, std::string_view what)
{
    return std::string{text.substr(0, at)}.append(what);
}

void checkDate(Date date)
{
    const std::string text = formatDate(date);
    require(text.size() == std::strlen("2025-01-01T00:00:00.000Z"), "dates are written in one form");
    require(parseDate(text) == date, "what was written is read as the same");
    require(dayString(date) == text.substr(0, 10), "a date is written with its day");
}

/// Qt reads more forms than these, but where it reads one it means the same instant.
void checkAgainstQt(std::string_view text, Date date)
{
    const QDateTime qt = QDateTime::fromString(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), Qt::ISODateWithMs);
    constexpr std::size_t exact =
        std::string_view{".000+00:00"}.size() + std::string_view{"2025-01-01T00:00:00"}.size();
    if (qt.isValid()) {
        const auto apart = qt.toMSecsSinceEpoch() - date.time_since_epoch().count();
        require(apart == 0 || (text.size() > exact && (apart == 1 || apart == -1)),
                "Qt reads the same instant");
    }
}

void checkText(std::string_view text)
{
    const auto date = parseDate(text);
    if (!date) {
        return;
    }
    checkDate(*date);
    checkAgainstQt(text, *date);
    require(!parseDate(text.substr(0, text.size() - 1)), "no date is the beginning of another");
    require(!parseDate(std::string{text}.append("Z")), "nothing follows a date");
    require(!parseDate(ending(text, 10, " ").append(text.substr(11))), "a T stands before the time");

    const std::size_t zone = text.find_first_of("Z+-", std::string_view{"2025-01-01T"}.size());
    const bool hasFraction = text.substr(0, zone).contains('.');
    require(parseDate(ending(text, zone, hasFraction ? "0" : ".0").append(text.substr(zone))) == date,
            "zeros at the end of a fraction mean nothing");
    if (text.substr(zone) == "Z") {
        require(parseDate(ending(text, zone, "+00:00")) == date, "Z is no offset");
        require(parseDate(ending(text, zone, "-0000")) == date, "Z is no offset");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    checkText({data, size});
    std::int64_t milliseconds = 0;
    if (size == sizeof milliseconds) {
        // Eight bytes are also an instant, brought into the years 0 to 9999.
        std::memcpy(&milliseconds, data, size);
        constexpr Date first{std::chrono::sys_days{std::chrono::year{0} / 1 / 1}};
        constexpr auto span = Date{std::chrono::sys_days{std::chrono::year{10000} / 1 / 1}} - first;
        const std::chrono::milliseconds into{milliseconds % span.count()};
        checkDate(first + (into.count() < 0 ? into + span : into));
    }
    return 0;
}

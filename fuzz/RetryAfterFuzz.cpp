#include "fuzz/Require.h"
#include "service/WidgetAPI.h"

#include <cmath>
#include <string>

namespace {

using namespace roost;
using fuzz::require;

void check(const std::string& text)
{
    const auto seconds = parseRetryAfter(QByteArray::fromStdString(text));
    // Qt reads fewer forms, always as in the C locale.
    bool isNumber = false;
    const double byQt = QByteArray::fromStdString(text).toDouble(&isNumber);
    if (seconds && isNumber && std::isfinite(byQt)) {
        require(*seconds == byQt, "Qt reads the same number");
    }
    if (!seconds) {
        return;
    }
    require(!text.empty(), "nothing is no number");
    require(!parseRetryAfter(QByteArray::fromStdString(" " + text)), "no blank stands before a number");
    require(!parseRetryAfter(QByteArray::fromStdString(text + " ")), "no blank stands after a number");
    require(!parseRetryAfter(QByteArray::fromStdString(text + "s")), "nothing stands after a number");
    if (text.front() != '-' && text.front() != '+') {
        const auto negative = parseRetryAfter(QByteArray::fromStdString("-" + text));
        require(negative && (*negative == -*seconds || std::isnan(*seconds)), "a sign turns a number round");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    check({data, size});
    return 0;
}

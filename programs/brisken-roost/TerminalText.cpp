#include "programs/brisken-roost/TerminalText.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <numeric>

namespace roost {

namespace {

/// The columns that `c` takes. The C locale knows ASCII alone, so a UTF-8 one is asked, whatever the process
/// uses.
int widthOf(char32_t c)
{
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = uselocale(utf8);
    const int width = wcwidth(static_cast<wchar_t>(c));
    uselocale(before);
    return std::max(width, 0);
}

/// Whether `c` turns the direction of what follows (UAX #9 §2), and with it what people read.
bool turnsText(char32_t c)
{
    return (c >= U'\u202a' && c <= U'\u202e') || (c >= U'\u2066' && c <= U'\u2069');
}

} // namespace

std::string onOneLine(const std::string& text)
{
    QString clean;
    for (const char32_t c : QString::fromStdString(text).toUcs4()) {
        const QChar::Category category = QChar::category(c);
        const bool breaks = category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
        if (c == U'\n' || c == U'\t' || breaks) {
            clean.append(QLatin1Char(' '));
        } else if (turnsText(c)) {
            continue;
        } else if (category == QChar::Other_Control) {
            clean.append(QChar{u'·'});
        } else {
            clean.append(QString::fromUcs4(&c, 1));
        }
    }
    return clean.toStdString();
}

std::string isolated(const std::string& text)
{
    const QList<uint> characters = QString::fromStdString(text).toUcs4();
    const bool turns = std::ranges::any_of(characters, [](char32_t c) {
        const QChar::Direction direction = QChar::direction(c);
        return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
    });
    return turns ? "\u2068" + text + "\u2069" : text;
}

int displayWidth(const std::string& text)
{
    const QList<uint> characters = QString::fromStdString(text).toUcs4();
    return std::accumulate(characters.begin(), characters.end(), 0,
                           [](int sum, char32_t c) { return sum + widthOf(c); });
}

std::string elided(const std::string& text, int width)
{
    if (displayWidth(text) <= width) {
        return text;
    }
    QString kept;
    int taken = 0;
    for (const char32_t c : QString::fromStdString(text).toUcs4()) {
        taken += widthOf(c);
        if (taken > width - 1) {
            break;
        }
        kept.append(QString::fromUcs4(&c, 1));
    }
    return kept.toStdString() + "…";
}

} // namespace roost

#include "model/RoostJSON.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace roost::RoostJSON {

namespace {

using namespace std::chrono;

constexpr Date earliest{sys_days{year{0} / January / 1}};
constexpr Date latest{sys_days{year{10000} / January / 1} - milliseconds{1}};

/// Takes a text apart from its front. Once something was not as expected, `failed` stays true.
class Cursor {
public:
    explicit Cursor(std::string_view text) : rest_{text} {}

    bool failed() const { return failed_; }
    void fail() { failed_ = true; }
    bool atEnd() const { return rest_.empty(); }

    bool takeIf(char c)
    {
        if (!rest_.starts_with(c)) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    void take(char c) { failed_ = !takeIf(c) || failed_; }

    /// The value of exactly `count` decimal digits.
    int number(int count)
    {
        int value = 0;
        for (int i = 0; i < count; ++i) {
            value = value * 10 + digit();
        }
        return value;
    }

    /// One or more digits after the point, as milliseconds rounded to the nearest, halves up.
    milliseconds fraction()
    {
        int tenths = 0; // tenths of a millisecond
        int digits = 0;
        do {
            const int next = digit();
            tenths = digits < 4 ? tenths * 10 + next : tenths;
            ++digits;
        } while (!failed_ && startsWithDigit());
        for (; digits < 4; ++digits) {
            tenths *= 10;
        }
        return milliseconds{(tenths + 5) / 10};
    }

private:
    bool startsWithDigit() const { return !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; }

    int digit()
    {
        if (!startsWithDigit()) {
            failed_ = true;
            return 0;
        }
        const int value = rest_.front() - '0';
        rest_.remove_prefix(1);
        return value;
    }

    std::string_view rest_;
    bool failed_ = false;
};

/// How far the local time is ahead of UTC; `failed` on any other form.
minutes takeOffset(Cursor& cursor)
{
    if (cursor.takeIf('Z')) {
        return minutes{0};
    }
    const bool behind = cursor.takeIf('-');
    if (!behind) {
        cursor.take('+');
    }
    const int hour = cursor.number(2);
    cursor.takeIf(':');
    const int minute = cursor.number(2);
    if (hour > 23 || minute > 59) {
        cursor.fail();
    }
    const minutes ahead = hours{hour} + minutes{minute};
    return behind ? -ahead : ahead;
}

char* putDigits(char* at, unsigned value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        at[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return at + count;
}

} // namespace

std::optional<Date> parseDate(std::string_view text)
{
    Cursor cursor{text};
    const year y{cursor.number(4)};
    cursor.take('-');
    const month m{static_cast<unsigned>(cursor.number(2))};
    cursor.take('-');
    const day d{static_cast<unsigned>(cursor.number(2))};
    cursor.take('T');
    const int hour = cursor.number(2);
    cursor.take(':');
    const int minute = cursor.number(2);
    cursor.take(':');
    const int second = cursor.number(2);
    const milliseconds fraction = cursor.takeIf('.') ? cursor.fraction() : milliseconds{0};
    const minutes offset = takeOffset(cursor);

    const year_month_day date = y / m / d;
    if (cursor.failed() || !cursor.atEnd() || !date.ok() || hour > 23 || minute > 59 || second > 60) {
        return std::nullopt;
    }
    Date instant = sys_days{date} + hours{hour} + minutes{minute} + seconds{second} - offset;
    if (second < 60) {
        instant += fraction;
    } else if (instant != floor<days>(instant)) {
        return std::nullopt;
    }
    return instant >= earliest && instant <= latest ? std::optional{instant} : std::nullopt;
}

std::string formatDate(Date date)
{
    date = std::clamp(date, earliest, latest);
    const auto midnight = floor<days>(date);
    const year_month_day day{midnight};
    const hh_mm_ss time{date - midnight};
    std::string text(sizeof "2025-01-01T00:00:00.000Z" - 1, '\0');
    char* at = putDigits(text.data(), static_cast<unsigned>(static_cast<int>(day.year())), 4);
    const auto put = [&at](char separator, unsigned value, int count) {
        *at++ = separator;
        at = putDigits(at, value, count);
    };
    put('-', static_cast<unsigned>(day.month()), 2);
    put('-', static_cast<unsigned>(day.day()), 2);
    put('T', static_cast<unsigned>(time.hours().count()), 2);
    put(':', static_cast<unsigned>(time.minutes().count()), 2);
    put(':', static_cast<unsigned>(time.seconds().count()), 2);
    put('.', static_cast<unsigned>(time.subseconds().count()), 3);
    *at = 'Z';
    return text;
}

} // namespace roost::RoostJSON

#include "tests/views/PathCases.h"

#include <cstdlib>
#include <random>
#include <string_view>

namespace roost::test {

namespace {

constexpr std::string_view shapes[] = {
    // Lines, closed and open, and moves that go on as lines.
    "M4 4L20 4L20 20L4 20Z", "M4 4L20 4 20 20 4 20Z", "M4 4 20 4 20 20 4 20z", "m4 4 16 0 0 16-16 0z",
    "m4 4l16 0l0 16l-16 0z", "m4,4 l16,0,0,16,-16,0 z", "M4 4H20V20H4Z", "M4 4h16v16h-16z",
    "M4 4H12 20V12 20H12 4z", "M4 4h8 8v8 8h-8-8z", "M2 2L22 12L2 22", "M2 2 22 12 2 22",
    "M.5.5.5 23.5 23.5.5", "M4 4L20 20M20 4L4 20", "M4 4l16 16m0-16l-16 16", "M3 12h18M12 3v18",
    "m3 12h18m-9-9v18",
    // Several subpaths: holes by direction, none by the same direction, and where a close leads back to.
    "M2 2H22V22H2ZM7 7V17H17V7Z", "M2 2H22V22H2ZM7 7H17V17H7Z", "M2 2h20v20h-20zm5 5v10h10v-10z",
    "M4 4h8v8h-8zl8 12l4-4z", "M4 4h8v8zm8 8h8v8z", "M4 4h6v6zh12v3z", "M12 2L18 20 2 9H22L6 20Z",
    // Numbers in all their spellings.
    "M4-.5.5 20-.5.5 20 20", "M+4+4L+20+4 20 20z", "M4e0 4E0L2e1 4 200e-1 .2e2z", "M4.L20.4 20.20z",
    "M 4 , 4 L\n20\t4 , 20 20 Z", "M0.4e1,4L2.E+1,4,20,2000e-2Z",
    // Cubic curves and their smooth continuation.
    "M2 12C2 2 22 2 22 12", "M2 12C2 2 22 2 22 12Z", "M2 12c0-10 20-10 20 0z",
    "M2 12C2 2 12 2 12 12 12 22 22 22 22 12", "M2 12c0-10 10-10 10 0 0 10 10 10 10 0",
    "M2 12C2 2 12 2 12 12S22 22 22 12", "M2 12c0-10 10-10 10 0s10 10 10 0", "M2 12S2 2 12 2 22 12 22 12",
    "M2 12s0-10 10-10 10 10 10 10", "M2 2L12 12S22 12 22 22", "M2 2l10 10s10 0 10 10",
    "M2 12Q7 2 12 12S22 22 22 12", "M2 12C2 2 8 2 8 8L14 14S22 14 22 22", "M2 20C20 20 2 2 22 4S4 22 12 22z",
    "M2 2C30 30-6 30 22 2", "M12 2C22 22 2 22 12 2C2 12 22 12 12 2",
    // Quadratic curves and their smooth continuation.
    "M2 22Q12 2 22 22", "M2 22Q12 2 22 22Z", "M2 22q10-20 20 0z", "M2 12Q7 2 12 12 17 22 22 12",
    "M2 12q5-10 10 0 5 10 10 0", "M2 12Q7 2 12 12T22 12", "M2 12q5-10 10 0t10 0",
    "M2 12Q4.5 2 7 12T12 12 17 12 22 12", "M2 12q2.5-10 5 0t5 0 5 0 5 0", "M2 12T12 2 22 12",
    "M2 12t10-10 10 10z", "M2 2L12 12T22 22 22 2", "M2 12C2 2 12 2 12 12T22 12 12 22",
    "M2 12Q7 2 12 12L14 12T22 4", "M2 12Q7 2 12 12M12 12T22 4 22 20z", "M2 12Q7 2 12 12ZT22 4 22 20z",
    // Arcs: none, a line, radii that do not reach, turned, and spelled tightly.
    "M4 12A8 8 0 0 0 4 12L20 20", "M4 12A0 8 0 0 1 20 12L12 20z", "M4 12A8 0 0 0 1 20 12L12 20z",
    "M2 12A3 3 0 0 1 22 12", "M2 12A3 3 0 0 0 22 12z", "M4 18A2 1 30 0 1 20 6", "M4 18A2 1 30 1 0 20 6",
    "M4 12A-8-8 0 0 1 20 12", "M12 2A10 10 0 1 1 11.9 2z", "M12 2A10 10 0 0 1 12 22 10 10 0 0 1 12 2",
    "M12 2a10 10 0 0 1 0 20 10 10 0 0 1 0-20", "M12 2a10 5 90 0 1 0 20a5 10 0 0 1 0-20z",
    "M4 12a8 8 0 0116 0 8 8 0 01-16 0z", "M4 12a8 8 0 01.5-4L12 12z", "M4 12a8,4,45,1,0,16,0z",
    "M4 12a8,4,-45,1,0,16,0z", "M4 12a8 4 405 1 0 16 0z", "M4 12a8 4 0 00 16 0L12 2z",
    "M4 12a8 8 0 0 1 8-8s8 0 8 8T12 20", "M12 12a.1.1 0 01.1.1L20 20V4z", "M2 12A1e3 1e3 0 0 1 22 12V22H2z"};

} // namespace

std::vector<std::string> writtenPaths()
{
    std::vector<std::string> paths{std::begin(shapes), std::end(shapes)};
    for (const char* radii : {"7 7", "9 5", "5 9"}) {
        for (const char* rotation : {"0", "30", "-60", "90"}) {
            for (const char* flags : {" 0 0 ", " 0 1 ", " 1 0 ", " 1 1 ", ",01", ",10"}) {
                const std::string arc = std::string{radii} + ' ' + rotation + flags;
                paths.push_back("M8 9A" + arc + "16 14Z");
                paths.push_back("m8 9a" + arc + "8 5L12 2");
            }
        }
    }
    return paths;
}

namespace {

/// Writes one random path.
class RandomPath {
public:
    explicit RandomPath(std::mt19937_64& random) : random_{random} {}

    std::string text()
    {
        text_ = below(4) == 0 ? "m" : "M";
        pair(false);
        for (int commands = 2 + below(7); commands > 0; --commands) {
            command();
        }
        return text_;
    }

private:
    int below(int end) { return std::uniform_int_distribution{0, end - 1}(random_); }

    void command()
    {
        constexpr std::string_view letters = "LlHhVvCcSsQqTtAaAaCcSsTtMmZz";
        char letter = letters[static_cast<std::size_t>(below(static_cast<int>(letters.size())))];
        if (hasMoved_ && (letter == 'Z' || letter == 'z')) {
            letter = 'L'; // A close right after a move is a dot to some renderers and nothing to others.
        }
        hasMoved_ = letter == 'M' || letter == 'm';
        const bool isRelative = letter >= 'a';
        text_ += letter;
        if (letter == 'Z' || letter == 'z') {
            return;
        }
        for (int repetitions = 1 + (below(3) == 0 ? below(3) : 0); repetitions > 0; --repetitions) {
            arguments(isRelative ? static_cast<char>(letter - 'a' + 'A') : letter, isRelative);
        }
    }

    void arguments(char command, bool isRelative)
    {
        switch (command) {
        case 'H':
        case 'V':
            coordinate(isRelative);
            return;
        case 'C':
            pair(isRelative);
            [[fallthrough]];
        case 'S':
        case 'Q':
            pair(isRelative);
            [[fallthrough]];
        default:
            pair(isRelative);
            return;
        case 'A':
            number(below(1500) - 50);
            number(below(1500) - 50);
            number((below(48) - 24) * 150);
            text_ += below(2) == 0 ? " " : ",";
            text_ += below(2) == 0 ? '0' : '1';
            text_ += below(2) == 0 ? "" : " ";
            text_ += below(2) == 0 ? '0' : '1';
            pair(isRelative);
            return;
        }
    }

    void pair(bool isRelative)
    {
        coordinate(isRelative);
        coordinate(isRelative);
    }

    void coordinate(bool isRelative) { number(isRelative ? below(2000) - 1000 : below(2400)); }

    /// That many hundredths, in one of the ways in which they can be written.
    void number(int hundredths)
    {
        std::string digits = std::to_string(std::abs(hundredths));
        digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, '0');
        const bool isNegative = hundredths < 0;
        if (below(4) == 0) {
            digits += "e-2";
        } else {
            digits.insert(digits.size() - 2, ".");
        }
        const char before = text_.back();
        const bool followsLetter = (before >= 'A' && before <= 'Z') || (before >= 'a' && before <= 'z');
        if (isNegative) {
            text_ += '-';
        } else if (followsLetter) {
            text_ += std::string_view{" \n+"}.substr(static_cast<std::size_t>(below(4)), 1); // or nothing
        } else {
            text_ += std::string_view{" ,\n+"}[static_cast<std::size_t>(below(4))];
        }
        text_ += digits;
    }

    std::mt19937_64& random_;
    /// Whether nothing has been drawn since the last move.
    bool hasMoved_ = true;
    std::string text_;
};

} // namespace

std::vector<std::string> randomPaths(int count)
{
    std::mt19937_64 random{24};
    std::vector<std::string> paths;
    for (int i = 0; i < count; ++i) {
        paths.push_back(RandomPath{random}.text());
    }
    return paths;
}

} // namespace roost::test

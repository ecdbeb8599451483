#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

const fs::path root{ROOST_SOURCE_DIR};

std::string textOf(const fs::path& file)
{
    std::ifstream stream{file};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

std::vector<std::string> matches(const std::string& text, const std::string& pattern)
{
    const std::regex expression{pattern};
    std::vector<std::string> found;
    for (std::sregex_iterator match{text.begin(), text.end(), expression}, end; match != end; ++match) {
        found.push_back(match->str(1));
    }
    return found;
}

/// Which rooms each room may include, by the table of the map.
std::map<std::string, std::set<std::string>> arrowsOf(const std::string& map)
{
    std::map<std::string, std::set<std::string>> arrows;
    std::istringstream lines{map};
    const std::regex row{R"(\| `(\w+)/` \|.*\|([^|]*)\|)"};
    for (std::string line; std::getline(lines, line);) {
        if (std::smatch match; std::regex_match(line, match, row)) {
            const auto rooms = matches(match.str(2), R"(`(\w+)/`)");
            arrows[match.str(1)] = {rooms.begin(), rooms.end()};
        }
    }
    return arrows;
}

/// The rooms that a source text enters: quoted includes, and imports of QML modules of ours ("import
/// Roost.Views").
std::set<std::string> roomsEntered(const std::string& source)
{
    std::set<std::string> rooms;
    std::ranges::copy(matches(source, R"(#\s*include\s+"(\w+)/)"), std::inserter(rooms, rooms.end()));
    for (std::string module : matches(source, R"(import\s+Roost\.(\w+))")) {
        module.front() = static_cast<char>(std::tolower(module.front()));
        rooms.insert(module);
    }
    return rooms;
}

std::vector<fs::path> sourcesIn(const std::string& room)
{
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator{root / room}) {
        const fs::path& file = entry.path();
        if (const auto ending = file.extension(); ending == ".cpp" || ending == ".h" || ending == ".qml") {
            files.push_back(file);
        }
    }
    return files;
}

/// "room/File.cpp enters other/" for every include that `arrows` does not allow.
std::vector<std::string> forbiddenArrows(const std::map<std::string, std::set<std::string>>& arrows)
{
    std::vector<std::string> forbidden;
    for (const auto& [room, allowed] : arrows) {
        for (const fs::path& file : sourcesIn(room)) {
            for (const std::string& entered : roomsEntered(textOf(file))) {
                if (entered != room && !allowed.contains(entered)) {
                    forbidden.push_back(fs::relative(file, root).string() + " enters " + entered + "/");
                }
            }
        }
    }
    return forbidden;
}

const std::string architecture = textOf(root / "ARCHITECTURE.md");

TEST(Rooms, AreAllInTheMap)
{
    const auto arrows = arrowsOf(architecture);
    std::vector<std::string> unknown;
    for (const fs::directory_entry& entry : fs::directory_iterator{root}) {
        const std::string name = entry.path().filename().string();
        if (entry.is_directory() && name != "build" && !name.starts_with('.') && !arrows.contains(name) &&
            !sourcesIn(name).empty()) {
            unknown.push_back(name);
        }
    }
    EXPECT_THAT(unknown, IsEmpty());
    EXPECT_TRUE(arrows.contains("model"));
}

TEST(Rooms, IncludeOnlyWhatTheMapAllows) { EXPECT_THAT(forbiddenArrows(arrowsOf(architecture)), IsEmpty()); }

TEST(Rooms, AreCheckedForArrowsThatAreNotInTheMap)
{
    auto arrows = arrowsOf(architecture);
    arrows.at("service").erase("model");
    EXPECT_THAT(forbiddenArrows(arrows),
                testing::Contains(testing::HasSubstr("service/WidgetAPI.h enters model/")));
}

TEST(Rooms, AreRecognisedInIncludesAndImports)
{
    EXPECT_THAT(roomsEntered("#include <QUrl>\n#include \"model/Date.h\"\nimport Roost"
                             ".Views 1.0\n"),
                testing::ElementsAre("model", "views"));
}

TEST(Rooms, LetOnlyTheAppsOwnSideOfTheBusKnowTheApp)
{
    // Whoever looks on from another process carries nothing of the app, and no secret with it.
    std::set<std::string> knowing;
    for (const fs::path& file : sourcesIn("bus")) {
        if (roomsEntered(textOf(file)).contains("app")) {
            knowing.insert(file.filename().string());
        }
    }
    EXPECT_THAT(knowing, testing::ElementsAre("ModelAdaptor.h", "ModelMethods.h"));
    const std::string build = textOf(root / "bus/CMakeLists.txt");
    const std::string looking = build.substr(0, build.find("add_library(roost_bus_app"));
    EXPECT_THAT(looking, testing::Not(testing::HasSubstr("ModelAdaptor")));
    EXPECT_THAT(looking, testing::Not(testing::HasSubstr("roost_app")));
}

TEST(Rooms, HaveNoCycles)
{
    const auto arrows = arrowsOf(architecture);
    for (const auto& [room, allowed] : arrows) {
        std::set<std::string> reached;
        std::vector<std::string> open{allowed.begin(), allowed.end()};
        while (!open.empty()) {
            const std::string next = open.back();
            open.pop_back();
            if (reached.insert(next).second && arrows.contains(next)) {
                open.insert(open.end(), arrows.at(next).begin(), arrows.at(next).end());
            }
        }
        EXPECT_FALSE(reached.contains(room)) << room;
    }
}

/// The paths that a page names and that do not exist.
std::vector<std::string> missingPathsOf(const std::string& page)
{
    std::vector<std::string> missing = matches(page, R"(`([\w.-]+/[\w./-]*)`)");
    std::erase_if(missing, [](const std::string& path) { return fs::exists(root / path); });
    return missing;
}

TEST(TheMap, NamesOnlyPathsThatExist) { EXPECT_THAT(missingPathsOf(architecture), IsEmpty()); }

TEST(TheNotesOnSecurity, NameATestThatExistsForEachClaim)
{
    const std::string page = textOf(root / "docs/security.md");
    EXPECT_GT(matches(page, R"((tests/\w+))").size(), 20U);
    EXPECT_THAT(missingPathsOf(page), IsEmpty());
}

TEST(TheLicences, KeepTheDevelopmentServiceOutOfWhatIsInstalled)
{
    // Qt HTTP Server is GPL-3.0-only: the program that uses it is for development and never packaged.
    EXPECT_THAT(textOf(root / "programs/roost-service/CMakeLists.txt"),
                testing::Not(testing::HasSubstr("install(")));
}

} // namespace

#pragma once

#include "tests/support/ScratchFolder.h"

#include <QProcessEnvironment>

#include <filesystem>
#include <string>

namespace roost::test {

/// A user's folders and desktop of this test alone: an environment for the real tools of the system, which
/// finds nothing that the machine has installed beside them, and a display that does not exist.
class ScratchDesktop {
public:
    ScratchDesktop()
    {
        for (const auto& [variable, folder] :
             {std::pair("HOME", "home"), std::pair("XDG_DATA_HOME", "data"),
              std::pair("XDG_CONFIG_HOME", "config"), std::pair("XDG_DATA_DIRS", "system"),
              std::pair("XDG_CONFIG_DIRS", "etc"), std::pair("XDG_RUNTIME_DIR", "run")}) {
            std::filesystem::create_directory(folder_ / folder);
            set(variable, (folder_ / folder).string());
        }
        std::filesystem::permissions(folder_ / "run", std::filesystem::perms::owner_all);
        std::filesystem::create_directory(folder_ / "bin");
        set("PATH", (folder_ / "bin").string() + ":/usr/bin:/bin");
        set("DISPLAY", ":999");
    }

    void set(const char* variable, const std::string& value)
    {
        environment.insert(QString::fromLatin1(variable), QString::fromStdString(value));
    }

    std::filesystem::path operator/(const std::filesystem::path& name) const { return folder_ / name; }

    /// A program of the user's, a shell script.
    std::filesystem::path script(const std::filesystem::path& name, const std::string& text) const
    {
        const std::filesystem::path file = folder_ / "bin" / name;
        std::filesystem::create_directories(file.parent_path());
        putBytes(file, "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }

    QProcessEnvironment environment;

private:
    ScratchFolder folder_;
};

} // namespace roost::test

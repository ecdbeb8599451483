#pragma once

#include "model/Settings.h"

namespace roost::test {

/// Settings without a file, which a test can look into.
class MemorySettings final : public Settings {
public:
    std::map<std::string, std::string, std::less<>> file;

private:
    std::optional<std::string> stored(std::string_view key) const override
    {
        const auto found = file.find(key);
        return found == file.end() ? std::nullopt : std::optional{found->second};
    }

    void store(std::string_view key, const std::optional<std::string>& text) override
    {
        if (text) {
            file.insert_or_assign(std::string{key}, *text);
        } else {
            file.erase(std::string{key});
        }
    }
};

} // namespace roost::test

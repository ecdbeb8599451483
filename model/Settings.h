#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace roost {

/// What the user has chosen, by key, over defaults that the program registers when it starts. Main thread.
class Settings {
public:
    /// What holds for a boolean as long as the user has not chosen.
    struct Default {
        std::string_view key;
        bool value = false;
    };

    virtual ~Settings() = default;

    /// Has these hold from now on, over earlier ones for the same keys. Nothing is stored.
    void registerDefaults(std::span<const Default> defaults);

    /// What the user chose, otherwise the default, otherwise false. A stored text that is no boolean counts
    /// as not chosen.
    bool boolean(std::string_view key) const;
    void setBoolean(std::string_view key, bool value);

    /// The stored text; nothing when there is none.
    std::optional<std::string> text(std::string_view key) const;

    /// Stores the text, or forgets what is stored.
    void setText(std::string_view key, const std::optional<std::string>& text);

private:
    /// What is stored now, maybe by another process. UTF-8.
    virtual std::optional<std::string> stored(std::string_view key) const = 0;

    /// Stores `text`, or removes the key. A failure leaves the other keys as they are; nobody is told, since
    /// the user can choose again.
    virtual void store(std::string_view key, const std::optional<std::string>& text) = 0;

    std::map<std::string, bool, std::less<>> defaults_;
};

} // namespace roost

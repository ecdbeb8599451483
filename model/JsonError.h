#pragma once

#include <string>

namespace roost {

/// Why a document could not be decoded.
struct JsonError {
    /// Where: keys and array positions, "accounts[2].snapshot.views"; empty for the document as a whole.
    std::string path;
    /// What was wrong there: "missing", "expected an integer, found a string". Quotes nothing of the document
    /// but a date that is none.
    std::string reason;

    /// Both, as one line: "profile.name: missing".
    std::string text() const { return path.empty() ? reason : path + ": " + reason; }

    bool operator==(const JsonError&) const = default;
};

} // namespace roost

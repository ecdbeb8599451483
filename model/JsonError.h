#pragma once

#include <string>

namespace roost {

/// Why a document could not be decoded.
struct JsonError {
    /// Where: the keys of records, and positions in arrays and among entries with keys of their own,
    /// "accounts[2].snapshot.views"; empty for the document as a whole.
    std::string path;
    /// What was wrong there: "missing", "expected an integer, found a string". Quotes nothing of the document
    /// but a date that is none.
    std::string reason;

    /// Both, as one line: "profile.name: missing".
    std::string text() const { return path.empty() ? reason : path + ": " + reason; }

    bool operator==(const JsonError&) const = default;
};

} // namespace roost

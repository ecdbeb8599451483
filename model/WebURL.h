#pragma once

#include <QStringView>
#include <QUrl>

#include <optional>
#include <string>
#include <string_view>

namespace roost {

/// An http or https address with a host, kept as the text that was received: `QUrl` rewrites the case of
/// hosts and percent-encodings, so wherever an address is a key or is compared, its text decides. A plain
/// value.
class WebURL {
public:
    /// The address in `text`, or nothing when it is no URL in UTF-8 (RFC 3986, strictly), has a scheme other
    /// than http and https (in any case), or has no host.
    static std::optional<WebURL> parse(std::string_view text);

    /// The text as received.
    const std::string& text() const { return text_; }

    /// The parsed address; valid, absolute, with a host.
    QUrl url() const;

    bool operator==(const WebURL&) const = default;

private:
    explicit WebURL(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

/// `base` with the path component `path` ("api/x", no leading slash) appended, one slash between, the rest of
/// the base kept byte for byte and its query and fragment dropped.
QUrl appendingPath(const QUrl& base, QStringView path);

} // namespace roost

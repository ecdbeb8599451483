#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <utility>
#include <vector>

namespace roost::local {

/// The fields of a query or of a form body, "application/x-www-form-urlencoded" as RFC 6749 appendix B has
/// it:
/// "+" is a blank, everything else that is encoded is percent-encoded. A plain value.
class FormFields {
public:
    /// Nothing when a "%" stands before anything but two hexadecimal digits, or when the text is not UTF-8
    /// after decoding.
    static std::optional<FormFields> parse(const QByteArray& text);

    /// The value of the first field of that name; nothing when there is none or when it is empty, which
    /// counts as left out (RFC 6749 §3.1).
    std::optional<QByteArray> value(QByteArrayView name) const;

    /// All values of that name that are not empty, in order.
    std::vector<QByteArray> values(QByteArrayView name) const;

    /// Whether there is more than one field of that name, empty ones among them.
    bool repeats(QByteArrayView name) const;

    /// Whether any name but "resource" comes more than once: RFC 6749 §3.1 and §3.2 forbid that of every
    /// parameter, RFC 8707 §2 allows it of that one.
    bool repeatsAny() const;

private:
    std::vector<std::pair<QByteArray, QByteArray>> fields_;
};

} // namespace roost::local

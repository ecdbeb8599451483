#include "programs/brisken-roost/SignInByHand.h"

#include <QByteArray>

namespace roost {

namespace {

/// The address with everything as %XX that is not printable ASCII: it comes from the service, and a terminal
/// acts upon some of it.
std::string printable(std::string_view url)
{
    QByteArray text;
    for (const char byte : url) {
        const bool isPlain = byte > ' ' && byte < '\x7f';
        text += isPlain ? QByteArray(1, byte) : '%' + QByteArray(1, byte).toHex().toUpper();
    }
    return text.toStdString();
}

} // namespace

void SignInByHand::tellAddress(std::string_view url)
{
    if (lines_) {
        return;
    }
    showAddress(url);
    say("Where it does not come back here by itself, paste the address that it went to (it begins with "
        "briskenroost:) and press Enter.\n");
    lines_ = std::make_unique<StandardInputLines>(
        StandardInputLines::Listener{.line = [this](const std::string& line) { take_(line); },
                                     .tooLong = [this] { say("That is too long for such an address.\n"); },
                                     .ended = [] {}});
}

void SignInByHand::showAddress(std::string_view url) const
{
    say("Where no browser opened, open this address:\n\n  " + printable(url) + "\n\n");
}

void SignInByHand::tell(CallbackInbox::Verdict verdict) const
{
    switch (verdict) {
    case CallbackInbox::Verdict::taken:
        break;
    case CallbackInbox::Verdict::ignored:
        say("That address belongs to another sign-in.\n");
        break;
    case CallbackInbox::Verdict::notCallback:
        say("That is not the address: it begins with briskenroost:\n");
        break;
    }
}

void SignInByHand::say(const std::string& text) const
{
    std::fputs(text.c_str(), output_);
    std::fflush(output_);
}

} // namespace roost

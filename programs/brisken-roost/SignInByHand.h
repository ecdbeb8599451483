#pragma once

#include "platform/CallbackInbox.h"
#include "platform/StandardInputLines.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace roost {

/// What a terminal offers to somebody who has to open the address of a sign-in by hand: tells the address,
/// and takes the one that the browser ends at when it is pasted. For one sign-in; main thread.
class SignInByHand {
public:
    /// `output` outlives this.
    explicit SignInByHand(std::FILE* output) : output_{output} {}

    /// `take` is given what is pasted, a line each, from the event loop.
    void onLine(std::function<void(const std::string& line)> take) { take_ = std::move(take); }

    /// Tells the address and begins to read standard input; nothing the second time.
    void tellAddress(std::string_view url);

    /// Tells the address, and leaves standard input alone.
    void showAddress(std::string_view url) const;

    /// Tells what became of a line, where that is not what was hoped for.
    void tell(CallbackInbox::Verdict verdict) const;

    void say(const std::string& text) const;

private:
    std::FILE* output_;
    std::function<void(const std::string&)> take_;
    std::unique_ptr<StandardInputLines> lines_;
};

} // namespace roost

#pragma once

#include "programs/common/ExitCode.h"

#include <string>
#include <string_view>

namespace roost {

/// What a command leaves to its caller: bytes for standard output, mostly a text, and a text for standard
/// error, each empty or ended by a newline where it is a text, and the exit code.
struct CommandResult {
    ExitCode code = ExitCode::fine;
    std::string output;
    std::string error;
};

/// A failure of `program` that is told in one sentence.
CommandResult failureOf(std::string_view program, ExitCode code, std::string_view sentence);

/// Writes both outputs, all of them, and gives what `main` returns: the exit code, or that of a failure when
/// standard output did not take everything.
int finished(const CommandResult& result);

} // namespace roost

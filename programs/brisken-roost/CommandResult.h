#pragma once

#include "programs/brisken-roost/ExitCode.h"

#include <string>

namespace roost {

/// What a command leaves to its caller: texts for standard output and standard error, each empty or ended by
/// a newline, and the exit code.
struct CommandResult {
    ExitCode code = ExitCode::fine;
    std::string output;
    std::string error;
};

/// A failure that is told in one sentence.
inline CommandResult failed(ExitCode code, std::string sentence)
{
    return {code, {}, "brisken-roost: " + std::move(sentence) + "\n"};
}

} // namespace roost

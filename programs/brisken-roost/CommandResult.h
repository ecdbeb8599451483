#pragma once

#include "programs/common/CommandResult.h"

namespace roost {

/// A failure that is told in one sentence.
inline CommandResult failed(ExitCode code, std::string_view sentence)
{
    return failureOf("brisken-roost", code, sentence);
}

} // namespace roost

#include "programs/common/CommandResult.h"

#include <cstdio>

namespace roost {

CommandResult failureOf(std::string_view program, ExitCode code, std::string_view sentence)
{
    CommandResult result{.code = code, .output = {}, .error = std::string{program}};
    result.error.append(": ").append(sentence).append("\n");
    return result;
}

int finished(const CommandResult& result)
{
    const std::string& output = result.output;
    const bool written =
        std::fwrite(output.data(), 1, output.size(), stdout) == output.size() && std::fflush(stdout) == 0;
    std::fputs(result.error.c_str(), stderr);
    return static_cast<int>(written ? result.code : ExitCode::failure);
}

} // namespace roost

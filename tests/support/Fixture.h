#pragma once

#include "tests/support/ScratchFolder.h"

#include <filesystem>
#include <stdexcept>
#include <string>

namespace roost::test {

/// The file tests/fixtures/`name`.
inline std::string fixture(const std::string& name)
{
    std::string bytes = bytesOf(std::filesystem::path{ROOST_SOURCE_DIR} / "tests" / "fixtures" / name);
    if (bytes.empty()) {
        throw std::runtime_error("no fixture " + name);
    }
    return bytes;
}

} // namespace roost::test

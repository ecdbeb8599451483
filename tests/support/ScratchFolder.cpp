#include "tests/support/ScratchFolder.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace roost::test {

ScratchFolder::ScratchFolder() : ScratchFolder{std::filesystem::temp_directory_path()} {}

ScratchFolder ScratchFolder::inMemory()
{
    constexpr const char* memory = "/dev/shm";
    return ::access(memory, W_OK | X_OK) == 0 ? ScratchFolder{memory} : ScratchFolder{};
}

ScratchFolder::ScratchFolder(const std::filesystem::path& above)
{
    std::string made = (above / "roost-test-XXXXXX").string();
    if (::mkdtemp(made.data()) == nullptr) {
        throw std::runtime_error("no scratch folder can be made: " + made);
    }
    path_ = made;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored; // what cannot be removed is left to the machine's own tidying
    std::filesystem::remove_all(path_, ignored);
}

std::string bytesOf(const std::filesystem::path& file)
{
    if (!std::filesystem::is_regular_file(file)) {
        return {};
    }
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

void putBytes(const std::filesystem::path& file, const std::string& bytes)
{
    std::ofstream{file, std::ios::binary} << bytes;
}

} // namespace roost::test

#pragma once

#include <filesystem>
#include <string>

namespace roost::test {

/// A new empty folder of this test, mode 0700, removed with everything in it at the end.
class ScratchFolder {
public:
    /// Below the machine's folder for temporary files.
    ScratchFolder();

    /// In memory, where the machine has a folder for that; otherwise as above.
    static ScratchFolder inMemory();

    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

private:
    explicit ScratchFolder(const std::filesystem::path& above);

    std::filesystem::path path_;
};

/// The bytes of a file; empty when it cannot be read.
std::string bytesOf(const std::filesystem::path& file);

/// Makes a file of these bytes, without any care.
void putBytes(const std::filesystem::path& file, const std::string& bytes);

} // namespace roost::test

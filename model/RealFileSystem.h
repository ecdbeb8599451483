#pragma once

#include "model/FileSystem.h"

namespace roost {

/// The machine's files, over the system calls. Holds no state.
class RealFileSystem final : public FileSystem {
public:
    std::error_code makeFolders(const std::filesystem::path& folder) override;
    std::expected<std::string, std::error_code> read(const std::filesystem::path& file,
                                                     std::size_t limit) override;
    std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
    openTemporary(const std::filesystem::path& file) override;
    std::error_code rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    std::error_code syncFolder(const std::filesystem::path& folder) override;
    std::error_code remove(const std::filesystem::path& file) override;
};

} // namespace roost

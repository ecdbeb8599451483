#pragma once

#include "model/FileSystem.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace roost::test {

/// Files in memory, for tests and simulations: the contract of `FileSystem` without a disk, and with it the
/// question what a power cut would have left. Paths are absolute. One thread.
class MemoryFileSystem final : public FileSystem {
public:
    std::error_code makeFolders(const std::filesystem::path& folder) override;
    std::expected<std::string, std::error_code> read(const std::filesystem::path& file,
                                                     std::size_t limit) override;
    std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
    openTemporary(const std::filesystem::path& file) override;
    std::error_code rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    std::error_code syncFolder(const std::filesystem::path& folder) override;
    std::error_code remove(const std::filesystem::path& file) override;

    /// Puts a file there, flushed, making its folder.
    void put(const std::filesystem::path& file, std::string_view bytes);

    /// The bytes of the file; nothing when there is none.
    std::optional<std::string> contents(const std::filesystem::path& file) const;

    /// The names in `folder`.
    std::set<std::string> names(const std::filesystem::path& folder) const;

    /// What a power cut does with the names that changed since their folder was last flushed: a disk is free
    /// to do either.
    enum class UnflushedNames { lost, kept };

    /// Leaves only what had reached the disk: of every file the bytes of its last flush.
    void cutPower(UnflushedNames names);

private:
    struct File {
        std::string bytes;
        std::string flushed;
        bool isLocked = false;
    };
    using Names = std::map<std::string, std::shared_ptr<File>>;
    struct Folder {
        Names names;
        Names flushed;
    };
    class Temporary;

    Folder* folderOf(const std::filesystem::path& file);
    std::shared_ptr<File> find(const std::filesystem::path& file) const;

    std::map<std::filesystem::path, Folder> folders_{{"/", {}}};
};

} // namespace roost::test

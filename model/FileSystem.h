#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace roost {

/// A file that is being written and that nobody reads yet. Closed by its destruction; left where it is.
class TemporaryFile {
public:
    virtual ~TemporaryFile() = default;

    /// Appends all of `bytes`.
    virtual std::error_code write(std::string_view bytes) = 0;

    /// Returns when what was written is on the disk.
    virtual std::error_code sync() = 0;
};

/// The file operations of the stores, one virtual per step that can fail, so that a test can make each fail.
/// Calls block, about a millisecond for the small files of this program; one thread at a time. Errors are
/// those of the operating system.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Makes `folder` and the folders above it that are missing, all with mode 0700. An existing folder is
    /// fine when it belongs to this user; otherwise `permission_denied`.
    virtual std::error_code makeFolders(const std::filesystem::path& folder) = 0;

    /// All bytes of the file. `file_too_large` when they are more than `limit`.
    virtual std::expected<std::string, std::error_code> read(const std::filesystem::path& file,
                                                             std::size_t limit) = 0;

    /// The empty temporary file at `file`, mode 0600, locked for this writer: made, or taken over from a
    /// writer that died. `device_or_resource_busy` when another writer holds it for longer than a tenth of a
    /// second.
    virtual std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
    openTemporary(const std::filesystem::path& file) = 0;

    /// Puts `from` in the place of `to` in one step; `to` need not exist.
    virtual std::error_code rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

    /// Returns when the names in `folder` are on the disk.
    virtual std::error_code syncFolder(const std::filesystem::path& folder) = 0;

    /// Removes the file; a missing file is no error.
    virtual std::error_code remove(const std::filesystem::path& file) = 0;
};

/// Replaces `file` by `bytes`, atomically and durably: temporary file beside it, flushed to disk, renamed
/// over it, folder flushed. A reader sees the old or the new bytes, whole. On any error but that of the last
/// flush the old file stays as it was, and the temporary file is removed.
std::error_code replaceFile(FileSystem& files, const std::filesystem::path& file, std::string_view bytes);

} // namespace roost

#pragma once

#include "model/FileSystem.h"

#include <functional>
#include <optional>
#include <vector>

namespace roost::test {

/// Another file system, of which a test makes chosen operations fail. It must outlive this one and every
/// temporary file opened here. One thread.
class FailingFileSystem final : public FileSystem {
public:
    enum class Operation { makeFolders, read, openTemporary, write, sync, rename, syncFolder, remove };

    explicit FailingFileSystem(FileSystem& behind) : behind_{behind} {}

    /// The operation that follows after `n` others fails with `error` instead of happening; a write brings
    /// half of its bytes to the file first, as on a disk that fills up.
    void failAfter(std::size_t n, std::error_code error);

    /// From now on every `operation` fails with `error`.
    void failEvery(Operation operation, std::error_code error);

    /// From now on every operation fails with `error`.
    void failAll(std::error_code error);

    /// No more failures.
    void recover();

    /// Called before each operation with how many there were before it, even before those that fail.
    void beforeEach(std::function<void(std::size_t)> call) { beforeEach_ = std::move(call); }

    /// Every operation so far, failed ones too.
    const std::vector<Operation>& seen() const { return seen_; }

    /// How many of them failed because a test wanted it.
    std::size_t failures() const { return failures_; }

    std::error_code makeFolders(const std::filesystem::path& folder) override;
    std::expected<std::string, std::error_code> read(const std::filesystem::path& file,
                                                     std::size_t limit) override;
    std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
    openTemporary(const std::filesystem::path& file) override;
    std::error_code rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    std::error_code syncFolder(const std::filesystem::path& folder) override;
    std::error_code remove(const std::filesystem::path& file) override;

private:
    class Temporary;

    /// Notes the operation and says whether it has to fail.
    std::error_code fault(Operation operation);
    std::error_code wanted(Operation operation, std::size_t before) const;

    FileSystem& behind_;
    std::vector<Operation> seen_;
    std::function<void(std::size_t)> beforeEach_;
    std::optional<std::size_t> failing_;
    std::error_code onceError_;
    std::optional<Operation> always_;
    std::error_code alwaysError_;
    std::error_code allError_;
    std::size_t failures_ = 0;
};

} // namespace roost::test

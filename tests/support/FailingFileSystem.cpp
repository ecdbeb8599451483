#include "tests/support/FailingFileSystem.h"

#include <utility>

namespace roost::test {

class FailingFileSystem::Temporary final : public TemporaryFile {
public:
    Temporary(FailingFileSystem& files, std::unique_ptr<TemporaryFile> behind)
        : files_{files},
          behind_{std::move(behind)}
    {
    }

    std::error_code write(std::string_view bytes) override
    {
        if (const std::error_code failed = files_.fault(Operation::write)) {
            static_cast<void>(behind_->write(bytes.substr(0, bytes.size() / 2)));
            return failed;
        }
        return behind_->write(bytes);
    }

    std::error_code sync() override
    {
        const std::error_code failed = files_.fault(Operation::sync);
        return failed ? failed : behind_->sync();
    }

private:
    FailingFileSystem& files_;
    std::unique_ptr<TemporaryFile> behind_;
};

void FailingFileSystem::failAfter(std::size_t n, std::error_code error)
{
    failing_ = seen_.size() + n;
    onceError_ = error;
}

void FailingFileSystem::failEvery(Operation operation, std::error_code error)
{
    always_ = operation;
    alwaysError_ = error;
}

void FailingFileSystem::failAll(std::error_code error) { allError_ = error; }

void FailingFileSystem::recover()
{
    failing_.reset();
    always_.reset();
    allError_.clear();
}

std::error_code FailingFileSystem::fault(Operation operation)
{
    const std::size_t before = seen_.size();
    seen_.push_back(operation);
    if (beforeEach_) {
        beforeEach_(before);
    }
    const std::error_code failed = wanted(operation, before);
    if (failed) {
        ++failures_;
    }
    return failed;
}

std::error_code FailingFileSystem::wanted(Operation operation, std::size_t before) const
{
    if (allError_) {
        return allError_;
    }
    if (failing_ == before) {
        return onceError_;
    }
    return always_ == operation ? alwaysError_ : std::error_code{};
}

std::error_code FailingFileSystem::makeFolders(const std::filesystem::path& folder)
{
    const std::error_code failed = fault(Operation::makeFolders);
    return failed ? failed : behind_.makeFolders(folder);
}

std::expected<std::string, std::error_code> FailingFileSystem::read(const std::filesystem::path& file,
                                                                    std::size_t limit)
{
    if (const std::error_code failed = fault(Operation::read)) {
        return std::unexpected(failed);
    }
    return behind_.read(file, limit);
}

std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
FailingFileSystem::openTemporary(const std::filesystem::path& file)
{
    if (const std::error_code failed = fault(Operation::openTemporary)) {
        return std::unexpected(failed);
    }
    auto opened = behind_.openTemporary(file);
    if (!opened) {
        return std::unexpected(opened.error());
    }
    return std::make_unique<Temporary>(*this, std::move(*opened));
}

std::error_code FailingFileSystem::rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const std::error_code failed = fault(Operation::rename);
    return failed ? failed : behind_.rename(from, to);
}

std::error_code FailingFileSystem::syncFolder(const std::filesystem::path& folder)
{
    const std::error_code failed = fault(Operation::syncFolder);
    return failed ? failed : behind_.syncFolder(folder);
}

std::error_code FailingFileSystem::remove(const std::filesystem::path& file)
{
    const std::error_code failed = fault(Operation::remove);
    return failed ? failed : behind_.remove(file);
}

} // namespace roost::test

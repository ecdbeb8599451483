#include "tests/support/MemoryFileSystem.h"

#include <utility>

namespace roost::test {

namespace {

std::filesystem::path tidied(const std::filesystem::path& path)
{
    const std::filesystem::path normal = path.lexically_normal();
    return normal.has_filename() || normal == "/" ? normal : normal.parent_path();
}

} // namespace

class MemoryFileSystem::Temporary final : public TemporaryFile {
public:
    explicit Temporary(std::shared_ptr<File> file) : file_{std::move(file)} { file_->isLocked = true; }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;
    ~Temporary() override { file_->isLocked = false; }

    std::error_code write(std::string_view bytes) override
    {
        file_->bytes.append(bytes);
        return {};
    }

    std::error_code sync() override
    {
        file_->flushed = file_->bytes;
        return {};
    }

private:
    std::shared_ptr<File> file_;
};

MemoryFileSystem::Folder* MemoryFileSystem::folderOf(const std::filesystem::path& file)
{
    const auto found = folders_.find(tidied(file).parent_path());
    return found == folders_.end() ? nullptr : &found->second;
}

std::shared_ptr<MemoryFileSystem::File> MemoryFileSystem::find(const std::filesystem::path& file) const
{
    const std::filesystem::path path = tidied(file);
    const auto folder = folders_.find(path.parent_path());
    if (folder == folders_.end()) {
        return nullptr;
    }
    const auto found = folder->second.names.find(path.filename());
    return found == folder->second.names.end() ? nullptr : found->second;
}

std::error_code MemoryFileSystem::makeFolders(const std::filesystem::path& folder)
{
    std::filesystem::path above;
    for (const std::filesystem::path& part : tidied(folder)) {
        above /= part;
        if (above.has_relative_path() && find(above)) {
            return std::make_error_code(std::errc::not_a_directory);
        }
    }
    for (std::filesystem::path made = tidied(folder); !folders_.contains(made); made = made.parent_path()) {
        folders_[made];
    }
    return {};
}

std::expected<std::string, std::error_code> MemoryFileSystem::read(const std::filesystem::path& file,
                                                                   std::size_t limit)
{
    if (folders_.contains(tidied(file))) {
        return std::unexpected(std::make_error_code(std::errc::invalid_argument));
    }
    const auto found = find(file);
    if (!found) {
        return std::unexpected(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    if (found->bytes.size() > limit) {
        return std::unexpected(std::make_error_code(std::errc::file_too_large));
    }
    return found->bytes;
}

std::expected<std::unique_ptr<TemporaryFile>, std::error_code>
MemoryFileSystem::openTemporary(const std::filesystem::path& file)
{
    Folder* folder = folderOf(file);
    if (folder == nullptr) {
        return std::unexpected(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    if (folders_.contains(tidied(file))) {
        return std::unexpected(std::make_error_code(std::errc::is_a_directory));
    }
    auto& found = folder->names[tidied(file).filename()];
    if (!found) {
        found = std::make_shared<File>();
    }
    if (found->isLocked) {
        return std::unexpected(std::make_error_code(std::errc::device_or_resource_busy));
    }
    found->bytes.clear();
    return std::make_unique<Temporary>(found);
}

std::error_code MemoryFileSystem::rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
    Folder* source = folderOf(from);
    Folder* target = folderOf(to);
    const auto moved = find(from);
    if (!moved || target == nullptr) {
        return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    if (folders_.contains(tidied(to))) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    source->names.erase(tidied(from).filename());
    target->names[tidied(to).filename()] = moved;
    return {};
}

std::error_code MemoryFileSystem::syncFolder(const std::filesystem::path& folder)
{
    const auto found = folders_.find(tidied(folder));
    if (found == folders_.end()) {
        return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    found->second.flushed = found->second.names;
    return {};
}

std::error_code MemoryFileSystem::remove(const std::filesystem::path& file)
{
    if (folders_.contains(tidied(file))) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    if (Folder* folder = folderOf(file)) {
        folder->names.erase(tidied(file).filename());
    }
    return {};
}

void MemoryFileSystem::put(const std::filesystem::path& file, std::string_view bytes)
{
    // In memory neither fails.
    static_cast<void>(makeFolders(tidied(file).parent_path()));
    const std::string text{bytes};
    folderOf(file)->names[tidied(file).filename()] = std::make_shared<File>(File{text, text, false});
    static_cast<void>(syncFolder(tidied(file).parent_path()));
}

std::optional<std::string> MemoryFileSystem::contents(const std::filesystem::path& file) const
{
    const auto found = find(file);
    return found ? std::optional{found->bytes} : std::nullopt;
}

std::set<std::string> MemoryFileSystem::names(const std::filesystem::path& folder) const
{
    std::set<std::string> all;
    if (const auto found = folders_.find(tidied(folder)); found != folders_.end()) {
        for (const auto& [name, file] : found->second.names) {
            all.insert(name);
        }
    }
    return all;
}

void MemoryFileSystem::cutPower(UnflushedNames names)
{
    for (auto& [path, folder] : folders_) {
        if (names == UnflushedNames::lost) {
            folder.names = folder.flushed;
        }
        for (auto& [name, file] : folder.names) {
            // Who still holds the old file writes into nothing.
            file = std::make_shared<File>(File{file->flushed, file->flushed, false});
        }
        folder.flushed = folder.names;
    }
}

} // namespace roost::test

#include "model/FileSystem.h"

namespace roost {

std::error_code replaceFile(FileSystem& files, const std::filesystem::path& file, std::string_view bytes)
{
    std::filesystem::path beside = file;
    beside.replace_filename("." + file.filename().string() + ".new");
    // The temporary file stays open, and so locked, until it has its final name.
    const auto temporary = files.openTemporary(beside);
    if (!temporary) {
        return temporary.error();
    }
    std::error_code failed = (*temporary)->write(bytes);
    if (!failed) {
        failed = (*temporary)->sync();
    }
    if (!failed) {
        failed = files.rename(beside, file);
    }
    if (failed) {
        // Best effort: what stays is taken over by the next writer.
        static_cast<void>(files.remove(beside));
        return failed;
    }
    return files.syncFolder(file.parent_path());
}

} // namespace roost

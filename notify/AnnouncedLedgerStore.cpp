#include "notify/AnnouncedLedgerStore.h"

#include "model/JsonDecode.h"
#include "model/JsonEncode.h"
#include "notify/AnnouncedLedgerFields.h"

namespace roost {

AnnouncedLedgerStore::AnnouncedLedgerStore(FileSystem& files, std::filesystem::path url)
    : files_{&files},
      url_{std::move(url)}
{
}

std::filesystem::path AnnouncedLedgerStore::location(const SharedContainer::UserFolders& folders)
{
    return folders.data.value_or(folders.temporary) / "BriskenRoost" / "announced.json";
}

AnnouncedLedger AnnouncedLedgerStore::load() const
{
    constexpr std::size_t largest = std::size_t{512} * 1024 * 1024;
    auto bytes = files_->read(url_, largest);
    if (!bytes) {
        return {};
    }
    auto decoded = RoostJSON::decoder().decode<AnnouncedLedger>(*std::move(bytes));
    return decoded ? *std::move(decoded) : AnnouncedLedger{};
}

std::expected<void, std::error_code> AnnouncedLedgerStore::save(const AnnouncedLedger& ledger) const
{
    // Without the folder the write below fails, and that is what counts.
    static_cast<void>(files_->makeFolders(url_.parent_path()));
    if (const auto failed = replaceFile(*files_, url_, RoostJSON::encoder().encode(ledger))) {
        return std::unexpected(failed);
    }
    return {};
}

} // namespace roost

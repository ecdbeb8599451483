#include "model/WidgetStore.h"

#include "model/RoostJSON.h"
#include "model/RoostLog.h"
#include "model/RoostStoreFileFields.h"

namespace roost {

namespace {

constexpr std::size_t largest = std::size_t{512} * 1024 * 1024;

} // namespace

WidgetStore::WidgetStore(FileSystem& files, std::filesystem::path directory)
    : files_{&files},
      directory_{std::move(directory)}
{
}

std::filesystem::path WidgetStore::file() const { return directory_ / "widget-state.json"; }

std::expected<void, std::error_code> WidgetStore::write(const RoostStoreFile& contents,
                                                        std::error_code said) const
{
    std::error_code failed = files_->makeFolders(directory_);
    if (!failed) {
        failed = replaceFile(*files_, file(), RoostJSON::encoder().encode(contents));
    }
    if (!failed) {
        return {};
    }
    if (failed != said) {
        qCCritical(RoostLog::console).noquote()
            << QStringLiteral("Brisken Roost: could not write the widget snapshot (%1)")
                   .arg(QString::fromStdString(failed.message()));
    }
    return std::unexpected(failed);
}

std::optional<RoostStoreFile> WidgetStore::read() const
{
    auto bytes = files_->read(file(), largest);
    if (!bytes) {
        return std::nullopt;
    }
    auto decoded = RoostJSON::decoder().decode<RoostStoreFile>(*std::move(bytes));
    return decoded ? std::optional{*std::move(decoded)} : std::nullopt;
}

bool WidgetStore::isWithheld() const
{
    const auto bytes = files_->read(file(), largest);
    return !bytes && bytes.error() != std::errc::no_such_file_or_directory &&
           bytes.error() != std::errc::file_too_large;
}

} // namespace roost

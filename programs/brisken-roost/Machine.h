#pragma once

#include "model/InfoDictionary.h"
#include "model/RealFileSystem.h"
#include "platform/FileRefreshLock.h"
#include "platform/KeychainSecretStore.h"
#include "programs/brisken-roost/AccountServices.h"
#include "service/NetworkHttpSession.h"

#include <QUrl>

#include <chrono>
#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace roost {

/// The real parts that the commands work with, each made when it is first asked for: `status` opens neither
/// the keyring nor the network. Owned by `main`; main thread.
class Machine {
public:
    explicit Machine(InfoDictionary info) : info_(std::move(info)) {}

    FileSystem& files() { return files_; }
    WidgetStore store();
    NetworkHttpSession& session();

    /// The file by which the app and the commands about the profiles in the store keep out of each other's
    /// way; its folder is made.
    std::filesystem::path appLockFile();

    /// The service that `text` names, or the build's own. The error is a sentence: such an address must not
    /// be told tokens.
    std::expected<QUrl, std::string> base(const std::optional<QString>& text) const;

    /// From one refresh of the running app to the next. The error is a sentence.
    std::expected<std::chrono::seconds, std::string> refreshInterval() const;

    /// What the commands about profiles of the service at `base` work with. Valid as long as this is.
    AccountServices services(const QUrl& base);

    /// What was chosen, and what was announced: the user's, or beside the numbers of a build for trying,
    /// which has a group of its own.
    std::filesystem::path settingsFile();
    std::filesystem::path ledgerFile();

    /// Where what the desktop starts at login is registered: the user's folder; for a build for trying one
    /// beside its numbers, where no desktop looks. Nothing without a home.
    std::optional<std::filesystem::path> autostartFolder();

private:
    bool isTrial() const;
    std::filesystem::path locks();

    InfoDictionary info_;
    RealFileSystem files_;
    std::unique_ptr<NetworkHttpSession> session_;
    std::unique_ptr<KeychainSecretStore> secrets_;
    std::unique_ptr<FileRefreshLock> lock_;
    std::unique_ptr<OAuthClient> oauth_;
};

} // namespace roost

#pragma once

#include "app/Announcements.h"
#include "app/WidgetTimelines.h"
#include "model/AppState.h"
#include "model/Clock.h"
#include "model/WidgetStore.h"
#include "service/AccountSession.h"
#include "service/OAuthClient.h"
#include "service/RefreshLock.h"
#include "service/SecretStore.h"

#include <QCoro/QCoroTask>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace roost {

/// The profiles: their records, which it publishes and writes to the shared file, and the sessions of those
/// that are signed in. Who is signed in is the secret store's to say. Belongs to `AppModel`; main thread;
/// outlives its tasks, as does everything that it refers to.
class Accounts {
public:
    using Session = std::shared_ptr<AccountSession>;

    struct Parts {
        WidgetStore store;
        SecretStore& secrets;
        OAuthClient oauth;
        RefreshLock& lock;
        WidgetTimelines& widgets;
        Clock now;
        /// What a profile is called until its first snapshot names it, in the user's language.
        std::function<std::string()> unnamed;
    };

    Accounts(AppState& state, Announcements& announcements, Parts parts);
    Accounts(const Accounts&) = delete;
    Accounts& operator=(const Accounts&) = delete;

    /// Publishes the records of the shared file. When it was written; nothing when there is none to be read.
    std::optional<Date> loadRecords();

    /// Asks the secret store who is signed in, and has records and sessions follow. While the store cannot
    /// tell, which is logged once, the records stay as they are, and those that are not signed out get
    /// sessions, which find out. A store that has told is not asked again: from then on signing in and out
    /// happens here. Whether this was the first answer; then the file is written.
    QCoro::Task<bool> loadSignedIn();

    /// Whether the secret store has said who is signed in.
    bool isTold() const { return isTold_; }

    /// The session of a profile that is signed in, or null.
    Session session(const std::string& profileId) const;

    /// The same, made where there is none.
    Session sessionMade(const std::string& profileId);

    /// Gives the profile's session the tokens of a fresh sign-in. A store that refuses the refresh token is
    /// told on the console; the session then keeps it as long as the program runs.
    QCoro::Task<void> adopt(std::string profileId, TokenSet tokens);

    /// One refresh of one profile, as of its beginning.
    struct Attempt {
        Session session;
        /// The changes before it.
        std::uint64_t begun;
    };

    /// A refresh that begins now; nothing when the profile is not signed in.
    std::optional<Attempt> attempt(const std::string& profileId) const;

    /// Folds in what a refresh came to. Nothing when the profile was signed out or in anew meanwhile: then
    /// these numbers, and that verdict, are older than what is shown.
    void apply(SyncOutcome::Any outcome, const Attempt& attempt);

    /// Folds in the first snapshot of a sign-in, as that of any refresh: in place of the profile's record, or
    /// as the last one. Without a record what it tells is only remembered; after one it is announced.
    void welcome(RoostSnapshot snapshot);

    /// Drops the profile's record and session at once, has the store forget its token, and writes the file.
    QCoro::Task<void> signOut(std::string profileId);

    /// Tries once more to have the store forget the tokens of profiles that were signed out, by their users
    /// or by the service, while it could not be asked.
    QCoro::Task<void> forgetAtLast();

    /// Writes the records to the shared file; `Reload::yes` has the widgets look at it.
    enum class Reload { no, yes };
    void persist(Reload reload);

    /// Tries once more to write records that could not be written the last time.
    void persistUnsaved();

    /// Ends when every session's refresh has ended and its token is stored, or cannot be. No session hands
    /// out tokens any more.
    QCoro::Task<void> quit();

private:
    void noteSilence(std::optional<SecretsUnavailable> why);
    void trustRecords();
    void follow(const std::vector<std::string>& keys);
    void fold(RoostAccountRecord record, SyncOutcome::Any outcome);
    void recover();
    void takeUp(RoostAccountRecord record);
    void dismiss(const Session& session);

    AppState* state_;
    Announcements* announcements_;
    Parts parts_;
    std::map<std::string, Session> sessions_;
    /// Of profiles that were signed out, as long as they are doing something.
    std::vector<std::weak_ptr<AccountSession>> former_;
    /// Of profiles whose token may still be in the store although they are signed out.
    std::set<Session> unforgotten_;
    bool isTold_ = false;
    /// Why the secret store could not tell when it was last asked.
    std::optional<SecretsUnavailable> silence_;
    /// The profiles that the user signed out here, and that have not signed in since.
    std::set<std::string> gone_;
    /// Raised whenever a profile signs in or out here.
    std::uint64_t changes_ = 0;
    /// When each profile last signed in here, in `changes_`.
    std::map<std::string, std::uint64_t> signIns_;
    /// Whether there is a file that could not be read, whose records must not be lost.
    bool isWithheld_ = false;
    /// Why the file is older than the records; nothing when it is not.
    std::error_code unwritten_;
};

} // namespace roost

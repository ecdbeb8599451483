#pragma once

#include <QCoro/QCoroTask>

#include <chrono>
#include <map>
#include <string>

namespace roost {

/// The system's place for notifications. Main thread; outlives its tasks.
class NotificationCenter {
public:
    /// Whether this program may notify. Only `provisional` and `authorized` mean yes.
    enum class Authorization { notDetermined, denied, provisional, authorized };

    /// What travels with a notification and comes back when it is opened. Nobody sees it.
    using UserInfo = std::map<std::string, std::string>;

    /// A notification to show at once, with the system's default sound. Texts are plain UTF-8: characters
    /// that mean something to a system's markup stand for themselves.
    struct Request {
        /// A notification that is still shown under the same identifier is replaced.
        std::string identifier;
        std::string title;
        std::string body;
        /// Notifications that belong together have the same.
        std::string threadIdentifier;
        UserInfo userInfo;

        bool operator==(const Request&) const = default;
    };

    /// Hears what the user does.
    class Delegate {
    public:
        virtual ~Delegate() = default;

        /// The user opened a notification of this program, maybe one of an earlier process.
        virtual void userOpened(UserInfo userInfo) = 0;
    };

    virtual ~NotificationCenter() = default;

    /// Who is told of responses from now on; null for nobody. Must outlive this or be taken back.
    virtual void setDelegate(Delegate* delegate) = 0;

    /// Whether this program may notify now, without asking anybody. `denied` when nothing answers within
    /// `limit`.
    virtual QCoro::Task<Authorization> authorization(std::chrono::milliseconds limit) = 0;

    /// The same, after the user was asked where the system has a way to ask.
    virtual QCoro::Task<Authorization> requestAuthorization(std::chrono::milliseconds limit) = 0;

    /// Hands the notification over. Whether it was taken; false also when nothing answers within `limit`.
    virtual QCoro::Task<bool> add(Request request, std::chrono::milliseconds limit) = 0;
};

} // namespace roost

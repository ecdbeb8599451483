#pragma once

#include "programs/roost-service/AuthorizeRequest.h"
#include "programs/roost-service/HttpValues.h"

#include <QString>

#include <vector>

namespace roost::local {

/// A profile that the user can pick.
struct PageProfile {
    QString id;
    QString name;
    /// Where its picture is, on this origin.
    QString picture;
};

/// The page that asks the user. No script; no frame may hold it, no cache keep it, and its form leads back
/// here or to the client's redirect URI alone. `ticket` comes back with the decision, under "ticket", beside
/// "profile" and "decision" ("allow" or "deny"). The first profile is picked; there is at least one.
Answer consentPage(const AuthorizeRequest& request, const std::vector<PageProfile>& profiles,
                   const QByteArray& ticket);

/// 400: a page that says why it goes no further, in one sentence.
Answer refusalPage(const QString& sentence);

} // namespace roost::local

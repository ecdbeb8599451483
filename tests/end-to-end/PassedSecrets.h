#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/RandomBytes.h"

#include <QByteArray>

#include <memory>
#include <set>

namespace roost::test {

/// Every secret that passed between a local service and those who signed in to it.
class PassedSecrets {
public:
    using Set = std::set<QByteArray>;

    /// `inner`, whose secrets the service is going to hand out.
    local::RandomBytes overheard(local::RandomBytes inner);

    /// A request as the service received it.
    void note(const local::Request& request);

    /// Access and refresh tokens, used or not.
    Set tokens() const;
    const Set& codes() const { return codes_; }
    const Set& verifiers() const { return verifiers_; }
    const Set& states() const { return states_; }

private:
    /// Outlives the service that it is filled by.
    std::shared_ptr<Set> handedOut_ = std::make_shared<Set>();
    Set used_;
    Set tickets_;
    Set codes_;
    Set verifiers_;
    Set states_;
};

} // namespace roost::test

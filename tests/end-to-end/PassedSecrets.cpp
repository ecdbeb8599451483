#include "tests/end-to-end/PassedSecrets.h"

#include "programs/roost-service/FormFields.h"

namespace roost::test {

namespace {

/// The length of codes and tokens; a client id, no secret, is shorter.
constexpr int secretBytes = 32;

void keep(PassedSecrets::Set& set, const local::FormFields& fields, const char* name)
{
    if (const auto value = fields.value(name)) {
        set.insert(*value);
    }
}

} // namespace

local::RandomBytes PassedSecrets::overheard(local::RandomBytes inner)
{
    return [inner = std::move(inner), handedOut = handedOut_](int count) {
        QByteArray bytes = inner(count);
        if (count == secretBytes) {
            handedOut->insert(bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
        }
        return bytes;
    };
}

void PassedSecrets::note(const local::Request& request)
{
    const QByteArray bearer = "Bearer ";
    if (const auto authorization = request.header("Authorization");
        authorization && authorization->startsWith(bearer)) {
        used_.insert(authorization->mid(bearer.size()));
    }
    keep(states_, local::FormFields::parse(request.query).value_or(local::FormFields{}), "state");
    const auto form = local::FormFields::parse(request.body).value_or(local::FormFields{});
    keep(used_, form, "refresh_token");
    keep(tickets_, form, "ticket");
    keep(codes_, form, "code");
    keep(verifiers_, form, "code_verifier");
}

PassedSecrets::Set PassedSecrets::tokens() const
{
    Set tokens = *handedOut_;
    std::erase_if(tokens, [this](const QByteArray& secret) {
        return codes_.contains(secret) || tickets_.contains(secret);
    });
    tokens.insert(used_.begin(), used_.end());
    return tokens;
}

} // namespace roost::test

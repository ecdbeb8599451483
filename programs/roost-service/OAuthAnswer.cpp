#include "programs/roost-service/OAuthAnswer.h"

namespace roost::local {

using namespace Qt::StringLiterals;

Answer oauthAnswer(const QJsonObject& body, int status)
{
    Answer answer = jsonAnswer(body, status);
    answer.headers.emplace_back("Pragma", "no-cache");
    return answer;
}

Answer oauthError(const char* error, const QString& description, int status)
{
    return oauthAnswer({{u"error"_s, QLatin1StringView(error)}, {u"error_description"_s, description}},
                       status);
}

Answer onlyMethod(const char* method)
{
    Answer answer = jsonAnswer({{u"error"_s, u"method_not_allowed"_s}}, 405);
    answer.headers.emplace_back("Allow", method);
    return answer;
}

} // namespace roost::local

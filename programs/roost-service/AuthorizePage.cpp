#include "programs/roost-service/AuthorizePage.h"

#include "programs/roost-service/AuthorizePageStyle.h"
#include "programs/roost-service/OAuthPaths.h"
#include "programs/roost-service/RedirectUri.h"

#include <QCryptographicHash>

#include <array>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* unnamed = "An application without a name";

struct ScopeText {
    const char* scope;
    const char* sentence;
};
constexpr std::array scopeTexts{
    ScopeText{"metrics:read", "See views, followers and the best post"},
    ScopeText{"posts:read", "See scheduled and published posts"},
    ScopeText{"channels:read", "See which channels are connected"},
};

QString scopeList(const Scopes& scopes)
{
    QString items;
    for (const auto& [scope, sentence] : scopeTexts) {
        if (scopes.contains(scope)) {
            items += u"<li>%1</li>"_s.arg(QLatin1StringView(sentence));
        }
    }
    return items;
}

QString profileList(const std::vector<PageProfile>& profiles)
{
    QString items;
    for (const PageProfile& profile : profiles) {
        items +=
            u"<label><input type=\"radio\" name=\"profile\" value=\"%1\" required%2>"
            "<img src=\"%3\" alt=\"\" width=\"36\" height=\"36\"><span dir=\"auto\">%4</span></label>\n"_s
                .arg(profile.id.toHtmlEscaped(), items.isEmpty() ? u" checked"_s : QString(),
                     profile.picture.toHtmlEscaped(), profile.name.toHtmlEscaped());
    }
    return items;
}

QString document(const QString& title, const QString& content)
{
    return u"<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<title>%1</title>\n<style>%2</style>\n</head>\n<body>\n<main>\n"
           "<p class=\"brand\"><span class=\"mark\" aria-hidden=\"true\"></span>Brisken Roost</p>\n"
           "%3\n</main>\n</body>\n</html>\n"_s.arg(title.toHtmlEscaped(),
                                                   QLatin1StringView(authorizePageStyle), content);
}

Answer page(const QString& html, const QByteArray& formAction, int status)
{
    const QByteArray style =
        QCryptographicHash::hash(authorizePageStyle, QCryptographicHash::Sha256).toBase64();
    Answer answer = textAnswer(html.toUtf8(), "text/html; charset=utf-8", status);
    answer.headers.emplace_back("Content-Security-Policy", "default-src 'none'; style-src 'sha256-" + style +
                                                               "'; img-src 'self'; form-action " +
                                                               formAction +
                                                               "; frame-ancestors 'none'; base-uri 'none'");
    answer.headers.emplace_back("X-Frame-Options", "DENY");
    answer.headers.emplace_back("X-Content-Type-Options", "nosniff");
    // The address holds the client's state. Within the origin it may be told: a form sent without any
    // referrer would come from the origin "null".
    answer.headers.emplace_back("Referrer-Policy", "same-origin");
    return answer;
}

} // namespace

Answer consentPage(const AuthorizeRequest& request, const std::vector<PageProfile>& profiles,
                   const QByteArray& ticket)
{
    const QString client =
        request.clientName.isEmpty() ? QString::fromLatin1(unnamed) : QString::fromUtf8(request.clientName);
    const QString content =
        u"<h1><strong dir=\"auto\">%1</strong> wants to read a profile</h1>\n"
        "<form method=\"post\" action=\"%2\">\n"
        "<input type=\"hidden\" name=\"ticket\" value=\"%3\">\n"
        "<fieldset><legend>Which profile?</legend>\n<div class=\"profiles\">\n%4</div></fieldset>\n"
        "<h2>It will be able to</h2>\n<ul>%5</ul>\n"
        "<p class=\"note\">It cannot publish, change or delete anything.</p>\n"
        "<div class=\"buttons\">"
        "<button id=\"deny\" name=\"decision\" value=\"deny\" formnovalidate>Deny</button>"
        "<button id=\"allow\" name=\"decision\" value=\"allow\" class=\"primary\">Allow</button></div>\n"
        "</form>\n"
        "<p class=\"foot\">You will return to <span class=\"address\">%6</span></p>"_s.arg(
            client.toHtmlEscaped(), QLatin1StringView(authorizePath), QString::fromLatin1(ticket),
            profileList(profiles), scopeList(request.terms.scopes),
            QString::fromLatin1(request.terms.redirectUri).toHtmlEscaped());
    return page(document(u"Allow %1?"_s.arg(client), content),
                "'self' " + formActionOf(request.terms.redirectUri), 200);
}

Answer refusalPage(const QString& sentence)
{
    const QString content = u"<h1>This sign-in cannot go on</h1>\n<p>%1</p>\n"
                            "<p class=\"note\">Nothing was allowed. Close this page and start again from the "
                            "application.</p>"_s.arg(sentence.toHtmlEscaped());
    return page(document(u"This sign-in cannot go on"_s, content), "'none'", 400);
}

} // namespace roost::local

#include "programs/roost-service/PageRoutes.h"

#include <QString>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr const char* avatars = "/roost/avatars/";
constexpr const char* pageType = "text/html; charset=utf-8";

Answer avatarOf(const LivingProfile& profile)
{
    const int hue = qChecksum(QByteArrayView(profile.id())) % 360;
    const QString initial = QString::fromStdString(profile.name()).left(1).toHtmlEscaped();
    const QString picture = u"<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 64 64'>"
                            "<rect width='64' height='64' fill='hsl(%1 55% 42%)'/>"
                            "<text x='32' y='42' text-anchor='middle' font-family='sans-serif' "
                            "font-size='30' fill='#fff'>%2</text>"
                            "</svg>"_s.arg(QString::number(hue), initial);
    return textAnswer(picture.toUtf8(), "image/svg+xml");
}

} // namespace

bool PageRoutes::owns(const QByteArray& path)
{
    return path == "/roost/overview" || path.startsWith(avatars);
}

Answer PageRoutes::answer(const Request& request) const
{
    if (request.method != "GET") {
        Answer refusal = textAnswer("Only GET is answered here.\n", "text/plain", 405);
        refusal.headers.emplace_back("Allow", "GET");
        return refusal;
    }
    if (request.path == "/roost/overview") {
        return overview();
    }
    for (const LivingProfile& profile : state_.profiles) {
        if (request.path == avatars + QByteArray::fromStdString(profile.id()) + ".svg") {
            return avatarOf(profile);
        }
    }
    return textAnswer("There is no such picture.\n", "text/plain", 404);
}

Answer PageRoutes::overview() const
{
    QString rows;
    for (const LivingProfile& profile : state_.profiles) {
        const RoostSnapshot snapshot = profile.snapshot(state_.now());
        rows += u"<tr><th scope=\"row\">%1</th><td>%2</td><td>%3</td></tr>"_s.arg(
            QString::fromStdString(profile.name()).toHtmlEscaped(),
            QString::number(snapshot.views.total.value_or(0)), QString::number(snapshot.posts.scheduled));
    }
    const QString page =
        u"<!doctype html><html lang=\"en\"><meta charset=\"utf-8\"><title>Brisken Roost</title>"
        "<h1>Brisken Roost, local service</h1><table><tr><th scope=\"col\">Profile</th>"
        "<th scope=\"col\">Views in 7 days</th><th scope=\"col\">Scheduled</th></tr>%1</table>"_s.arg(rows);
    return textAnswer(page.toUtf8(), pageType);
}

} // namespace roost::local

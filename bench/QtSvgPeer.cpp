#include "bench/PathPeers.h"

#include <QByteArray>
#include <QSvgRenderer>

#include <string_view>
#include <utility>

namespace roost::bench {

std::string svgDocument(const std::vector<std::string>& paths)
{
    std::string document = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1000\" height=\"1000\">";
    std::string_view identifier = " id=\"path\"";
    for (const std::string& data : paths) {
        document.append("<path").append(std::exchange(identifier, "")).append(" d=\"");
        document.append(data).append("\"/>");
    }
    return document + "</svg>";
}

namespace qtSvgPeer {

namespace {

QByteArray bytesOf(const std::string& document)
{
    return QByteArray::fromRawData(document.data(), static_cast<qsizetype>(document.size()));
}

} // namespace

bool load(const std::string& document) { return QSvgRenderer{bytesOf(document)}.isValid(); }

Bounds bounds(const std::string& document)
{
    const QSvgRenderer renderer{bytesOf(document)};
    const QRectF bounds = renderer.boundsOnElement(QStringLiteral("path"));
    return {bounds.x(), bounds.y(), bounds.width(), bounds.height()};
}

} // namespace qtSvgPeer

} // namespace roost::bench

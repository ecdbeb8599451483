#include "bench/PathPeers.h"

#include <QByteArray>
#include <QSvgRenderer>

namespace roost::bench {

std::string svgDocument(const std::string& data)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1000\" height=\"1000\"><path id=\"path\" d=\"" +
           data + "\"/></svg>";
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

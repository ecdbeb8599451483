#include "model/JsonWriter.h"

#include "model/RoostJSON.h"

#include <simdjson.h>

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

namespace roost::json {

void Writer::text(std::string_view text)
{
    if (simdjson::validate_utf8(text.data(), text.size())) {
        writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        return;
    }
    // A byte-order mark at the front is text like any other, so it is kept.
    QStringDecoder decoder{QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom};
    const QString decoded = decoder.decode(QByteArrayView{text.data(), static_cast<qsizetype>(text.size())});
    const QByteArray mended = decoded.toUtf8();
    writer_.String(mended.constData(), static_cast<rapidjson::SizeType>(mended.size()));
}

void write(Writer& writer, Date value) { writer.text(RoostJSON::formatDate(value)); }

} // namespace roost::json

#include "model/JsonWriter.h"

#include "model/RoostJSON.h"

#include <simdjson.h>

#include <QString>

namespace roost::json {

void Writer::text(std::string_view text)
{
    if (simdjson::validate_utf8(text.data(), text.size())) {
        writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        return;
    }
    const QByteArray mended = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUtf8();
    writer_.String(mended.constData(), static_cast<rapidjson::SizeType>(mended.size()));
}

void write(Writer& writer, Date value) { writer.text(RoostJSON::formatDate(value)); }

} // namespace roost::json

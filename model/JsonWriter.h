#pragma once

#include "model/Date.h"
#include "model/WebURL.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace roost::json {

/// Writes one compact JSON document, front to back.
class Writer {
public:
    void beginObject() { writer_.StartObject(); }
    void endObject() { writer_.EndObject(); }
    void beginArray() { writer_.StartArray(); }
    void endArray() { writer_.EndArray(); }

    /// `key` is ASCII that needs no escaping.
    void key(std::string_view key) { writer_.Key(key.data(), static_cast<rapidjson::SizeType>(key.size())); }

    /// `key` is any text; it is written like one.
    void anyKey(std::string_view key) { text(key); }

    void text(std::string_view text);
    void integer(std::int64_t value) { writer_.Int64(value); }
    void boolean(bool value) { writer_.Bool(value); }

    /// The document; once, when it is complete.
    std::string take() const { return {buffer_.GetString(), buffer_.GetSize()}; }

private:
    rapidjson::StringBuffer buffer_;
    rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

inline void write(Writer& writer, std::int64_t value) { writer.integer(value); }

inline void write(Writer& writer, bool value) { writer.boolean(value); }

inline void write(Writer& writer, const std::string& value) { writer.text(value); }

inline void write(Writer& writer, const WebURL& value) { writer.text(value.text()); }

void write(Writer& writer, Date value);

} // namespace roost::json

#pragma once

#include "model/JsonWriter.h"
#include "model/RoostJSON.h"

#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace roost::json {

template <JsonEnumeration Enumeration>
void write(Writer& writer, Enumeration value)
{
    writer.text(JsonNames<Enumeration>::names[static_cast<std::size_t>(value)]);
}

template <JsonRecord Record>
void write(Writer& writer, const Record& record);

template <class Element>
void write(Writer& writer, const std::vector<Element>& elements)
{
    writer.beginArray();
    for (const Element& element : elements) {
        write(writer, element);
    }
    writer.endArray();
}

template <class Element>
void write(Writer& writer, const std::map<std::string, Element>& entries)
{
    writer.beginObject();
    for (const auto& [key, element] : entries) {
        writer.anyKey(key);
        write(writer, element);
    }
    writer.endObject();
}

template <class Record, class Member>
void writeMember(Writer& writer, const JsonField<Record, Member>& field, const Member& member)
{
    writer.key(field.key);
    write(writer, member);
}

template <class Record, class Member>
void writeMember(Writer& writer, const JsonField<Record, std::optional<Member>>& field,
                 const std::optional<Member>& member)
{
    if (member) {
        writer.key(field.key);
        write(writer, *member);
    }
}

template <JsonRecord Record>
void write(Writer& writer, const Record& record)
{
    static_assert(isOrderedByKey<Record>());
    writer.beginObject();
    std::apply([&](const auto&... field) { (writeMember(writer, field, record.*field.member), ...); },
               JsonFields<Record>::fields);
    writer.endObject();
}

} // namespace roost::json

namespace roost::RoostJSON {

template <JsonRecord Record>
std::string Encoder::encode(const Record& record) const
{
    json::Writer writer;
    json::write(writer, record);
    return writer.take();
}

} // namespace roost::RoostJSON

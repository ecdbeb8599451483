#include "tests/present/TranslationFile.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace roost::test {

namespace {

const std::filesystem::path folder = std::filesystem::path{ROOST_SOURCE_DIR} / "present/translations";
constexpr std::string_view prefix = "roost_";

void readTranslation(QXmlStreamReader& xml, TranslationEntry& entry)
{
    entry.state = xml.attributes().value(QLatin1StringView{"type"}).toString().toStdString();
    std::string text;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && xml.name() == u"translation") {
            break;
        }
        if (xml.isStartElement() && xml.name() == u"numerusform") {
            entry.forms.push_back(xml.readElementText().toStdString());
        } else if (xml.isCharacters()) {
            text += xml.text().toString().toStdString();
        }
    }
    if (!entry.isPlural) {
        entry.forms = {text};
    }
}

TranslationEntry readMessage(QXmlStreamReader& xml, const std::string& context)
{
    TranslationEntry entry{.context = context};
    entry.isPlural = xml.attributes().value(QLatin1StringView{"numerus"}) == u"yes";
    while (xml.readNextStartElement()) {
        if (xml.name() == u"source") {
            entry.key = xml.readElementText().toStdString();
        } else if (xml.name() == u"translation") {
            readTranslation(xml, entry);
        } else {
            xml.skipCurrentElement();
        }
    }
    return entry;
}

} // namespace

TranslationFile parsedTranslations(const QByteArray& bytes)
{
    TranslationFile file;
    QXmlStreamReader xml{bytes};
    std::string context;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement()) {
            continue;
        }
        if (xml.name() == u"TS") {
            file.language = xml.attributes().value(QLatin1StringView{"language"}).toString().toStdString();
        } else if (xml.name() == u"name") {
            context = xml.readElementText().toStdString();
        } else if (xml.name() == u"message") {
            file.entries.push_back(readMessage(xml, context));
        }
    }
    file.error = xml.errorString().toStdString();
    return file;
}

std::filesystem::path translationsOf(const std::string& localisation)
{
    return folder / (std::string{prefix} + localisation + ".ts");
}

std::vector<std::string> translatedLocalisations()
{
    std::vector<std::string> found;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator{folder}) {
        found.push_back(entry.path().stem().string().substr(prefix.size()));
    }
    std::ranges::sort(found);
    return found;
}

} // namespace roost::test

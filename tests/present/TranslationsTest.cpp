#include "present/RoostL10n.h"
#include "present/RoostTexts.h"
#include "tests/present/PluralForms.h"
#include "tests/present/TranslationFaults.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <map>

namespace roost::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TranslationFile catalogue(const std::string& localisation)
{
    return parsedTranslations(QByteArray::fromStdString(bytesOf(translationsOf(localisation))));
}

TEST(Translations, AreInThirteenLanguages)
{
    EXPECT_THAT(translatedLocalisations(), ElementsAre("ar", "de", "en", "es", "fr", "he", "it", "ja", "nl",
                                                       "pl", "pt-BR", "uk", "zh-Hans"));
}

TEST(Translations, HaveNoFaults)
{
    for (const std::string& localisation : translatedLocalisations()) {
        EXPECT_THAT(faultsOf(localisation, catalogue(localisation)), IsEmpty()) << localisation;
    }
}

TEST(Translations, AreCompiledIn)
{
    for (const std::string& localisation : translatedLocalisations()) {
        const RoostL10n::Catalogue& compiled = RoostL10n::bundle(localisation);
        EXPECT_EQ(compiled.localisation(), localisation);
        for (const TranslationEntry& entry : catalogue(localisation).entries) {
            if (!entry.isPlural) {
                EXPECT_EQ(compiled.text(entry.key), entry.forms.front()) << localisation;
                continue;
            }
            for (std::int64_t n = 0; n < 120; ++n) {
                EXPECT_EQ(compiled.plural(entry.key, n), entry.forms.at(formWanted(localisation, n)))
                    << localisation << " " << n;
            }
        }
    }
}

TEST(Translations, HoldTheNotesAndTheOrderOfTheTable)
{
    const ScratchFolder folder;
    for (const std::string& localisation : translatedLocalisations()) {
        const std::string before = bytesOf(translationsOf(localisation));
        const std::filesystem::path copy = folder / translationsOf(localisation).filename();
        putBytes(copy, before);
        QProcess update;
        update.start(QStringLiteral(ROOST_LUPDATE),
                     {QStringLiteral("-silent"), QStringLiteral("-locations"), QStringLiteral("none"),
                      QStringLiteral("-no-obsolete"),
                      QStringLiteral(ROOST_SOURCE_DIR "/present/RoostTexts.h"), QStringLiteral("-ts"),
                      QString::fromStdString(copy.string())});
        ASSERT_TRUE(update.waitForFinished(60'000)) << localisation;
        EXPECT_EQ(update.exitCode(), 0) << localisation;
        EXPECT_EQ(bytesOf(copy), before) << localisation << ": build the target \"update_translations\"";
    }
}

TEST(Translations, NameThePageAndTheButtonThatTheNoteIsAbout)
{
    for (const std::string& localisation : translatedLocalisations()) {
        const RoostL10n::Catalogue& texts = RoostL10n::bundle(localisation);
        const std::string note = texts.text(
            "Remove only stops this app. To end the connection for good, use Agents & access in Roost.");
        EXPECT_THAT(note, HasSubstr(texts.text("Agents & access")));
        EXPECT_THAT(note, HasSubstr(texts.text("Remove")));
    }
}

TEST(Translations, AreShortOnButtonsAndLabels)
{
    for (const std::string& localisation : translatedLocalisations()) {
        const RoostL10n::Catalogue& texts = RoostL10n::bundle(localisation);
        for (const RoostText& text : roostTexts) {
            const std::size_t english = text.key.size();
            if (english <= 26 && text.filling == Filling::nothing) {
                const qsizetype length = QString::fromStdString(texts.text(text.key)).size();
                EXPECT_LE(length, static_cast<qsizetype>(english * 3 / 2 + 10))
                    << localisation << " " << text.key;
            }
        }
    }
}

/// Quotation marks that a language's texts may use, beside the apostrophe U+2019.
std::string_view marksOf(const std::string& localisation)
{
    static const std::map<std::string, std::string_view> marks{
        {"ar", "«»"},    {"de", "„“"}, {"en", "“”"},      {"es", "«»"}, {"fr", "«»"},
        {"he", "״"},     {"it", "“”"}, {"ja", "「」"},    {"nl", "‘’"}, {"pl", "„”"},
        {"pt-BR", "“”"}, {"uk", "«»"}, {"zh-Hans", "“”"},
    };
    return marks.at(localisation);
}

TEST(Translations, UseTheMarksOfTheirLanguage)
{
    for (const std::string& localisation : translatedLocalisations()) {
        const QString allowed = QString::fromUtf8(marksOf(localisation).data());
        for (const TranslationEntry& entry : catalogue(localisation).entries) {
            for (const std::string& form : entry.forms) {
                for (const QChar mark : QStringLiteral("\"'“”„‘«»‹›「」『』״")) {
                    EXPECT_TRUE(allowed.contains(mark) || !QString::fromStdString(form).contains(mark))
                        << localisation << ": " << form;
                }
            }
        }
    }
}

/// What the typography of a language does not allow.
const std::multimap<std::string, QString>& misprints()
{
    static const std::multimap<std::string, QString> patterns{
        {"ar", QStringLiteral("[,;?%]")},
        {"ar", QStringLiteral("^[A-Za-z]")},
        {"de", QStringLiteral("(?<!\u00a0)…")},
        {"fr", QStringLiteral("(?<!\u202f)[:;!?»]")},
        {"fr", QStringLiteral("«(?!\u202f)")},
        {"he", QStringLiteral("^[A-Za-z]")},
        {"ja", QStringLiteral("[\u3040-\u30ff\u4e00-\u9fff][,.:;!? ]")},
        {"ja", QStringLiteral("[!-~] [\u3040-\u30ff\u4e00-\u9fff]")},
        {"zh-Hans", QStringLiteral("[\u4e00-\u9fff][,.:;!?]")},
        {"zh-Hans", QStringLiteral("[\u4e00-\u9fff][A-Za-z0-9]|[A-Za-z0-9][\u4e00-\u9fff]")},
    };
    return patterns;
}

/// How readers are not addressed, since all other texts of the language address them otherwise.
const std::multimap<std::string, QString>& otherAddresses()
{
    static const std::multimap<std::string, QString> patterns{
        {"de", QStringLiteral("\\b(Sie|Ihnen|Ihre?|Ihre[nmrs])\\b")},
        {"es", QStringLiteral("(?i)\\b(usted|vos|vuestr\\w+)\\b")},
        {"fr", QStringLiteral("(?i)\\b(tu|toi|ton|ta|tes)\\b")},
        {"it", QStringLiteral("\\b(Lei|voi|Suo|Sua|Suoi|vostr\\w+)\\b")},
        {"nl", QStringLiteral("(?i)\\b(u|uw)\\b")},
        {"pl", QStringLiteral("\\b(Pan|Pani|Państwo|tw[oó]j\\w*)\\b")},
        {"pt-BR", QStringLiteral("(?i)\\b(tu|teus?|tuas?|vosso)\\b")},
        {"uk", QStringLiteral("(?i)\\b(ти|тебе|тобі|тво\\w+)\\b")},
        {"zh-Hans", QStringLiteral("您")},
    };
    return patterns;
}

TEST(Translations, AreSetAsTheirLanguageIsAndAddressReadersInOneWay)
{
    std::multimap<std::string, QString> patterns = misprints();
    patterns.insert(otherAddresses().begin(), otherAddresses().end());
    for (const auto& [localisation, pattern] : patterns) {
        const QRegularExpression misprint{pattern, QRegularExpression::UseUnicodePropertiesOption};
        ASSERT_TRUE(misprint.isValid()) << pattern.toStdString();
        for (const TranslationEntry& entry : catalogue(localisation).entries) {
            for (const std::string& form : entry.forms) {
                const QString words = QString::fromStdString(form)
                                          .replace(QStringLiteral("%@"), QStringLiteral("1"))
                                          .replace(QStringLiteral("%lld"), QStringLiteral("1"))
                                          .remove(QRegularExpression{QStringLiteral("^Brisken Roost$")});
                EXPECT_FALSE(words.contains(misprint)) << localisation << ": " << form;
            }
        }
    }
}

} // namespace
} // namespace roost::test

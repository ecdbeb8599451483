#include "present/Catalogue.h"

#include "tests/present/PluralForms.h"
#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>

#include <QProcess>

#include <limits>

namespace roost::RoostL10n {
namespace {

using test::formWanted;
using test::pluralForms;

/// A catalogue whose one plural text answers with the number of the form that was chosen.
QByteArray formsAsNumbers(const std::string& localisation, std::size_t forms)
{
    const test::ScratchFolder folder;
    std::string language = localisation;
    std::ranges::replace(language, '-', '_');
    std::string xml =
        "<!DOCTYPE TS><TS version=\"2.1\" language=\"" + language +
        "\"><context><name>Roost</name><message numerus=\"yes\"><source>form</source><translation>";
    for (std::size_t form = 0; form < forms; ++form) {
        xml += "<numerusform>" + std::to_string(form) + "</numerusform>";
    }
    xml += "</translation></message></context></TS>";
    const std::filesystem::path source = folder / "forms.ts";
    const std::filesystem::path compiled = folder / "forms.qm";
    test::putBytes(source, xml);
    QProcess release;
    release.start(QStringLiteral(ROOST_LRELEASE),
                  {QStringLiteral("-silent"), QString::fromStdString(source.string()), QStringLiteral("-qm"),
                   QString::fromStdString(compiled.string())});
    EXPECT_TRUE(release.waitForFinished(60'000));
    EXPECT_EQ(release.exitCode(), 0) << release.readAllStandardError().toStdString();
    return QByteArray::fromStdString(test::bytesOf(compiled));
}

std::vector<std::int64_t> telltaleNumbers()
{
    std::vector<std::int64_t> numbers{999'999,
                                      1'000'000,
                                      1'000'001,
                                      1'000'011,
                                      2'000'002,
                                      2'000'000'000,
                                      2'147'483'647,
                                      2'147'483'648,
                                      4'294'967'297,
                                      9'000'000'000'000'021,
                                      -1,
                                      -2,
                                      -5,
                                      -21,
                                      std::numeric_limits<std::int64_t>::max(),
                                      1'000'000'003,
                                      10'000'000'111};
    for (std::int64_t n = 0; n <= 1'200; ++n) {
        numbers.push_back(n);
    }
    return numbers;
}

TEST(Catalogue, ChoosesThePluralFormThatCldrWants)
{
    for (const auto& [localisation, forms] : pluralForms()) {
        const Catalogue catalogue{localisation, formsAsNumbers(localisation, forms.size())};
        for (const std::int64_t n : telltaleNumbers()) {
            EXPECT_EQ(catalogue.plural("form", n), std::to_string(formWanted(localisation, n)))
                << localisation << " " << n;
        }
    }
}

TEST(Catalogue, CountsTheMostNegativeNumberToo)
{
    const Catalogue catalogue{"pl", formsAsNumbers("pl", 3)};
    EXPECT_EQ(catalogue.plural("form", std::numeric_limits<std::int64_t>::min()), "2");
}

TEST(Catalogue, SpeaksEnglishWhereItHasNoWords)
{
    const Catalogue catalogue{"pl", formsAsNumbers("pl", 3)};
    EXPECT_EQ(catalogue.text("Unheard of"), "Unheard of");
    EXPECT_EQ(catalogue.plural("%lld unheard of", 3), "%lld unheard of");
    EXPECT_EQ(catalogue.text(""), "");
}

TEST(Catalogue, OfBytesThatAreNoneSpeaksEnglish)
{
    for (const QByteArray& bytes : {QByteArray{}, QByteArray{"no catalogue"}, QByteArray(1000, '\xff')}) {
        const Catalogue catalogue{"de", bytes};
        EXPECT_EQ(catalogue.text("Today"), "Today");
        EXPECT_EQ(catalogue.plural("%lld scheduled", 2), "%lld scheduled");
        EXPECT_EQ(catalogue.localisation(), "de");
    }
}

TEST(Catalogue, TakesAKeyThatIsPartOfALongerText)
{
    const Catalogue catalogue{"de", formsAsNumbers("de", 2)};
    EXPECT_EQ(catalogue.plural(std::string_view{"formless"}.substr(0, 4), 2), "1");
}

} // namespace
} // namespace roost::RoostL10n

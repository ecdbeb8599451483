#include "tests/support/CommaLocale.h"

#include <QFile>
#include <QProcess>

#include <clocale>
#include <stdexcept>

namespace roost::test {

namespace {

constexpr int asciiSize = 128;

constexpr const char* source = "LC_NUMERIC\n"
                               "decimal_point \",\"\n"
                               "thousands_sep \"\"\n"
                               "grouping -1\n"
                               "END LC_NUMERIC\n";

QByteArray characterMap()
{
    QByteArray map = "<code_set_name> ASCII\n<mb_cur_min> 1\n<mb_cur_max> 1\nCHARMAP\n";
    for (int c = 0; c < asciiSize; ++c) {
        map += QString::asprintf("<U%04X> /x%02x X\n", static_cast<unsigned>(c), static_cast<unsigned>(c))
                   .toLatin1();
    }
    return map + "END CHARMAP\n";
}

void write(const QString& path, const QByteArray& contents)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()) {
        throw std::runtime_error("the source of the locale could not be written");
    }
}

} // namespace

CommaLocale::CommaLocale()
    : path_("LOCPATH", folder_.path().toUtf8()),
      previous_(std::setlocale(LC_NUMERIC, nullptr))
{
    const QString map = folder_.filePath(QStringLiteral("map"));
    const QString definition = folder_.filePath(QStringLiteral("definition"));
    write(map, characterMap());
    write(definition, source);
    // Complains about everything else that a locale should say, and makes it all the same.
    QProcess localedef;
    localedef.start(QStringLiteral("localedef"),
                    {QStringLiteral("-c"), QStringLiteral("-f"), map, QStringLiteral("-i"), definition,
                     folder_.filePath(QStringLiteral("comma"))});
    localedef.waitForFinished();
    if (std::setlocale(LC_NUMERIC, "comma") == nullptr) {
        throw std::runtime_error("localedef: " + localedef.readAllStandardError().toStdString());
    }
}

CommaLocale::~CommaLocale() { std::setlocale(LC_NUMERIC, previous_.c_str()); }

} // namespace roost::test

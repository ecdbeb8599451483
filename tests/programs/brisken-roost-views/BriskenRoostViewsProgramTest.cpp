#include "tests/support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QImage>
#include <QProcess>

#include <csignal>
#include <filesystem>
#include <functional>

namespace roost {
namespace {

using test::bytesOf;
using test::putBytes;
using testing::HasSubstr;

struct Finished {
    int code = -1;
    QByteArray output;
    std::string error;
};

/// Runs the program in a folder of its own, with the variables of a desktop that is not there.
class BriskenRoostViewsProgram : public testing::Test {
protected:
    BriskenRoostViewsProgram()
    {
        set("HOME", QString::fromStdString(folder_.path().string()));
        set("XDG_RUNTIME_DIR", QString::fromStdString(folder_.path().string()));
        set("DISPLAY", QStringLiteral(":77"));
        set("WAYLAND_DISPLAY", QStringLiteral("wayland-77"));
        set("QT_QPA_PLATFORM", QStringLiteral("xcb"));
        set("QT_QPA_PLATFORMTHEME", QStringLiteral("gtk3"));
    }

    void set(const char* name, const QString& value) { environment_.insert(QLatin1String(name), value); }

    /// `options` are separated by blanks.
    Finished run(const QString& options)
    {
        QProcess process;
        process.setProcessEnvironment(environment_);
        process.setWorkingDirectory(QString::fromStdString(folder_.path().string()));
        process.setChildProcessModifier(before_);
        process.start(QStringLiteral(BRISKEN_ROOST_VIEWS),
                      options.split(QLatin1Char(' '), Qt::SkipEmptyParts));
        EXPECT_TRUE(process.waitForFinished(60'000));
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), process.readAllStandardError().toStdString()};
    }

    Finished render(const char* options)
    {
        return run(QStringLiteral("render --surface mark ") + QString::fromUtf8(options));
    }

    /// The names in the folder, of programs' caches not.
    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator{folder_.path()}) {
            if (const std::string name = entry.path().filename().string(); !name.starts_with('.')) {
                found.push_back(name);
            }
        }
        return found;
    }

    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
    test::ScratchFolder folder_;
    /// What the process does before it becomes the program.
    std::function<void()> before_;
};

TEST_F(BriskenRoostViewsProgram, PrintsItsHelpAndVersion)
{
    EXPECT_THAT(run(QStringLiteral("--help")).output.toStdString(),
                testing::StartsWith("Usage: brisken-roost-views"));
    EXPECT_EQ(run(QStringLiteral("--help")).code, 0);
    EXPECT_THAT(run(QStringLiteral("--version")).output.toStdString(),
                testing::MatchesRegex("brisken-roost-views [0-9.]+\n"));
}

TEST_F(BriskenRoostViewsProgram, TellsWrongUsageOnStandardErrorAlone)
{
    const Finished finished = render("--platform x --size 0 --output a.png");
    EXPECT_EQ(finished.code, 2);
    EXPECT_TRUE(finished.output.isEmpty());
    EXPECT_EQ(finished.error, "brisken-roost-views: --size needs a whole number from 1 to 4096, not \"0\". "
                              "Try brisken-roost-views --help.\n");
    EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(BriskenRoostViewsProgram, DrawsAMarkWithoutADisplay)
{
    const Finished finished = render("--platform x --size 25 --scale 1.5 --output a.png");
    EXPECT_EQ(finished.code, 0);
    EXPECT_TRUE(finished.output.isEmpty());
    EXPECT_EQ(finished.error, "");
    const QImage picture{QString::fromStdString((folder_ / "a.png").string())};
    EXPECT_EQ(picture.size(), QSize(38, 38));
    EXPECT_TRUE(picture.hasAlphaChannel());
    EXPECT_NEAR(picture.dotsPerMeterX() * 0.0254, 144, 0.1);
    EXPECT_THAT(names(), testing::ElementsAre("a.png"));
}

TEST_F(BriskenRoostViewsProgram, DrawsTheWholeFrameOfABadge)
{
    ASSERT_EQ(render("--platform zeta --size 100 --background #ffffff --output a.png").code, 0);
    const QImage picture{QString::fromStdString((folder_ / "a.png").string())};
    // The line is 0.08 of the frame and half of it stands out on either side.
    constexpr int line = 7;
    for (int at = 1; at < line - 1; ++at) {
        EXPECT_EQ(picture.pixelColor(50, at), QColor{Qt::black}) << at;
        EXPECT_EQ(picture.pixelColor(99 - at, 50), QColor{Qt::black}) << at;
    }
    EXPECT_EQ(picture.pixelColor(50, line + 2), QColor{Qt::white});
    EXPECT_EQ(picture.pixelColor(0, 0), QColor{Qt::white});
}

TEST_F(BriskenRoostViewsProgram, WritesTheSameBytesToStandardOutput)
{
    ASSERT_EQ(render("--platform zeta --label Zeta --size 64 --output a.png").code, 0);
    const Finished finished = render("--platform zeta --label Zeta --size 64 --output -");
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(finished.output.toStdString(), bytesOf(folder_ / "a.png"));
}

TEST_F(BriskenRoostViewsProgram, DrawsTheSameWhateverTheDesktopIsSetTo)
{
    const QByteArray plain = render("--platform zeta --label Zeta --size 64 --output -").output;
    EXPECT_GT(plain.size(), 500);
    set("QT_SCALE_FACTOR", QStringLiteral("2"));
    set("QT_FONT_DPI", QStringLiteral("200"));
    set("LC_ALL", QStringLiteral("de_DE.UTF-8"));
    environment_.remove(QStringLiteral("QT_QPA_PLATFORM"));
    EXPECT_EQ(render("--platform zeta --label Zeta --size 64 --output -").output, plain);
}

TEST_F(BriskenRoostViewsProgram, ReplacesAFileInOneStep)
{
    putBytes(folder_ / "a.png", "before");
    std::filesystem::create_hard_link(folder_ / "a.png", folder_ / "before.png");
    ASSERT_EQ(render("--platform x --size 24 --output a.png").code, 0);
    EXPECT_THAT(bytesOf(folder_ / "a.png"), HasSubstr("PNG"));
    // Who had it open goes on reading what it was.
    EXPECT_EQ(bytesOf(folder_ / "before.png"), "before");
}

TEST_F(BriskenRoostViewsProgram, KeepsTheOldFileWhenTheNewOneCannotBeWritten)
{
    putBytes(folder_ / "a.png", "before");
    before_ = [] {
        // As on a disk that is full.
        constexpr rlimit limit{.rlim_cur = 100, .rlim_max = 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
    };
    const Finished finished = render("--platform x --size 24 --output a.png");
    EXPECT_EQ(finished.code, 1);
    EXPECT_THAT(finished.error, HasSubstr("brisken-roost-views: \"a.png\" cannot be written: "));
    EXPECT_EQ(bytesOf(folder_ / "a.png"), "before");
    EXPECT_THAT(names(), testing::ElementsAre("a.png"));
}

TEST_F(BriskenRoostViewsProgram, SaysWhyAPlaceIsNoneForAFile)
{
    const Finished nowhere = render("--platform x --size 24 --output nowhere/a.png");
    EXPECT_EQ(nowhere.code, 1);
    EXPECT_EQ(nowhere.error,
              "brisken-roost-views: \"nowhere/a.png\" cannot be written: No such file or directory.\n");
    std::filesystem::create_directory(folder_ / "folder");
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    for (const char* place : {"folder", "pipe"}) {
        const Finished finished = render((std::string{"--platform x --size 24 --output "} + place).c_str());
        EXPECT_EQ(finished.code, 1);
        EXPECT_THAT(finished.error, HasSubstr("no regular file")) << place;
    }
    EXPECT_TRUE(std::filesystem::is_fifo(folder_ / "pipe"));
}

TEST_F(BriskenRoostViewsProgram, FailsWhenStandardOutputTakesNoPicture)
{
    QProcess process;
    process.setProcessEnvironment(environment_);
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(
        QStringLiteral(BRISKEN_ROOST_VIEWS),
        QStringLiteral("render --surface mark --platform x --size 24 --output -").split(QLatin1Char(' ')));
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitCode(), 1);
}

} // namespace
} // namespace roost

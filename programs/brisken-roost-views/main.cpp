#include "model/InfoDictionary.h"
#include "model/RoostLog.h"
#include "programs/brisken-roost-views/CommandLine.h"

#include <QGuiApplication>

#include <array>

using namespace roost;

namespace {

struct Run {
    /// The program's own name, which Qt reads.
    char* name;

    CommandResult operator()(const drawing::PrintCommand& command) const
    {
        return {ExitCode::fine, command.text.toStdString(), {}};
    }

    CommandResult operator()(const RenderCommand& command) const
    {
        // Given as arguments these win over the user's environment, which may name a display that is not
        // there or a theme that needs one; and none of the user's own words are taken for Qt's.
        char platform[] = "-platform";
        char theme[] = "-platformtheme";
        char offscreen[] = "offscreen";
        std::array arguments{name, platform, offscreen, theme, offscreen, static_cast<char*>(nullptr)};
        int count = static_cast<int>(arguments.size()) - 1;
        const QGuiApplication application{count, arguments.data()};
        return runRender(command);
    }
};

} // namespace

int main(int argc, char* argv[])
{
    RoostLog::install();
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        words.append(QString::fromLocal8Bit(argv[i]));
    }
    const auto command = drawing::parseCommandLine(words, InfoDictionary::builtIn().version());
    return finished(command
                        ? std::visit(Run{argv[0]}, *command)
                        : failureOf("brisken-roost-views", ExitCode::usage, command.error().toStdString()));
}

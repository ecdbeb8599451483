#pragma once

#include "model/FileSystem.h"

#include <QCoro/QCoroTask>
#include <QProcessEnvironment>
#include <QString>

#include <chrono>
#include <filesystem>
#include <stop_token>
#include <system_error>

namespace roost {

/// Makes the desktop start this program for addresses of the scheme "briskenroost". Main thread; outlives its
/// tasks.
class SchemeHandler {
public:
    /// Who gets such addresses.
    struct Handler {
        enum class Kind {
            ours,
            /// Another desktop entry, `entry`.
            another,
            nobody,
            /// The desktop does not say (in time), or its opener would not understand how our program is
            /// named: xdg-open itself, which serves where no desktop does, takes quotes for part of a name.
            unknown,
        };

        Kind kind = Kind::unknown;
        QString entry;

        bool operator==(const Handler&) const = default;
    };

    /// The name of our desktop entry.
    static inline const QString entryName = QStringLiteral("world.brisken.roost.mac.desktop");

    /// `program` is what is to be started; `timeout` is for each question to the desktop. `environment` says
    /// where the user's folders and the desktop's tools are.
    SchemeHandler(FileSystem& files, std::filesystem::path program, const QProcessEnvironment& environment,
                  std::chrono::milliseconds timeout = std::chrono::seconds(10));

    /// Writes our desktop entry into the user's data folder, unless it stands there already.
    /// `invalid_argument` when no desktop entry can name the program, `no_such_file_or_directory` without a
    /// data folder.
    std::error_code install();

    /// Makes our entry the user's choice for the scheme; false when that failed.
    QCoro::Task<bool> makeDefault(std::stop_token stop);

    /// Who has the scheme now.
    QCoro::Task<Handler> handler(std::stop_token stop);

    /// Installs, makes ours the default unless it is, and says who has the scheme in the end. What fails on
    /// the way shows in that: `unknown` also when ours cannot be installed, since an older entry of its name
    /// may start another program.
    QCoro::Task<Handler> claim(std::stop_token stop);

private:
    FileSystem& files_;
    std::filesystem::path program_;
    QProcessEnvironment environment_;
    std::chrono::milliseconds timeout_;
};

} // namespace roost

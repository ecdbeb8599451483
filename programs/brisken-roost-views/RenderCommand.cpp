#include "programs/brisken-roost-views/RenderCommand.h"

#include "programs/brisken-roost-views/Surfaces.h"

#include <QBuffer>
#include <QFileInfo>
#include <QSaveFile>

#include <cmath>
#include <expected>

namespace roost {

namespace {

CommandResult failed(std::string_view sentence)
{
    return failureOf("brisken-roost-views", ExitCode::failure, sentence);
}

QByteArray pngOf(QImage picture, double scale)
{
    // A picture says how large a unit is on paper. Qt would take that from the desktop's settings.
    constexpr double unitsPerMetre = 96 / 0.0254;
    picture.setDotsPerMeterX(qRound(unitsPerMetre * scale));
    picture.setDotsPerMeterY(qRound(unitsPerMetre * scale));
    QByteArray bytes;
    QBuffer buffer{&bytes};
    return buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG") ? bytes : QByteArray{};
}

/// Puts `bytes` in the place of `path` in one step; the error is a sentence. Unlike the store's files it is
/// for others to read: it has the permissions of the file before, or those that any new file has.
std::expected<void, QString> replace(const QString& path, const QByteArray& bytes)
{
    const auto refused = [&path](const QString& why) {
        return std::unexpected(QStringLiteral("\"%1\" cannot be written: %2.").arg(path, why));
    };
    const QFileInfo before{path};
    if (before.exists() && !before.isFile()) {
        // A device has to keep its place.
        return refused(QStringLiteral("it is no regular file"));
    }
    QSaveFile file{path};
    // Flushed here, since Qt 6.4 commits what its own flush could not write.
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
        !file.commit()) {
        return refused(file.errorString());
    }
    return {};
}

} // namespace

CommandResult runRender(const RenderCommand& command)
{
    const Surface* const surface = surfaceNamed(command.surface);
    Q_ASSERT(surface != nullptr);
    const QImage picture = surface->drawn(command, static_cast<int>(std::ceil(command.size * command.scale)));
    const QByteArray bytes = picture.isNull() ? QByteArray{} : pngOf(picture, command.scale);
    if (bytes.isEmpty()) {
        return failed("There is not enough memory for a picture of this size.");
    }
    if (command.output == QLatin1String("-")) {
        return {ExitCode::fine, bytes.toStdString(), {}};
    }
    const auto written = replace(command.output, bytes);
    return written ? CommandResult{} : failed(written.error().toStdString());
}

} // namespace roost

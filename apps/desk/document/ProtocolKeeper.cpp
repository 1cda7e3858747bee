#include "apps/desk/document/ProtocolKeeper.h"

#include "Orvel/Toolkit.h"
#include "apps/desk/Desk.h"
#include "host/files/Error.h"
#include "host/files/WholeFile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace orvel::desk {

namespace {

std::optional<datafile::Messages> parse(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return datafile::readCanonical(buffer);
}

QByteArray write(const datafile::Messages& lines)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    datafile::write(lines, buffer);
    return buffer.data();
}

std::set<LONGID> findItems(const datafile::Messages& lines)
{
    std::set<LONGID> items;
    for (const auto& [type, list] : lines) {
        for (const COVMessage& line : list)
            line.GetItemsID(items);
    }
    return items;
}

/// Empty for a file that is not there.
QString identify(const QString& path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return QString();
    return QStringLiteral("%1 %2 %3")
        .arg(QString::number(status.st_ino), QString::number(status.st_mtim.tv_sec),
             QString::number(status.st_mtim.tv_nsec));
}

QByteArray readIfThere(const QString& path)
{
    return QFile::exists(path) ? files::readAll(path) : QByteArray();
}

void makeAnew(const QString& path, const QByteArray& content)
{
    // Whoever cleans away the file may have taken its folder as well.
    mkdir(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), S_IRWXU);
    files::writeAll(path, content);
}

/// Puts the kept lines of the types that have fewer now into their place.
/// @return whether there were any
bool restoreMissing(const datafile::Messages& kept, const std::set<int>& replacedTypes,
                    datafile::Messages& lines)
{
    bool isAnyMissing = false;
    for (const auto& [type, list] : kept) {
        if (replacedTypes.count(type) != 0 || lines[type].size() >= list.size())
            continue;
        lines[type] = list;
        isAnyMissing = true;
    }
    return isAnyMissing;
}

} // namespace

void ProtocolKeeper::adopt(const QString& dataFile, const QByteArray& dataContent)
{
    content = dataContent;
    identity = identify(dataFile);
}

ProtocolKeeper::Outcome ProtocolKeeper::check(const QString& dataFile, const std::set<int>& replacedTypes)
{
    Outcome outcome;
    const bool isRunLost = !replacedTypes.empty() && identify(dataFile) == identity;
    if (isRunLost) {
        outcome.isWhole = false;
        outcome.message = Desk::tr("Строки этого запуска в протокол не попали: его файл не записан. "
                                   "Страница покажет прежний запуск, если он был.");
    }
    try {
        QByteArray now = readIfThere(dataFile);
        const auto kept = now == content ? std::nullopt : parse(content);
        if (kept) {
            datafile::Messages lines = parse(now).value_or(datafile::Messages());
            if (restoreMissing(*kept, isRunLost ? std::set<int>() : replacedTypes, lines)) {
                now = write(lines);
                makeAnew(dataFile, now);
                outcome.mentionedItems = findItems(lines);
                outcome.message =
                    Desk::tr("Файл протоколов «%1» пропал или не прочитался. Строки прежних запусков "
                             "записаны в него заново.")
                        .arg(dataFile);
            }
        }
        content = now;
        identity = identify(dataFile);
    } catch (const exceptions::Error& error) {
        outcome.isWhole = false;
        outcome.message = QString::fromStdWString(error.getText());
    }
    return outcome;
}

} // namespace orvel::desk

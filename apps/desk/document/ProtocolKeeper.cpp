#include "apps/desk/document/ProtocolKeeper.h"

#include "Orvel/Toolkit.h"
#include "apps/desk/Desk.h"
#include "host/app/Application.h"
#include "host/files/Error.h"
#include "host/files/QtFile.h"
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

void makeAnew(const QString& path, const QByteArray& content)
{
    // Whoever cleans away the file may have taken its folder as well.
    Application::restoreTempFolder();
    mkdir(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), S_IRWXU);
    files::writeAll(path, content);
}

/// Whether the type has fewer lines than were kept of it, and no run was to replace them.
bool isMissing(int type, const ProtocolSummary::Counts& keptCounts,
               const std::map<int, ProtocolSummary::Counts>& now, const std::set<int>& replacedTypes)
{
    const auto found = now.find(type);
    return replacedTypes.count(type) == 0 && (found == now.end() ? 0 : found->second.all) < keptCounts.all;
}

} // namespace

void ProtocolKeeper::adopt(const QString& dataFile, const QByteArray& dataContent)
{
    QBuffer buffer;
    buffer.setData(dataContent);
    buffer.open(QIODevice::ReadOnly);
    kept = read(buffer);
    identity = identify(dataFile);
}

ProtocolKeeper::Outcome ProtocolKeeper::check(const QString& dataFile, const std::set<int>& replacedTypes)
{
    const bool isRunLost = !replacedTypes.empty() && identify(dataFile) == identity;
    Outcome outcome;
    try {
        outcome = compare(dataFile, isRunLost ? std::set<int>() : replacedTypes);
        identity = identify(dataFile);
    } catch (const exceptions::Error& error) {
        outcome.isWhole = false;
        outcome.message = QString::fromStdWString(error.getText());
    }
    if (isRunLost) {
        outcome.isWhole = false;
        if (outcome.message.isEmpty())
            outcome.message = Desk::tr("Строки этого запуска в протокол не попали: его файл не записан. "
                                       "Страница покажет прежний запуск, если он был.");
    }
    return outcome;
}

/// Keeps what the file holds, after the lines that have gone missing are restored.
ProtocolKeeper::Outcome ProtocolKeeper::compare(const QString& dataFile, const std::set<int>& replacedTypes)
{
    Outcome outcome;
    Content now;
    if (QFile::exists(dataFile)) {
        QtFile file(dataFile);
        file.open(QIODevice::ReadOnly);
        if (kept.bytes.isContentOf(*file.device()))
            return outcome;
        file.device()->seek(0);
        now = read(*file.device());
        file.close();
    } else if (kept.bytes.isEmpty()) {
        return outcome;
    }
    outcome.mentionedItems = restoreMissing(dataFile, replacedTypes, now);
    if (outcome.mentionedItems)
        outcome.message = Desk::tr("Файл протоколов «%1» пропал или не прочитался. Строки прежних запусков "
                                   "записаны в него заново.")
                              .arg(dataFile);
    outcome.isChanged = true;
    kept = std::move(now);
    return outcome;
}

/// Reads a data file to its end, once.
ProtocolKeeper::Content ProtocolKeeper::read(QIODevice& device)
{
    PackingReader reader(device);
    const std::optional<ProtocolSummary> summary = ProtocolSummary::ofCanonical(reader);
    Content content;
    content.bytes = reader.finish();
    content.isCanonical = summary.has_value();
    content.summary = summary ? *summary : ProtocolSummary::of(content.bytes.unpack());
    return content;
}

/// Puts the kept lines of the types that have fewer now into their place, and makes the file anew.
/// @return the items that are mentioned then; nothing if no line was missing
std::optional<std::set<LONGID>> ProtocolKeeper::restoreMissing(const QString& dataFile,
                                                               const std::set<int>& replacedTypes,
                                                               Content& now) const
{
    // Lines that can't be told apart are as good as none.
    const auto countsNow = now.isCanonical ? now.summary.types : std::map<int, ProtocolSummary::Counts>();
    std::set<int> missingTypes;
    for (const auto& [type, counts] : kept.summary.types) {
        if (isMissing(type, counts, countsNow, replacedTypes))
            missingTypes.insert(type);
    }
    if (!kept.isCanonical || missingTypes.empty())
        return std::nullopt;
    datafile::Messages lines = parse(now.bytes.unpack()).value_or(datafile::Messages());
    datafile::Messages keptLines = parse(kept.bytes.unpack()).value_or(datafile::Messages());
    for (const int type : missingTypes)
        lines[type].swap(keptLines[type]);
    makeAnew(dataFile, write(lines));
    QtFile file(dataFile);
    file.open(QIODevice::ReadOnly);
    now = read(*file.device());
    file.close();
    return findItems(lines);
}

} // namespace orvel::desk

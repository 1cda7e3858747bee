#include "apps/desk/templates/TemplateFolder.h"

#include "apps/desk/Desk.h"
#include "apps/desk/templates/TemplateFile.h"
#include "host/files/Error.h"
#include "host/files/StringUtils.h"
#include "host/files/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>

namespace orvel::desk {

namespace templatefolder {

namespace {

const QString kSuffix = QStringLiteral(".json");

/// A name that a file may have, which is like that of the template.
QString makeFileName(const QString& name)
{
    constexpr int longestName = 50;
    QString fileName = name.trimmed().left(longestName);
    for (QChar& character : fileName) {
        if (!character.isLetterOrNumber() && !QStringLiteral(" -+(),").contains(character))
            character = QLatin1Char('_');
    }
    return fileName;
}

} // namespace

QString getFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/templates");
}

std::vector<KeptTemplate> list()
{
    std::vector<KeptTemplate> kept;
    const QDir folder(getFolder());
    for (const QString& name : folder.entryList({QLatin1Char('*') + kSuffix}, QDir::Files)) {
        const QString path = folder.filePath(name);
        try {
            kept.push_back({path, templatefile::read(path)});
        } catch (const exceptions::Error&) {
            // Somebody has put another file there.
        }
    }
    std::sort(kept.begin(), kept.end(), [](const KeptTemplate& a, const KeptTemplate& b) {
        return QString::localeAwareCompare(a.format.name, b.format.name) < 0;
    });
    return kept;
}

QString keep(const levelling::TableTemplate& format)
{
    const QDir folder(getFolder());
    if (!folder.mkpath(QStringLiteral(".")))
        throw exceptions::Error(Desk::tr("не удалось создать папку «%1»: %2")
                                    .arg(folder.path(), utils::describeReason(qt_error_string()))
                                    .toStdWString());
    const std::vector<KeptTemplate> kept = list();
    const auto sameName = std::find_if(kept.begin(), kept.end(), [&format](const KeptTemplate& one) {
        return one.format.name == format.name;
    });
    QString path;
    if (sameName != kept.end()) {
        path = sameName->path;
    } else {
        const QString name = makeFileName(format.name);
        path = folder.filePath(name + kSuffix);
        for (int number = 2; QFile::exists(path); ++number)
            path = folder.filePath(QStringLiteral("%1 (%2)%3").arg(name, QString::number(number), kSuffix));
    }
    files::writeAll(path, templatefile::toJson(format));
    return path;
}

bool forget(const QString& path)
{
    return QFile::remove(path) || !QFile::exists(path);
}

} // namespace templatefolder

} // namespace orvel::desk

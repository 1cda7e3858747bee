#include "host/app/Application.h"

#include "host/app/LibraryFolder.h"
#include "host/files/CFileException.h"
#include "host/files/StringUtils.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

[[noreturn]] void failTempFolder(const QString& folder, const QString& reason)
{
    throw qor::CFileException(
        qor::CFileException::CannotCreateFolder,
        QCoreApplication::translate("Host", "Не удалось создать временную папку в «%1»: %2.")
            .arg(QDir::toNativeSeparators(folder), reason)
            .toStdWString());
}

QString makeTempFolderTemplate()
{
    // Empty when TMPDIR names a folder that does not exist; the template would lead to the file system's
    // root.
    const QString systemFolder = QDir::tempPath();
    if (systemFolder.isEmpty()) {
        failTempFolder(qEnvironmentVariable("TMPDIR"),
                       QCoreApplication::translate("Host", "такой папки нет"));
    }
    QString applicationName = QCoreApplication::applicationName();
    applicationName.replace(QLatin1Char('/'), QLatin1Char('_'));
    return systemFolder + QLatin1Char('/') + applicationName + QStringLiteral("-XXXXXXXXXXXX");
}

QStringList getDataFolders()
{
    const QString folderName = QStringLiteral(HOST_DATA_FOLDER);
    QStringList folders;
    const QString overriding = qEnvironmentVariable(HOST_DATA_VARIABLE);
    if (!overriding.isEmpty())
        folders.append(overriding);
    folders.append(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/") + folderName);
    folders.append(getLibraryFolder() + QStringLiteral("/" HOST_LIBRARY_DATA_FOLDER));
    folders.append(QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, folderName,
                                             QStandardPaths::LocateDirectory));
    return folders;
}

void writeLine(const QString& message)
{
    std::fputs((utils::escapeControls(message).toLocal8Bit() + '\n').constData(), stderr);
}

} // namespace

Application* Application::s_instance = nullptr;

Application::Application(QObject* parent) : QObject(parent), tempDir(makeTempFolderTemplate())
{
    Q_ASSERT_X(!s_instance, "Application", "there may be only one application object");
    if (!tempDir.isValid())
        failTempFolder(QDir::tempPath(), tempDir.errorString());
    s_instance = this;
}

Application::~Application()
{
    for (const QString& path : qAsConst(tmpFiles))
        QFile::remove(path);
    s_instance = nullptr;
}

Application* Application::instance()
{
    return s_instance;
}

QString Application::getTempFolder()
{
    return s_instance ? s_instance->tempDir.path() : QString();
}

QString Application::getTmpFileName(const QString& pattern)
{
    if (!s_instance)
        return {};
    const QString marker = QStringLiteral("%1");
    QString namePattern = QFileInfo(pattern).fileName();
    if (!namePattern.contains(marker))
        namePattern.prepend(marker + QLatin1Char('_'));
    QString path;
    do {
        QString name = namePattern;
        name.replace(marker, QString::number(++s_instance->lastTmpFileNumber));
        path = s_instance->tempDir.filePath(name);
    } while (s_instance->givenFileNames.contains(path) || QFileInfo(path).isSymLink() ||
             QFileInfo::exists(path));
    s_instance->givenFileNames.insert(path);
    return path;
}

void Application::registerTmpFile(const QString& path)
{
    tmpFiles.append(path);
}

QString Application::locateData(const QString& name, QStandardPaths::LocateOptions options)
{
    const bool isFolderWanted = options.testFlag(QStandardPaths::LocateDirectory);
    const QStringList folders = getDataFolders();
    for (const QString& folder : folders) {
        const QFileInfo candidate(folder + QLatin1Char('/') + name);
        if (isFolderWanted ? candidate.isDir() : candidate.isFile())
            return QDir::cleanPath(candidate.absoluteFilePath());
    }
    return {};
}

void Application::warning(const QString& message, QObject* parent)
{
    if (s_instance)
        s_instance->showWarning(message, parent);
    else
        writeLine(message);
}

void Application::showWarning(const QString& message, QObject* /*parent*/)
{
    writeLine(message);
}

Application* getApplication()
{
    return Application::instance();
}

#include "host/app/Application.h"

#include "host/app/LibraryFolder.h"
#include "host/files/StringUtils.h"
#include "host/files/UnfinishedFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

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

Application::Application(QObject* parent) : QObject(parent), tempFolder(QCoreApplication::applicationName())
{
    Q_ASSERT_X(!s_instance, "Application", "there may be only one application object");
    s_instance = this;
    UnfinishedFile::noteIn(tempFolder.getPath());
}

Application::~Application()
{
    for (const QString& path : qAsConst(tmpFiles))
        QFile::remove(path);
    UnfinishedFile::noteIn(QString());
    s_instance = nullptr;
}

Application* Application::instance()
{
    return s_instance;
}

QString Application::getTempFolder()
{
    return s_instance ? s_instance->tempFolder.getPath() : QString();
}

void Application::restoreTempFolder()
{
    if (s_instance)
        s_instance->tempFolder.restore();
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
        path = s_instance->tempFolder.filePath(name);
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

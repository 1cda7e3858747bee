#include "tests/installation/InstalledTree.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

namespace orvel::test {

Outcome runProgram(const QString& program, const QStringList& arguments, const QString& folder,
                   const QStringList& variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name :
         {"ORVEL_DATA_DIR", "LD_LIBRARY_PATH", "XDG_DATA_DIRS", "XDG_DATA_HOME", "DESTDIR"})
        environment.remove(QString::fromLatin1(name));
    for (const QString& variable : variables)
        environment.insert(variable.section(QLatin1Char('='), 0, 0), variable.section(QLatin1Char('='), 1));

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForFinished(-1))
        return {-1, process.errorString().toUtf8()};
    return {process.exitCode(), process.readAll()};
}

InstalledTree::InstalledTree()
{
    const QString first = folder.filePath(QStringLiteral("first"));
    const Outcome outcome = runProgram(
        QStringLiteral(CMAKE_PROGRAM),
        {QStringLiteral("--install"), QStringLiteral(BUILD_FOLDER), QStringLiteral("--prefix"), first},
        folder.path());
    if (outcome.exitCode != 0)
        qFatal("Cannot install:\n%s", outcome.output.constData());
    if (!QDir().rename(first, path(QString())))
        qFatal("Cannot move %s", qPrintable(first));
    QDir(folder.path()).mkdir(QStringLiteral("work"));
}

QString InstalledTree::path(const QString& name) const
{
    return QDir::cleanPath(folder.filePath(QStringLiteral("moved/") + name));
}

QString InstalledTree::work(const QString& name) const
{
    return QDir::cleanPath(folder.filePath(QStringLiteral("work/") + name));
}

} // namespace orvel::test

#include "tests/desk/DeskProcess.h"

#include <QProcess>
#include <QProcessEnvironment>

namespace orvel::test {

DeskProcess DeskProcess::run(const QString& folder, const QStringList& arguments)
{
    return runPlain(folder, QStringList(QStringLiteral("--headless")) + arguments);
}

DeskProcess DeskProcess::runPlain(const QString& folder, const QStringList& arguments)
{
    // The pages get a template of three lines, so that the installed one can change.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ORVEL_DATA_DIR"), QStringLiteral(DESK_TEST_DATA));
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(DESK_PROGRAM), arguments);
    DeskProcess result;
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.errors = QString::fromUtf8(process.readAllStandardError());
    return result;
}

} // namespace orvel::test

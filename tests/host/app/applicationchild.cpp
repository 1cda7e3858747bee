// Does one thing with an Application, for tests that look at it from outside.

#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

namespace {

constexpr int kBadUsage = 2;
constexpr int kNoTempFolder = 3;

QString locate(const QString& command, const QString& name)
{
    return command == QLatin1String("locate-folder")
               ? Application::locateData(name, QStandardPaths::LocateDirectory)
               : Application::locateData(name);
}

/// Begins to write a file and says where the temporary folder is; then waits until it is told to go on.
void writeOn(const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write("new");
    std::puts(qUtf8Printable(Application::getTempFolder()));
    std::fflush(stdout);
    std::getchar();
    file.close();
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication qtApplication(argc, argv);
    const QString command = QCoreApplication::arguments().value(1);
    const QString argument = QCoreApplication::arguments().value(2);
    if (command == QLatin1String("bare-warning")) {
        Application::warning(argument, nullptr);
        return 0;
    }

    std::unique_ptr<Application> application;
    try {
        application = std::make_unique<Application>();
    } catch (const qor::CFileException& e) {
        std::fputs(e.what(), stderr);
        return kNoTempFolder;
    }
    if (command == QLatin1String("warning"))
        Application::warning(argument, nullptr);
    else if (command == QLatin1String("temp-folder"))
        std::fputs(qUtf8Printable(Application::getTempFolder()), stdout);
    else if (command == QLatin1String("write-on"))
        writeOn(argument);
    else if (command.startsWith(QLatin1String("locate")))
        std::fputs(qUtf8Printable(locate(command, argument)), stdout);
    else
        return kBadUsage;
    return 0;
}

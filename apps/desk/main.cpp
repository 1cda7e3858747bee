#include "apps/common/PluginLocation.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ItemTypes.h"
#include "apps/desk/headless/CommandLine.h"
#include "apps/desk/headless/Headless.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/files/Error.h"
#include "host/window/ProjectWindow.h"

#include <QApplication>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace {

constexpr int kFailed = 2;

int fail(const QString& text)
{
    QTextStream(stderr) << QStringLiteral("orvel-desk: ") << text.simplified() << '\n';
    return kFailed;
}

QStringList getArguments(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

void writeFatalOnly(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

/// An application for a program that shows nothing: it looks for no display, and what Qt remarks about the
/// session while it starts is left out, since standard error carries only the program's own words.
std::unique_ptr<QApplication> makeHiddenApplication(int& argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QtMessageHandler handler = qInstallMessageHandler(writeFatalOnly);
    auto application = std::make_unique<QApplication>(argc, argv);
    qInstallMessageHandler(handler);
    return application;
}

int runHeadless(const CommandLine& commandLine)
{
    SDIApplication application(QStringLiteral("orvel"));
    PluginManager plugins;
    if (!plugins.load(locatePlugin())) {
        const PluginManager::LoadFailure failure = plugins.getFailures().constLast();
        return fail(failure.path + QStringLiteral(": ") + failure.reason);
    }
    plugins.extendApplication(&application);
    Document document(plugins, Desk::tr("Новый проект"));
    ProjectWindow window(&document.getModel());
    plugins.extendProjectGUI(&window);
    try {
        QTextStream output(stdout);
        Headless(document, window, output).execute(commandLine);
    } catch (const exceptions::Error& error) {
        return fail(QString::fromStdWString(error.getText()));
    }
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    const QStringList arguments = getArguments(argc, argv);
    const std::unique_ptr<QApplication> application = makeHiddenApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvel-desk"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORVEL_DESK_VERSION));
    registerItemTypes();

    const CommandLine commandLine = CommandLine::parse(arguments);
    if (!commandLine.error.isEmpty())
        return fail(commandLine.error);
    if (commandLine.wantsHelp || commandLine.wantsVersion) {
        QTextStream(stdout) << (commandLine.wantsHelp
                                    ? CommandLine::getHelp()
                                    : QStringLiteral("orvel-desk " ORVEL_DESK_VERSION "\n"));
        return 0;
    }
    return runHeadless(commandLine);
}

#include "apps/common/OffscreenPlatform.h"
#include "apps/common/StandardStreams.h"
#include "apps/common/TerminationSignals.h"
#include "apps/common/Version.h"
#include "apps/common/WarningApplication.h"
#include "apps/desk/CommandLine.h"
#include "apps/desk/Desk.h"
#include "apps/desk/Translation.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/gui/DeskSession.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/gui/UriServer.h"
#include "apps/desk/headless/Headless.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/files/Error.h"
#include "host/files/StringUtils.h"
#include "host/window/Display.h"
#include "host/window/ProjectWindow.h"

#include <QApplication>
#include <QMessageBox>
#include <QPalette>
#include <QSet>
#include <QTextStream>
#include <QUrl>

#include <csignal>
#include <memory>

using namespace orvel::desk;

namespace {

void complain(const QString& text)
{
    QTextStream(stderr) << QStringLiteral("orvel-desk: ") << utils::escapeControls(text) << '\n';
}

int fail(const QString& text)
{
    complain(text);
    return Headless::Refused;
}

int print(const QString& text)
{
    standardstreams::write(QStringLiteral("-"), text.toLocal8Bit());
    return Headless::Done;
}

QStringList getArguments(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

/// What the program's application object hosts, with its plug-ins. Empty error if all is well.
class DeskHost
{
public:
    explicit DeskHost(SDIApplication& application)
    {
        if (plugins.load(PluginManager::locate(QStringLiteral("Orvel")))) {
            plugins.extendApplication(&application);
            return;
        }
        const PluginManager::LoadFailure failure = plugins.getFailures().constLast();
        error = failure.path + QStringLiteral(": ") + failure.reason;
    }

    const PluginManager& getPlugins() const { return plugins; }
    const QString& getError() const { return error; }

private:
    ItemDelegateFactory delegateFactory;
    PluginManager plugins;
    QString error;
};

/// Tells what went wrong with what the application has warned of meanwhile, which is the reason; each once.
class Complaints
{
public:
    explicit Complaints(orvel::apps::WarningApplication& warningApplication) : application(warningApplication)
    {}

    void tell(const QString& text)
    {
        const QString reason = application.takeWarning();
        const QString whole =
            reason.isEmpty() || text.contains(reason) ? text : text + QLatin1Char(' ') + reason;
        if (told.contains(whole))
            return;
        told.insert(whole);
        complain(whole);
    }

    /// The exit code after the last warning, for which there was no text.
    int finish(int exitCode)
    {
        const QString warning = application.takeWarning();
        return warning.isEmpty() ? exitCode : fail(warning);
    }

private:
    orvel::apps::WarningApplication& application;
    QSet<QString> told;
};

int runHeadless(const CommandLine& commandLine)
{
    orvel::apps::WarningApplication application(QStringLiteral("orvel"));
    const DeskHost host(application);
    if (!host.getError().isEmpty())
        return fail(host.getError());
    Document document(host.getPlugins(), Desk::tr("Новый проект"));
    ProjectWindow window(&document.getModel());
    host.getPlugins().extendProjectGUI(&window);
    // A reader who goes away early must not cost what is still to be written.
    std::signal(SIGPIPE, SIG_IGN);
    Complaints complaints(application);
    Headless headless(document, window, [&complaints](const QString& text) { complaints.tell(text); });
    return complaints.finish(headless.execute(commandLine));
}

int runWindow(const CommandLine& commandLine)
{
    SDIApplication application(QStringLiteral("orvel"));
    const DeskHost host(application);
    if (!host.getError().isEmpty())
        return fail(host.getError());
    QPalette links;
    links.setColor(QPalette::Link, itemlook::getLinkColor(QApplication::palette()));
    QApplication::setPalette(links);
    DeskSession session(host.getPlugins(), commandLine.recordFile);
    session.start(commandLine.argument);
    return orvel::apps::TerminationSignals::hasCome() ? 0 : QApplication::exec();
}

/// Hands a URI to an instance that runs already.
uriclient::Answer handOver(const QString& argument)
{
    const QUrl url(argument);
    return url.scheme() == QLatin1String("orvel") ? uriclient::handOver(url) : uriclient::Answer::Nobody;
}

/// A second window would show another project than the one that the URI leads to.
int tellOfSilence()
{
    const QString text =
        Desk::tr("Открытое окно программы не отвечает. Закройте его или подождите и щёлкните "
                 "ссылку ещё раз.");
    if (hasDisplay())
        QMessageBox::warning(nullptr, QGuiApplication::applicationDisplayName(), text);
    return fail(text);
}

int run(const CommandLine& commandLine)
{
    if (!commandLine.error.isEmpty())
        return fail(commandLine.error);
    if (commandLine.wantsHelp)
        return print(CommandLine::getHelp());
    if (commandLine.wantsVersion)
        return print(QStringLiteral("orvel-desk %1\n").arg(orvel::apps::getVersion()));
    UriServer::removeLeftOvers();
    const auto answer = commandLine.isHeadless ? uriclient::Answer::Nobody : handOver(commandLine.argument);
    if (answer == uriclient::Answer::Taken)
        return Headless::Done;
    if (answer == uriclient::Answer::Silent)
        return tellOfSilence();
    return commandLine.isHeadless ? runHeadless(commandLine) : runWindow(commandLine);
}

} // namespace

int main(int argc, char* argv[])
{
    orvel::apps::occupyStandardStreams();
    orvel::apps::TerminationSignals termination;
    const QStringList arguments = getArguments(argc, argv);
    // What needs no window must not look for a display.
    const CommandLine preview = CommandLine::parse(arguments);
    std::unique_ptr<orvel::apps::OffscreenPlatform> offscreen;
    if (preview.isHeadless || preview.wantsHelp || preview.wantsVersion || !preview.error.isEmpty())
        offscreen = std::make_unique<orvel::apps::OffscreenPlatform>();

    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    termination.watch();
    QCoreApplication::setOrganizationName(QStringLiteral("Orvel"));
    QCoreApplication::setApplicationName(QStringLiteral("orvel-desk"));
    QCoreApplication::setApplicationVersion(orvel::apps::getVersion());
    QGuiApplication::setDesktopFileName(QStringLiteral("org.orvel.Desk"));
    installLanguage(preview.language);
    QGuiApplication::setApplicationDisplayName(Desk::tr("Обработка нивелирования"));
    registerDeskTypes();
    try {
        return orvel::apps::TerminationSignals::getExitCode(run(CommandLine::parse(arguments)));
    } catch (const exceptions::Error& error) {
        return fail(QString::fromStdWString(error.getText()));
    }
}

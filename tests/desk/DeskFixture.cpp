#include "tests/desk/DeskFixture.h"

#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QSettings>
#include <QTimer>

namespace orvel::test {

namespace {

QAction* findAction(const QWidget& window, const QString& text)
{
    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->text().remove(QLatin1Char('&')) == text)
            return action;
    }
    return nullptr;
}

} // namespace

QStringList WarningCollector::takeWarnings()
{
    QStringList taken;
    taken.swap(warnings);
    return taken;
}

void WarningCollector::showWarning(const QString& message, QObject* /*parent*/)
{
    warnings.append(message);
}

TestHome::TestHome()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Orvel"));
    QCoreApplication::setApplicationName(QStringLiteral("orvel-desk-test"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", folder.path().toLocal8Bit());
    desk::registerDeskTypes();
}

DeskFixture::DeskFixture()
{
    if (!plugins.load(PluginManager::locate(QStringLiteral("Orvel"))))
        qFatal("%s", qUtf8Printable(plugins.getFailures().constLast().reason));
    plugins.extendApplication(&application);
}

std::unique_ptr<desk::DeskWindow> DeskFixture::makeWindow()
{
    auto window = std::make_unique<desk::DeskWindow>(
        std::make_unique<desk::Document>(plugins, QStringLiteral("Новый проект")));
    plugins.extendProjectGUI(window.get());
    window->show();
    return window;
}

std::unique_ptr<desk::DeskWindow> DeskFixture::makeWindow(const QString& networkFile)
{
    auto window = makeWindow();
    window->importFile(networkFile);
    window->getMonitor().waitForFinished();
    return window;
}

QString samplePath(const QString& name)
{
    return QStringLiteral(DESK_SAMPLES "/") + name;
}

QString testNetworkPath(const QString& name)
{
    return QStringLiteral(DESK_TEST_DATA "/") + name;
}

QStringList toList(const char* texts)
{
    return QString::fromUtf8(texts).split(QLatin1Char('|'));
}

bool triggerAction(const QWidget& window, const QString& text)
{
    QAction* action = findAction(window, text);
    if (!action || !action->isEnabled())
        return false;
    action->trigger();
    return true;
}

bool isActionEnabled(const QWidget& window, const QString& text)
{
    const QAction* action = findAction(window, text);
    return action && action->isEnabled();
}

Answer::Answer(const QString& buttonText) : button(buttonText)
{
    QTimer::singleShot(0, this, &Answer::look);
}

void Answer::look()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) {
        QTimer::singleShot(5, this, &Answer::look);
        return;
    }
    question = (box->text() + QLatin1Char(' ') + box->informativeText()).trimmed();
    for (QAbstractButton* choice : box->buttons()) {
        if (choice->text().remove(QLatin1Char('&')) == button) {
            choice->click();
            return;
        }
    }
    qWarning("The question has no such button: %s", qUtf8Printable(question));
    box->reject();
}

} // namespace orvel::test

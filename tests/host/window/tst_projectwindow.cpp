#include "host/app/Application.h"
#include "host/model/CProject.h"
#include "host/model/CProjectModel.h"
#include "host/process/CProcessMonitor.h"
#include "host/window/ProjectWindow.h"
#include "host/window/ProjectWindowGUIExtension.h"

#include <QSemaphore>
#include <QtTest>

namespace {

/// Takes the URLs of one host part and notes that it was asked.
class Handler : public IUriNavigationHandler
{
public:
    Handler(const QString& handlerName, QStringList* askedHandlers) : name(handlerName), asked(askedHandlers)
    {}

    bool navigate(const QUrl& url) override
    {
        asked->append(name);
        return url.host() == name;
    }

    bool isAllowedDuringRun(const QUrl& /*url*/) const override { return name == QLatin1String("harmless"); }

private:
    QString name;
    QStringList* asked;
};

/// Runs on a project.
class Monitor : public CProcessMonitor
{
public:
    explicit Monitor(const CProject* runProject) { setProject(runProject); }
};

/// Keeps its warnings.
class WarningCollector : public Application
{
public:
    const QStringList& getWarnings() const { return warnings; }

protected:
    void showWarning(const QString& message, QObject* /*parent*/) override { warnings.append(message); }

private:
    QStringList warnings;
};

} // namespace

class TestProjectWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isFoundByItsProject();
    void titleNamesTheProject();
    void handlersAreAskedInOrder();
    void nobodyTakesTheUrl();
    void missingHandlerIsIgnored();
    void urlWaitsForTheRun();
    void extensionKnowsItsWindow();
    void extensionsGoWithTheWindow();

private:
    CProject project{QStringLiteral("Ход 12")};
    CProjectModel model{&project};
};

void TestProjectWindow::isFoundByItsProject()
{
    CProject otherProject(QStringLiteral("other"));
    CProjectModel otherModel(&otherProject);
    QVERIFY(ProjectWindow::getProjectWindow(&project) == nullptr);
    QVERIFY(ProjectWindow::getProjectWindow(nullptr) == nullptr);
    {
        ProjectWindow otherWindow(&otherModel);
        ProjectWindow window(&model);
        QVERIFY(ProjectWindow::getProjectWindow(&project) == &window);
        QVERIFY(ProjectWindow::getProjectWindow(&otherProject) == &otherWindow);
        QVERIFY(window.getModel() == &model);
    }
    QVERIFY(ProjectWindow::getProjectWindow(&project) == nullptr);
}

void TestProjectWindow::titleNamesTheProject()
{
    const ProjectWindow window(&model);
    QCOMPARE(window.windowTitle(), QStringLiteral("Ход 12[*]"));
}

void TestProjectWindow::handlersAreAskedInOrder()
{
    QStringList asked;
    ProjectWindow window(&model);
    for (const char* name : {"first", "second", "third"})
        window.addUriNavigationHandler(std::make_unique<Handler>(QLatin1String(name), &asked));
    QVERIFY(window.navigate(QUrl(QStringLiteral("survey://second"))));
    QCOMPARE(asked, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

void TestProjectWindow::nobodyTakesTheUrl()
{
    QStringList asked;
    ProjectWindow window(&model);
    QVERIFY(!window.navigate(QUrl(QStringLiteral("survey://second"))));
    window.addUriNavigationHandler(std::make_unique<Handler>(QStringLiteral("first"), &asked));
    QVERIFY(!window.navigate(QUrl(QStringLiteral("survey://second"))));
    QCOMPARE(asked, QStringList{QStringLiteral("first")});
}

void TestProjectWindow::missingHandlerIsIgnored()
{
    ProjectWindow window(&model);
    window.addUriNavigationHandler(nullptr);
    QVERIFY(!window.navigate(QUrl(QStringLiteral("survey://first"))));
}

void TestProjectWindow::urlWaitsForTheRun()
{
    QStringList asked;
    ProjectWindow window(&model);
    for (const char* name : {"page", "harmless"})
        window.addUriNavigationHandler(std::make_unique<Handler>(QLatin1String(name), &asked));
    QSemaphore end;
    Monitor monitor(&project);
    monitor.start([&end](qor::IProcessMonitor&) { end.acquire(); });
    const auto releaseRun = qScopeGuard([&end] { end.release(); });
    QVERIFY(monitor.isRunning());
    QVERIFY(window.navigate(QUrl(QStringLiteral("survey://harmless"))));
    QCOMPARE(asked, QStringList(QStringLiteral("harmless")));
    const WarningCollector application;
    QVERIFY(window.navigate(QUrl(QStringLiteral("survey://page"))));
    QCOMPARE(application.getWarnings(),
             QStringList(QStringLiteral("Идёт обработка. Откройте ссылку ещё раз, когда она "
                                        "закончится.")));
    QCOMPARE(asked, (QStringList{QStringLiteral("harmless"), QStringLiteral("harmless")}));
    end.release();
    QVERIFY(monitor.waitForFinished());
    QVERIFY(window.navigate(QUrl(QStringLiteral("survey://page"))));
    QCOMPARE(asked.size(), 3);
}

void TestProjectWindow::extensionKnowsItsWindow()
{
    auto window = std::make_unique<ProjectWindow>(&model);
    const ProjectWindowGUIExtension extension(window.get(), nullptr);
    QVERIFY(extension.getWindow() == window.get());
    QVERIFY(extension.getModel() == &model);
    window.reset();
    QVERIFY(extension.getWindow() == nullptr);
}

void TestProjectWindow::extensionsGoWithTheWindow()
{
    constexpr int key = 7;
    auto window = std::make_unique<ProjectWindow>(&model);
    const QPointer<GUIExtension> first = new ProjectWindowGUIExtension(window.get(), window.get());
    const QPointer<GUIExtension> second = new ProjectWindowGUIExtension(window.get(), window.get());
    window->addExtension(key, first);
    window->addExtension(key, second);
    QCOMPARE(window->getExtensions(key), (std::vector<GUIExtension*>{first, second}));
    window.reset();
    QVERIFY(first.isNull());
    QVERIFY(second.isNull());
}

QTEST_MAIN(TestProjectWindow)
#include "tst_projectwindow.moc"

#include "host/app/Application.h"
#include "host/app/PluginManager.h"
#include "host/model/CProjectModel.h"
#include "host/window/GUIExtension.h"
#include "host/window/ProjectGUI.h"
#include "tests/support/TestFiles.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kFirst = QStringLiteral(FIRST_PLUGIN);
const QString kSecond = QStringLiteral(SECOND_PLUGIN);
const QString kRefusing = QStringLiteral(REFUSING_PLUGIN);
const QString kForeign = QStringLiteral(FOREIGN_PLUGIN);
const QString kIncomplete = QStringLiteral(INCOMPLETE_PLUGIN);
const QString kLibrary = QStringLiteral(PLAIN_LIBRARY);

QStringList getCalls(const QObject& object)
{
    return object.property("calls").toStringList();
}

} // namespace

class TestPluginManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void locatesAPluginOfTheBuildTree();
    void missingPluginIsExpectedBesideTheLibrary();
    void loadsAPlugin();
    void missingFileIsAFailure();
    void fileThatIsNoLibraryIsAFailure();
    void libraryThatIsNoPluginIsAFailure();
    void pluginWithoutInterfacesIsAFailure();
    void pluginWithAMissingSymbolIsAFailure();
    void failuresStandInTheOrderOfLoading();
    void failureLeavesOtherPluginsAtWork();
    void pluginIsTakenOnce();
    void applicationIsExtendedInTheOrderOfLoading();
    void applicationIsUnextendedAtTheEndTheLastFirst();
    void pluginThatRefusesIsAFailureAndNotAskedToUndo();
    void pluginsThatExtendedNothingUndoNothing();
    void destroyedApplicationIsNotUnextended();
    void modelIsExtendedInTheOrderOfLoading();
    void projectWindowIsExtendedInTheOrderOfLoading();
};

void TestPluginManager::locatesAPluginOfTheBuildTree()
{
    QCOMPARE(PluginManager::locate(QStringLiteral("Orvel")), QStringLiteral(ORVEL_PLUGIN));
}

void TestPluginManager::missingPluginIsExpectedBesideTheLibrary()
{
    QCOMPARE(PluginManager::locate(QStringLiteral("Missing")),
             QFileInfo(QStringLiteral(HOST_LIBRARY)).path() + QStringLiteral("/libMissing.so.1"));
}

void TestPluginManager::loadsAPlugin()
{
    PluginManager manager;

    QVERIFY(manager.load(kFirst));
    QVERIFY(manager.getFailures().isEmpty());
}

void TestPluginManager::missingFileIsAFailure()
{
    PluginManager manager;

    QVERIFY(!manager.load(QStringLiteral("/missing/plugin.so")));
    QCOMPARE(manager.getFailures().size(), 1);
    QCOMPARE(manager.getFailures().first().path, QStringLiteral("/missing/plugin.so"));
    QCOMPARE(manager.getFailures().first().reason, QStringLiteral("Файл не найден."));
}

void TestPluginManager::fileThatIsNoLibraryIsAFailure()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plugin.so"));
    writeFile(path, "no library");
    PluginManager manager;

    QVERIFY(!manager.load(path));
    QCOMPARE(manager.getFailures().size(), 1);
    QCOMPARE(manager.getFailures().first().path, path);
    QCOMPARE(manager.getFailures().first().reason,
             QStringLiteral("'%1' is not an ELF object (file too small)").arg(path));
}

void TestPluginManager::libraryThatIsNoPluginIsAFailure()
{
    PluginManager manager;

    QVERIFY(!manager.load(kLibrary));
    QCOMPARE(manager.getFailures().size(), 1);
    QCOMPARE(manager.getFailures().first().path, kLibrary);
    QCOMPARE(manager.getFailures().first().reason,
             QStringLiteral("Failed to extract plugin meta data from '%1'")
                 .arg(QFileInfo(kLibrary).canonicalFilePath()));
}

void TestPluginManager::pluginWithoutInterfacesIsAFailure()
{
    PluginManager manager;

    QVERIFY(!manager.load(kForeign));
    QCOMPARE(manager.getFailures().size(), 1);
    QCOMPARE(manager.getFailures().first().path, kForeign);
    QCOMPARE(manager.getFailures().first().reason,
             QStringLiteral("Модуль не расширяет ни приложение, ни модель проекта, ни его окно."));
}

void TestPluginManager::pluginWithAMissingSymbolIsAFailure()
{
    PluginManager manager;

    QVERIFY(!manager.load(kIncomplete));
    QCOMPARE(manager.getFailures().size(), 1);
    QCOMPARE(manager.getFailures().first().reason,
             QStringLiteral("Cannot load library %1: (%1: undefined symbol: functionOfNoLibrary)")
                 .arg(kIncomplete));
}

void TestPluginManager::failuresStandInTheOrderOfLoading()
{
    PluginManager manager;
    manager.load(QStringLiteral("/missing/b.so"));
    manager.load(kForeign);
    manager.load(QStringLiteral("/missing/a.so"));
    QStringList paths;
    for (const PluginManager::LoadFailure& failure : manager.getFailures())
        paths.append(failure.path);

    QCOMPARE(paths,
             QStringList({QStringLiteral("/missing/b.so"), kForeign, QStringLiteral("/missing/a.so")}));
}

void TestPluginManager::failureLeavesOtherPluginsAtWork()
{
    CProjectModel model(nullptr);
    PluginManager manager;
    manager.load(kFirst);
    manager.load(kForeign);
    manager.load(kSecond);
    manager.extendModel(&model);

    QCOMPARE(getCalls(model), QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

void TestPluginManager::pluginIsTakenOnce()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("link.so"));
    QVERIFY(QFile::link(kFirst, link));
    CProjectModel model(nullptr);
    PluginManager manager;

    QVERIFY(manager.load(kFirst));
    QVERIFY(manager.load(kFirst));
    QVERIFY(manager.load(link));
    manager.extendModel(&model);
    QCOMPARE(getCalls(model), QStringList{QStringLiteral("first")});
}

void TestPluginManager::applicationIsExtendedInTheOrderOfLoading()
{
    Application application;
    PluginManager manager;
    manager.load(kSecond);
    manager.load(kFirst);
    manager.extendApplication(&application);

    QCOMPARE(getCalls(application),
             QStringList({QStringLiteral("second extends"), QStringLiteral("first extends")}));
    QVERIFY(manager.getFailures().isEmpty());
}

void TestPluginManager::applicationIsUnextendedAtTheEndTheLastFirst()
{
    Application application;
    {
        PluginManager manager;
        manager.load(kSecond);
        manager.load(kFirst);
        manager.extendApplication(&application);
        application.setProperty("calls", QVariant());
    }
    QCOMPARE(getCalls(application),
             QStringList({QStringLiteral("first unextends"), QStringLiteral("second unextends")}));
}

void TestPluginManager::pluginThatRefusesIsAFailureAndNotAskedToUndo()
{
    Application application;
    {
        PluginManager manager;
        manager.load(kRefusing);
        manager.load(kFirst);
        manager.extendApplication(&application);

        QCOMPARE(manager.getFailures().size(), 1);
        QCOMPARE(manager.getFailures().first().path, kRefusing);
        QCOMPARE(manager.getFailures().first().reason,
                 QStringLiteral("Модуль не смог расширить приложение."));
    }
    QCOMPARE(getCalls(application),
             QStringList({QStringLiteral("refusing extends"), QStringLiteral("first extends"),
                          QStringLiteral("first unextends")}));
}

void TestPluginManager::pluginsThatExtendedNothingUndoNothing()
{
    Application application;
    {
        PluginManager manager;
        manager.load(kFirst);
    }
    QCOMPARE(getCalls(application), QStringList());
}

void TestPluginManager::destroyedApplicationIsNotUnextended()
{
    PluginManager manager;
    manager.load(kFirst);
    {
        Application application;
        manager.extendApplication(&application);
    }
    CProjectModel model(nullptr);
    manager.extendModel(&model);

    QCOMPARE(getCalls(model), QStringList{QStringLiteral("first")});
}

void TestPluginManager::modelIsExtendedInTheOrderOfLoading()
{
    CProjectModel model(nullptr);
    PluginManager manager;
    manager.load(kSecond);
    manager.load(kFirst);
    manager.extendModel(&model);

    QCOMPARE(getCalls(model), QStringList({QStringLiteral("second"), QStringLiteral("first")}));
}

void TestPluginManager::projectWindowIsExtendedInTheOrderOfLoading()
{
    CProjectModel model(nullptr);
    ProjectGUI gui(&model);
    PluginManager manager;
    manager.load(kSecond);
    manager.load(kFirst);
    manager.extendProjectGUI(&gui);
    QStringList names;
    for (const GUIExtension* extension : gui.getExtensions(1))
        names.append(extension->objectName());

    QCOMPARE(names, QStringList({QStringLiteral("second"), QStringLiteral("first")}));
}

QTEST_GUILESS_MAIN(TestPluginManager)
#include "tst_pluginmanager.moc"

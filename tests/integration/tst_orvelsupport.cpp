#include "Orvel/integration/CReportDelegate.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "host/app/IAppExtension.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/enums/EnumData.h"
#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"
#include "host/model/IModelExtension.h"
#include "host/model/ModelInitializer.h"
#include "host/window/ProjectGUI.h"
#include "tests/integration/WindowFixture.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int kOrvelKey = 0x12355F00;

/// The root as a host gets it.
QObject* loadRoot()
{
    QPluginLoader loader(QStringLiteral(ORVEL_PLUGIN_PATH));
    QObject* root = loader.instance();
    if (!root)
        qFatal("%s", qUtf8Printable(loader.errorString()));
    return root;
}

/// One of the root's interfaces, by the cast that a host makes.
template<typename Interface>
Interface* loadInterface()
{
    auto* extension = qobject_cast<Interface*>(loadRoot());
    if (!extension)
        qFatal("The plug-in lacks an interface");
    return extension;
}

void extendModel(CProjectModel& model)
{
    loadInterface<IModelExtension>()->extendModel(&model);
}

void extendWindow(ProjectWindow& window)
{
    loadInterface<ProjectGUI::IExtender>()->extendProjectGUI(&window);
}

bool extendApplication(Application& application)
{
    return loadInterface<IAppExtension>()->extendApplication(&application);
}

/// A folder of installed data that holds the "Protocol" folder, in use while it exists.
class InstalledData
{
public:
    InstalledData()
    {
        qputenv("ORVEL_DATA_DIR", QFile::encodeName(folder.path()));
        QDir(folder.path()).mkpath(QStringLiteral("Protocol/protocol_file"));
    }
    ~InstalledData() { qunsetenv("ORVEL_DATA_DIR"); }
    InstalledData(const InstalledData&) = delete;
    InstalledData& operator=(const InstalledData&) = delete;

    QString getTemplateFolder() const { return folder.filePath(QStringLiteral("Protocol")); }
    void write(const QString& name, const QByteArray& content) const
    {
        writeFile(getTemplateFolder() + QLatin1Char('/') + name, content);
    }

private:
    QTemporaryDir folder;
};

std::vector<COrvel*> protocolsOf(const CProjectModel& model)
{
    std::vector<COrvel*> protocols;
    for (CModelElement* item : model.getItems(kOrvelKey))
        protocols.push_back(dynamic_cast<COrvel*>(item));
    return protocols;
}

} // namespace

/// The plug-in's root, reached through the plug-in loader and the interface casts.
class TestOrvelSupport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObjectAddsNothing();
    void basesStandInTheirOrder();
    void castsByClassName();
    void castsByInterfaceIdentifier();
    void castsToNothingElse();

    void modelGetsAnInitializer();
    void initializerMakesTheProtocol();
    void protocolHasTheApplicationsSchemeAndTheModelsProject();
    void modelKeepsAnInitializerThatItHas();
    void modelExtendedTwiceHasOneInitializer();
    void modelExtendedTwiceHasTwoStrategies();
    void everyModelGetsAProtocolOfItsOwn();
    void propertyTellsWhetherTheItemIsMentioned();
    void propertyCannotBeWritten();

    void windowGetsItsViewer();
    void windowGetsItsNavigation();
    void windowsNavigateEachInTheirOwnProject();

    void applicationGetsTheReportDelegate();
    void applicationWithoutADelegateFactory();
    void applicationGetsThePageTemplate();
    void applicationKeepsGoingWhenTheTemplateCannotBeCopied();
    void unextendingUndoesNothing();
};

void TestOrvelSupport::metaObjectAddsNothing()
{
    const QMetaObject* metaObject = loadRoot()->metaObject();
    QCOMPARE(metaObject->className(), "OrvelSupport");
    QCOMPARE(metaObject->superClass(), &QObject::staticMetaObject);
    QCOMPARE(metaObject->methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(metaObject->propertyCount(), QObject::staticMetaObject.propertyCount());
    QCOMPARE(metaObject->enumeratorCount(), QObject::staticMetaObject.enumeratorCount());
    QCOMPARE(metaObject->constructorCount(), 0);
    QCOMPARE(metaObject->classInfoCount(), 0);
}

void TestOrvelSupport::basesStandInTheirOrder()
{
    QObject* root = loadRoot();
    const auto offset = [root](const void* base) {
        return static_cast<const char*>(base) - static_cast<const char*>(dynamic_cast<const void*>(root));
    };
    QCOMPARE(offset(root), std::ptrdiff_t{0});
    const std::ptrdiff_t modelExtension = offset(dynamic_cast<IModelExtension*>(root));
    const std::ptrdiff_t extender = offset(dynamic_cast<ProjectGUI::IExtender*>(root));
    const std::ptrdiff_t appExtension = offset(dynamic_cast<IAppExtension*>(root));
    QVERIFY(0 < modelExtension);
    QVERIFY(modelExtension < extender);
    QVERIFY(extender < appExtension);
}

void TestOrvelSupport::castsByClassName()
{
    QObject* root = loadRoot();
    QCOMPARE(root->qt_metacast("OrvelSupport"), static_cast<void*>(root));
    QCOMPARE(root->qt_metacast("IModelExtension"), static_cast<void*>(dynamic_cast<IModelExtension*>(root)));
    QCOMPARE(root->qt_metacast("ProjectGUI::IExtender"),
             static_cast<void*>(dynamic_cast<ProjectGUI::IExtender*>(root)));
    QCOMPARE(root->qt_metacast("IAppExtension"), static_cast<void*>(dynamic_cast<IAppExtension*>(root)));
    QCOMPARE(root->qt_metacast("QObject"), static_cast<void*>(root));
}

void TestOrvelSupport::castsByInterfaceIdentifier()
{
    QObject* root = loadRoot();
    QCOMPARE(root->qt_metacast("org.orvel.IModelExtension/1.0"),
             static_cast<void*>(dynamic_cast<IModelExtension*>(root)));
    QCOMPARE(root->qt_metacast("org.orvel.IProjectGUIExtender/1.0"),
             static_cast<void*>(dynamic_cast<ProjectGUI::IExtender*>(root)));
    QCOMPARE(root->qt_metacast("org.orvel.IAppExtension/1.0"),
             static_cast<void*>(dynamic_cast<IAppExtension*>(root)));
}

void TestOrvelSupport::castsToNothingElse()
{
    QObject* root = loadRoot();
    for (const char* name : {"", "orvelsupport", "OrvelSupport ", "IExtender", "IModelExtension/1.0",
                             "org.orvel.OrvelSupport", "org.orvel.IModelExtension/1.1", "QWidget"})
        QVERIFY2(!root->qt_metacast(name), name);
    QVERIFY(!root->qt_metacast(nullptr));
}

void TestOrvelSupport::modelGetsAnInitializer()
{
    WindowFixture fixture;
    extendModel(fixture.model);
    const ModelInitializer* initializer = fixture.model.getInitializer(kOrvelKey);
    QVERIFY(initializer);
    QCOMPARE(initializer->metaObject()->className(), "OrvelSupport_impl::ModelInitializerImpl");
    QCOMPARE(initializer->getModel(), &fixture.model);
    QVERIFY(protocolsOf(fixture.model).empty());
}

void TestOrvelSupport::initializerMakesTheProtocol()
{
    WindowFixture fixture;
    extendModel(fixture.model);
    fixture.model.initialize();
    const std::vector<COrvel*> protocols = protocolsOf(fixture.model);
    QCOMPARE(protocols.size(), std::size_t{1});
    QVERIFY(protocols[0]);
    QVERIFY(fixture.model.isSystemItem(protocols[0]));
    QCOMPARE(protocols[0]->getId(), LONGID{0});
    // No flag stands against its removal.
    protocols[0]->setId(900);
    QVERIFY(fixture.model.removeItem(900));
}

void TestOrvelSupport::protocolHasTheApplicationsSchemeAndTheModelsProject()
{
    WindowFixture fixture;
    registerEnumData(EnumData(kGeneralItemType, "Undefined", "", ""));
    extendModel(fixture.model);
    fixture.model.initialize();
    QCOMPARE(QString::fromStdWString(protocolsOf(fixture.model).at(0)->GetItemLink(7, L"Р7")),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=7&project="
                            "%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201\">Р7</a>"));
}

void TestOrvelSupport::modelKeepsAnInitializerThatItHas()
{
    WindowFixture fixture;
    auto* present = new ModelInitializer(&fixture.model);
    fixture.model.addInitializer(kOrvelKey, present);
    extendModel(fixture.model);
    QCOMPARE(fixture.model.getInitializer(kOrvelKey), present);
    fixture.model.initialize();
    QVERIFY(protocolsOf(fixture.model).empty());
    QCOMPARE(fixture.model.getPropertyStrategies(kWarningReportProperty).size(), std::size_t{1});
}

void TestOrvelSupport::modelExtendedTwiceHasOneInitializer()
{
    WindowFixture fixture;
    extendModel(fixture.model);
    const QPointer<ModelInitializer> initializer = fixture.model.getInitializer(kOrvelKey);
    extendModel(fixture.model);
    QVERIFY(initializer);
    QCOMPARE(fixture.model.getInitializer(kOrvelKey), initializer.data());
    QCOMPARE(fixture.model.findChildren<ModelInitializer*>().size(), 1);
    fixture.model.initialize();
    QCOMPARE(protocolsOf(fixture.model).size(), std::size_t{1});
}

void TestOrvelSupport::modelExtendedTwiceHasTwoStrategies()
{
    WindowFixture fixture;
    extendModel(fixture.model);
    extendModel(fixture.model);
    const auto strategies = fixture.model.getPropertyStrategies(kWarningReportProperty);
    QCOMPARE(kWarningReportProperty, 0x6DCDDA04);
    QCOMPARE(strategies.size(), std::size_t{2});
    QVERIFY(strategies[0] != strategies[1]);
    for (const CommonPropertyGetSetIsReadonlyStrategy* strategy : strategies) {
        QCOMPARE(strategy->metaObject()->className(), "OrvelSupport_impl::WarningReportGetStrategy");
        QCOMPARE(strategy->parent(), &fixture.model);
    }
}

void TestOrvelSupport::everyModelGetsAProtocolOfItsOwn()
{
    WindowFixture fixture;
    CProjectModel other(&fixture.project);
    for (CProjectModel* model : {static_cast<CProjectModel*>(&fixture.model), &other}) {
        extendModel(*model);
        model->initialize();
    }
    QCOMPARE(protocolsOf(fixture.model).size(), std::size_t{1});
    QCOMPARE(protocolsOf(other).size(), std::size_t{1});
    QVERIFY(protocolsOf(fixture.model)[0] != protocolsOf(other)[0]);
}

void TestOrvelSupport::propertyTellsWhetherTheItemIsMentioned()
{
    WindowFixture fixture;
    extendModel(fixture.model);
    const CModelElement* five = fixture.addItem(5);
    const CModelElement* six = fixture.addItem(6);
    QCOMPARE(fixture.model.getPropertyValue(*five, kWarningReportProperty), QVariant(false));

    fixture.model.setItemMentionedQuery([](LONGID id) { return id == 5; });
    QCOMPARE(fixture.model.getPropertyValue(*five, kWarningReportProperty), QVariant(true));
    QCOMPARE(fixture.model.getPropertyValue(*six, kWarningReportProperty), QVariant(false));
    QCOMPARE(fixture.model.getPropertyValue(*five, kWarningReportProperty).userType(), int(QMetaType::Bool));
    QCOMPARE(fixture.model.getPropertyValue(*five, kWarningReportProperty + 1), QVariant());
}

void TestOrvelSupport::propertyCannotBeWritten()
{
    WindowFixture fixture;
    extendModel(fixture.model);
    CModelElement* item = fixture.addItem(5);
    auto* strategy = fixture.model.getPropertyStrategies(kWarningReportProperty).front();
    QVERIFY(!strategy->setPropertyValue(&fixture.model, item, kWarningReportProperty, true));
    QCOMPARE(item->getProperty(kWarningReportProperty), QVariant());
    QVERIFY(strategy->isPropertyReadonly(&fixture.model, item, kWarningReportProperty));

    QVERIFY(fixture.model.isPropertyReadonly(*item, kWarningReportProperty));
    QVERIFY(!fixture.model.setPropertyValue(*item, kWarningReportProperty, true));
    QCOMPARE(fixture.model.getPropertyValue(*item, kWarningReportProperty), QVariant(false));
}

void TestOrvelSupport::windowGetsItsViewer()
{
    WindowFixture fixture;
    fixture.addProtocol();
    extendWindow(fixture.window);

    const std::vector<GUIExtension*> extensions = fixture.window.getExtensions(kOrvelKey);
    QCOMPARE(extensions.size(), std::size_t{1});
    const auto* viewer = dynamic_cast<OrvelGUIExtension*>(extensions[0]);
    QVERIFY(viewer);
    QCOMPARE(viewer->parent(), &fixture.window);
    QCOMPARE(viewer->getWindow(), &fixture.window);
    QCOMPARE(viewer->getModel(), &fixture.model);
    QCOMPARE(viewer->getOrvel(), fixture.model.getFirstItem(kOrvelKey));
}

void TestOrvelSupport::windowGetsItsNavigation()
{
    WindowFixture fixture;
    fixture.addProtocol();
    const QUrl link(QStringLiteral("survey://generate-protocol?id=305510148"));
    QVERIFY(!fixture.window.navigate(link));
    extendWindow(fixture.window);
    QVERIFY(fixture.window.navigate(link));
    QCOMPARE(fixture.opened.getUrls().size(), 1);
    QVERIFY(!fixture.window.navigate(QUrl(QStringLiteral("survey://locate-item?id=1"))));
}

void TestOrvelSupport::windowsNavigateEachInTheirOwnProject()
{
    WindowFixture fixture;
    fixture.addProtocol();
    CProject otherProject(QStringLiteral("Проект 2"));
    CProjectModel otherModel(&otherProject);
    auto* otherProtocol = new COrvel(&otherModel, QStringLiteral("survey"));
    otherModel.addSystemItem(otherProtocol, {});
    ProjectWindow otherWindow(&otherModel);
    extendWindow(fixture.window);
    extendWindow(otherWindow);
    fixture.runProtocol(enums::Import, QStringLiteral("первый"));
    otherProtocol->ProtocolBegin(enums::Import);
    otherProtocol->ProtocolEnd(enums::Import);

    QVERIFY(otherWindow.navigate(QUrl(QStringLiteral("survey://generate-protocol?id=305510148"))));
    QCOMPARE(fixture.opened.getPaths().size(), 1);
    const QByteArray page = readFile(fixture.opened.getPaths().constFirst());
    QVERIFY(page.contains("Проект: Проект 2"));
    QVERIFY(!page.contains("Проект: Проект 1"));
}

void TestOrvelSupport::applicationGetsTheReportDelegate()
{
    WindowFixture fixture;
    const InstalledData data;
    ItemDelegateFactory factory;
    QVERIFY(!factory.createDelegate(kWarningReportDelegate, &fixture.model, kWarningReportProperty,
                                    &fixture.window));
    QCOMPARE(kWarningReportDelegate, 0x6DCD8F17);
    QVERIFY(extendApplication(fixture.application));

    QObject parent;
    const QAbstractItemDelegate* delegate =
        factory.createDelegate(kWarningReportDelegate, &fixture.model, kWarningReportProperty, &parent);
    QVERIFY(dynamic_cast<const CReportDelegate*>(delegate));
    QCOMPARE(delegate->parent(), &parent);
    // Only the parent counts, and every request gives a new one.
    const QAbstractItemDelegate* another =
        factory.createDelegate(kWarningReportDelegate, nullptr, -1, &parent);
    QVERIFY(dynamic_cast<const CReportDelegate*>(another));
    QVERIFY(another != delegate);
    QVERIFY(
        !factory.createDelegate(kWarningReportDelegate + 1, &fixture.model, kWarningReportProperty, &parent));
}

void TestOrvelSupport::applicationWithoutADelegateFactory()
{
    WindowFixture fixture;
    const InstalledData data;
    data.write(QStringLiteral("protocol.html"), "<div></div>");
    QVERIFY(!ItemDelegateFactory::instance());
    QVERIFY(extendApplication(fixture.application));
    QCOMPARE(readFile(fixture.tempPath(QStringLiteral("protocol.html"))), QByteArray("<div></div>"));
    QCOMPARE(fixture.application.getWarnings(), QStringList());
}

void TestOrvelSupport::applicationGetsThePageTemplate()
{
    WindowFixture fixture;
    const InstalledData data;
    data.write(QStringLiteral("protocol.html"), "<html><div></div></html>");
    data.write(QStringLiteral("protocol_file/monitor.css"), "p { color: red }");
    // An outdated copy is replaced.
    writeFile(fixture.tempPath(QStringLiteral("protocol.html")), "old");
    QCOMPARE(COrvel::s_sysTemplateProtocolPath, QString());

    QVERIFY(extendApplication(fixture.application));
    QCOMPARE(COrvel::s_sysTemplateProtocolPath, data.getTemplateFolder());
    QCOMPARE(readFile(fixture.tempPath(QStringLiteral("protocol.html"))),
             QByteArray("<html><div></div></html>"));
    QCOMPARE(readFile(fixture.tempPath(QStringLiteral("protocol_file/monitor.css"))),
             QByteArray("p { color: red }"));
    QVERIFY(!QFile::exists(fixture.tempPath(QStringLiteral("Protocol"))));
}

void TestOrvelSupport::applicationKeepsGoingWhenTheTemplateCannotBeCopied()
{
    WindowFixture fixture;
    const InstalledData data;
    data.write(QStringLiteral("protocol.html"), "<div></div>");
    // What stands in the way is a folder that is not empty.
    QVERIFY(QDir().mkpath(fixture.tempPath(QStringLiteral("protocol.html/inner"))));

    QVERIFY(extendApplication(fixture.application));
    QCOMPARE(COrvel::s_sysTemplateProtocolPath, data.getTemplateFolder());
    QVERIFY(QFileInfo(fixture.tempPath(QStringLiteral("protocol.html"))).isDir());
    QCOMPARE(fixture.application.getWarnings(), QStringList());
}

void TestOrvelSupport::unextendingUndoesNothing()
{
    WindowFixture fixture;
    const InstalledData data;
    data.write(QStringLiteral("protocol.html"), "<div></div>");
    ItemDelegateFactory factory;
    QVERIFY(extendApplication(fixture.application));
    loadInterface<IAppExtension>()->unextendApplication(&fixture.application);

    QObject parent;
    QVERIFY(factory.createDelegate(kWarningReportDelegate, &fixture.model, kWarningReportProperty, &parent));
    QCOMPARE(COrvel::s_sysTemplateProtocolPath, data.getTemplateFolder());
    QVERIFY(QFile::exists(fixture.tempPath(QStringLiteral("protocol.html"))));
}

QTEST_MAIN(TestOrvelSupport)
#include "tst_orvelsupport.moc"

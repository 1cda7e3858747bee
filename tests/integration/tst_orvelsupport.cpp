#include "Orvel/integration/CReportDelegate.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/integration/OrvelSupport.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"
#include "host/model/ModelInitializer.h"
#include "tests/integration/WindowFixture.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int kOrvelKey = 0x12355F00;
constexpr int kMentionedProperty = 0x6DCDDA04;
constexpr int kReportDelegateId = 0x6DCD8F17;

/// The root as a host gets it.
OrvelSupport* loadRoot()
{
    QPluginLoader loader(QStringLiteral(ORVEL_PLUGIN_PATH));
    QObject* root = loader.instance();
    if (!root)
        qFatal("%s", qUtf8Printable(loader.errorString()));
    return static_cast<OrvelSupport*>(root);
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

private slots:
    void metaObjectAddsNothing();
    void basesStandInTheirOrder();
    void castsByName();

    void modelGetsItsProtocol();
    void modelKeepsAnInitializerThatItHas();
    void modelExtendedTwiceHasOneInitializerAndTwoStrategies();
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
    OrvelSupport* root = loadRoot();
    const auto offset = [root](const void* base) {
        return static_cast<const char*>(base) - reinterpret_cast<const char*>(root);
    };
    QCOMPARE(offset(static_cast<QObject*>(root)), std::ptrdiff_t{0});
    QVERIFY(offset(static_cast<IModelExtension*>(root)) > 0);
    QVERIFY(offset(static_cast<ProjectGUI::IExtender*>(root)) > offset(static_cast<IModelExtension*>(root)));
    QVERIFY(offset(static_cast<IAppExtension*>(root)) > offset(static_cast<ProjectGUI::IExtender*>(root)));
}

void TestOrvelSupport::castsByName()
{
    OrvelSupport* root = loadRoot();
    void* const modelExtension = static_cast<IModelExtension*>(root);
    void* const extender = static_cast<ProjectGUI::IExtender*>(root);
    void* const appExtension = static_cast<IAppExtension*>(root);

    QCOMPARE(root->qt_metacast("OrvelSupport"), static_cast<void*>(root));
    QCOMPARE(root->qt_metacast("IModelExtension"), modelExtension);
    QCOMPARE(root->qt_metacast("ProjectGUI::IExtender"), extender);
    QCOMPARE(root->qt_metacast("IAppExtension"), appExtension);
    QCOMPARE(root->qt_metacast("org.orvel.IModelExtension/1.0"), modelExtension);
    QCOMPARE(root->qt_metacast("org.orvel.IProjectGUIExtender/1.0"), extender);
    QCOMPARE(root->qt_metacast("org.orvel.IAppExtension/1.0"), appExtension);
    QCOMPARE(root->qt_metacast("QObject"), static_cast<void*>(static_cast<QObject*>(root)));

    for (const char* name : {"", "orvelsupport", "OrvelSupport ", "IExtender", "IModelExtension/1.0",
                             "org.orvel.OrvelSupport", "org.orvel.IModelExtension/1.1", "QWidget"})
        QVERIFY2(!root->qt_metacast(name), name);
    QVERIFY(!root->qt_metacast(nullptr));
}

void TestOrvelSupport::modelGetsItsProtocol()
{
    WindowFixture fixture;
    loadRoot()->extendModel(&fixture.model);
    ModelInitializer* initializer = fixture.model.getInitializer(kOrvelKey);
    QVERIFY(initializer);
    QCOMPARE(initializer->metaObject()->className(), "OrvelSupport_impl::ModelInitializerImpl");
    QCOMPARE(initializer->getModel(), &fixture.model);
    QVERIFY(protocolsOf(fixture.model).empty());

    fixture.model.initialize();
    const std::vector<COrvel*> protocols = protocolsOf(fixture.model);
    QCOMPARE(protocols.size(), std::size_t{1});
    QVERIFY(protocols[0]);
    QVERIFY(fixture.model.isSystemItem(protocols[0]));
    QCOMPARE(protocols[0]->getId(), LONGID{0});
    // Scheme and project are those of this application and this model.
    QVERIFY(protocols[0]->GetItemLink(7, L"Р7").rfind(L"<a href=\"survey://locate-item?type=", 0) == 0);
    QVERIFY(QString::fromStdWString(protocols[0]->GetItemLink(7, L"Р7"))
                .endsWith(QStringLiteral("&id=7&project=%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201\">Р7</a>")));

    // No flag stands against its removal.
    protocols[0]->setId(900);
    QVERIFY(fixture.model.removeItem(900));
}

void TestOrvelSupport::modelKeepsAnInitializerThatItHas()
{
    WindowFixture fixture;
    auto* present = new ModelInitializer(&fixture.model);
    fixture.model.addInitializer(kOrvelKey, present);
    loadRoot()->extendModel(&fixture.model);
    QCOMPARE(fixture.model.getInitializer(kOrvelKey), present);
    fixture.model.initialize();
    QVERIFY(protocolsOf(fixture.model).empty());
    QCOMPARE(fixture.model.getPropertyStrategies(kMentionedProperty).size(), std::size_t{1});
}

void TestOrvelSupport::modelExtendedTwiceHasOneInitializerAndTwoStrategies()
{
    WindowFixture fixture;
    loadRoot()->extendModel(&fixture.model);
    const QPointer<ModelInitializer> initializer = fixture.model.getInitializer(kOrvelKey);
    loadRoot()->extendModel(&fixture.model);

    QVERIFY(initializer);
    QCOMPARE(fixture.model.getInitializer(kOrvelKey), initializer.data());
    QCOMPARE(fixture.model.findChildren<ModelInitializer*>().size(), 1);

    const auto strategies = fixture.model.getPropertyStrategies(kMentionedProperty);
    QCOMPARE(strategies.size(), std::size_t{2});
    QVERIFY(strategies[0] != strategies[1]);
    for (const CommonPropertyGetSetIsReadonlyStrategy* strategy : strategies) {
        QCOMPARE(strategy->metaObject()->className(), "OrvelSupport_impl::WarningReportGetStrategy");
        QCOMPARE(strategy->parent(), &fixture.model);
    }

    fixture.model.initialize();
    QCOMPARE(protocolsOf(fixture.model).size(), std::size_t{1});
}

void TestOrvelSupport::everyModelGetsAProtocolOfItsOwn()
{
    WindowFixture fixture;
    CProjectModel other(&fixture.project);
    for (CProjectModel* model : {static_cast<CProjectModel*>(&fixture.model), &other}) {
        loadRoot()->extendModel(model);
        model->initialize();
    }
    QCOMPARE(protocolsOf(fixture.model).size(), std::size_t{1});
    QCOMPARE(protocolsOf(other).size(), std::size_t{1});
    QVERIFY(protocolsOf(fixture.model)[0] != protocolsOf(other)[0]);
}

void TestOrvelSupport::propertyTellsWhetherTheItemIsMentioned()
{
    WindowFixture fixture;
    loadRoot()->extendModel(&fixture.model);
    const CModelElement* five = fixture.addItem(5);
    const CModelElement* six = fixture.addItem(6);
    QCOMPARE(fixture.model.getPropertyValue(*five, kMentionedProperty), QVariant(false));

    fixture.model.setItemMentionedQuery([](LONGID id) { return id == 5; });
    QCOMPARE(fixture.model.getPropertyValue(*five, kMentionedProperty), QVariant(true));
    QCOMPARE(fixture.model.getPropertyValue(*six, kMentionedProperty), QVariant(false));
    QCOMPARE(fixture.model.getPropertyValue(*five, kMentionedProperty).userType(), int(QMetaType::Bool));
    QCOMPARE(fixture.model.getPropertyValue(*five, kMentionedProperty + 1), QVariant());
}

void TestOrvelSupport::propertyCannotBeWritten()
{
    WindowFixture fixture;
    loadRoot()->extendModel(&fixture.model);
    CModelElement* item = fixture.addItem(5);
    auto* strategy = fixture.model.getPropertyStrategies(kMentionedProperty).front();
    QVERIFY(!strategy->setPropertyValue(&fixture.model, item, kMentionedProperty, true));
    QCOMPARE(item->getProperty(kMentionedProperty), QVariant());
    QVERIFY(strategy->isPropertyReadonly(&fixture.model, item, kMentionedProperty));

    QVERIFY(fixture.model.isPropertyReadonly(*item, kMentionedProperty));
    QVERIFY(!fixture.model.setPropertyValue(*item, kMentionedProperty, true));
    QCOMPARE(fixture.model.getPropertyValue(*item, kMentionedProperty), QVariant(false));
}

void TestOrvelSupport::windowGetsItsViewer()
{
    WindowFixture fixture;
    fixture.addProtocol();
    loadRoot()->extendProjectGUI(&fixture.window);

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
    loadRoot()->extendProjectGUI(&fixture.window);
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
    loadRoot()->extendProjectGUI(&fixture.window);
    loadRoot()->extendProjectGUI(&otherWindow);
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
    QVERIFY(!factory.createDelegate(kReportDelegateId, &fixture.model, kMentionedProperty, &fixture.window));
    QVERIFY(loadRoot()->extendApplication(&fixture.application));

    QObject parent;
    const QAbstractItemDelegate* delegate =
        factory.createDelegate(kReportDelegateId, &fixture.model, kMentionedProperty, &parent);
    QVERIFY(dynamic_cast<const CReportDelegate*>(delegate));
    QCOMPARE(delegate->parent(), &parent);
    // Only the parent counts, and every request gives a new one.
    const QAbstractItemDelegate* another = factory.createDelegate(kReportDelegateId, nullptr, -1, &parent);
    QVERIFY(dynamic_cast<const CReportDelegate*>(another));
    QVERIFY(another != delegate);
    QVERIFY(!factory.createDelegate(kReportDelegateId + 1, &fixture.model, kMentionedProperty, &parent));
}

void TestOrvelSupport::applicationWithoutADelegateFactory()
{
    WindowFixture fixture;
    const InstalledData data;
    data.write(QStringLiteral("protocol.html"), "<div></div>");
    QVERIFY(!ItemDelegateFactory::instance());
    QVERIFY(loadRoot()->extendApplication(&fixture.application));
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

    QVERIFY(loadRoot()->extendApplication(&fixture.application));
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

    QVERIFY(loadRoot()->extendApplication(&fixture.application));
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
    QVERIFY(loadRoot()->extendApplication(&fixture.application));
    loadRoot()->unextendApplication(&fixture.application);

    QObject parent;
    QVERIFY(factory.createDelegate(kReportDelegateId, &fixture.model, kMentionedProperty, &parent));
    QCOMPARE(COrvel::s_sysTemplateProtocolPath, data.getTemplateFolder());
    QVERIFY(QFile::exists(fixture.tempPath(QStringLiteral("protocol.html"))));
}

QTEST_MAIN(TestOrvelSupport)
#include "tst_orvelsupport.moc"

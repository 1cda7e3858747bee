#include "Orvel/integration/OrvelGUIExtension.h"
#include "tests/integration/MethodText.h"
#include "tests/integration/WindowFixture.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

constexpr int kImport = 0x1235B704;

/// The page of an Import run with one error line, without a template.
QString importPage(const QString& line)
{
    return QStringLiteral("<h1>Импорт</h1>\n"
                          "<div class='serviceinfoblock'>\n"
                          "<p class='service'>DATE</p>\n"
                          "<p class='service'>Проект: Проект 1</p>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"Node ExpandLeaf IsLast\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content error\">%1</div>\n"
                          "</li>\n"
                          "</ul>\n")
        .arg(line);
}

/// The item page with one error line of an Import run, without a template.
QString itemPage(const QString& title, const QString& line)
{
    return QStringLiteral("<div class='errorblock'>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"IsRoot IsLast ExpandOpen\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content\">Ошибки и предупреждения</div>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"Node ExpandOpen\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content\">%1</div>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"Node ExpandLeaf IsLast\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content error\">%2</div>\n"
                          "</li>\n"
                          "</ul>\n"
                          "</li>\n"
                          "</ul>\n"
                          "</li>\n"
                          "</ul>\n"
                          "</div>\n")
        .arg(title, line);
}

QString readPage(const QString& path)
{
    return withoutDates(QString::fromUtf8(readFile(path)));
}

/// An item that says it is a protocol, but is none.
struct FalseProtocol : CModelElement
{
    int getType() const override { return kOrvelItemType; }
};

/// Destroys the application after its temporary folder was put aside, and gives the pages that are left
/// there: the registered ones are removed through the link that stands in the folder's place, the link is the
/// last of the registered files, and no folder is left to be removed whole.
QStringList pagesLeftBehind(std::unique_ptr<WindowFixture> fixture)
{
    const QString folder = Application::getTempFolder();
    const QString aside = folder + QStringLiteral("-aside");
    if (!QDir().rename(folder, aside) || !QFile::link(aside, folder))
        qFatal("Cannot put the temporary folder aside");
    fixture->application.registerTmpFile(folder);
    fixture.reset();

    QDir kept(aside);
    const QStringList pages = kept.entryList({QStringLiteral("protocol_*.html")}, QDir::Files);
    kept.removeRecursively();
    return pages;
}

} // namespace

class TestOrvelGUIExtension : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slotsStandInTheirOrder();
    void knowsItsWindowAndItsModel();
    void protocolIsLookedUpAfresh();

    void showsAProtocolPage();
    void showsThePageOfATypeWithoutMessages();
    void everyCallMakesANewPage();
    void protocolPageIsRemovedWithTheApplication();
    void showsNothingWithoutAProtocol();
    void showsNothingWhenThePageCannotBeWritten();

    void showsAnItemPage();
    void itemPageLeadsToTheProtocolPageShownLast();
    void itemPageIsUtf8();
    void itemPageStaysWhenTheApplicationEnds();
    void showsTheBareTemplateForAnItemWithoutMessages();
    void showsNothingForAnEmptyItemPage();
    void showsNothingForNoItem();
    void warnsOnceWhenTheItemPageCannotBeWritten();

    void templateIsRefreshedWithEveryCall();
    void templateIsNotTouchedWithoutAProtocol();
    void findsTheFirstViewerOfAWindow();
};

void TestOrvelGUIExtension::slotsStandInTheirOrder()
{
    const QMetaObject& metaObject = OrvelGUIExtension::staticMetaObject;
    QCOMPARE(metaObject.className(), "OrvelGUIExtension");
    QCOMPARE(metaObject.superClass(), &ProjectWindowGUIExtension::staticMetaObject);
    QCOMPARE(describeMethods(metaObject),
             QStringList({QStringLiteral("public slot void showItemOrvel(CModelElement* pEl)"),
                          QStringLiteral("public slot void showOrvel(int protocolType)")}));
}

void TestOrvelGUIExtension::knowsItsWindowAndItsModel()
{
    WindowFixture fixture;
    QObject parent;
    const auto* viewer = new OrvelGUIExtension(&fixture.window, &parent);
    QCOMPARE(viewer->parent(), &parent);
    QCOMPARE(viewer->getWindow(), &fixture.window);
    QCOMPARE(viewer->getModel(), &fixture.model);
}

void TestOrvelGUIExtension::protocolIsLookedUpAfresh()
{
    WindowFixture fixture;
    const OrvelGUIExtension& viewer = fixture.addViewer();
    QCOMPARE(viewer.getOrvel(), nullptr);

    COrvel& protocol = fixture.addProtocol();
    QCOMPARE(viewer.getOrvel(), &protocol);
    fixture.addProtocol();
    QCOMPARE(viewer.getOrvel(), &protocol);

    protocol.setId(900);
    QVERIFY(fixture.model.removeItem(900));
    QVERIFY(viewer.getOrvel());
    QCOMPARE(viewer.getOrvel(), fixture.model.getFirstItem(kOrvelItemType));
}

void TestOrvelGUIExtension::showsAProtocolPage()
{
    WindowFixture fixture;
    fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    fixture.runProtocol(kImport, QStringLiteral("Невязка"));

    viewer.showOrvel(kImport);
    const QStringList pages = fixture.getPages();
    QCOMPARE(pages.size(), 1);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>{QUrl::fromLocalFile(fixture.tempPath(pages[0]))});
    QCOMPARE(readPage(fixture.tempPath(pages[0])), importPage(QStringLiteral("Невязка")));
}

void TestOrvelGUIExtension::showsThePageOfATypeWithoutMessages()
{
    WindowFixture fixture;
    fixture.addProtocol();
    fixture.addViewer().showOrvel(kImport);
    QCOMPARE(fixture.opened.getPaths().size(), 1);
    QCOMPARE(readPage(fixture.opened.getPaths()[0]), QStringLiteral("<div class='serviceinfoblock'>\n"));
}

void TestOrvelGUIExtension::everyCallMakesANewPage()
{
    WindowFixture fixture;
    fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    fixture.runProtocol(kImport, QStringLiteral("первая"));
    viewer.showOrvel(kImport);
    fixture.runProtocol(kImport, QStringLiteral("вторая"));
    viewer.showOrvel(kImport);

    const QStringList paths = fixture.opened.getPaths();
    QCOMPARE(paths.size(), 2);
    QVERIFY(paths[0] != paths[1]);
    QCOMPARE(readPage(paths[0]), importPage(QStringLiteral("первая")));
    QCOMPARE(readPage(paths[1]), importPage(QStringLiteral("вторая")));
}

void TestOrvelGUIExtension::protocolPageIsRemovedWithTheApplication()
{
    auto fixture = std::make_unique<WindowFixture>();
    fixture->addProtocol();
    OrvelGUIExtension& viewer = fixture->addViewer();
    viewer.showOrvel(kImport);
    viewer.showOrvel(kImport);
    QCOMPARE(fixture->getPages().size(), 2);
    QCOMPARE(pagesLeftBehind(std::move(fixture)), QStringList());
}

void TestOrvelGUIExtension::showsNothingWithoutAProtocol()
{
    WindowFixture fixture;
    fixture.model.addSystemItem(new FalseProtocol, {});
    OrvelGUIExtension& viewer = fixture.addViewer();
    QCOMPARE(viewer.getOrvel(), nullptr);

    viewer.showOrvel(kImport);
    viewer.showItemOrvel(fixture.addItem(5));
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.getPages(), QStringList());
    QCOMPARE(fixture.application.getWarnings(), QStringList());
}

void TestOrvelGUIExtension::showsNothingWhenThePageCannotBeWritten()
{
    WindowFixture fixture;
    fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    QVERIFY(QDir(Application::getTempFolder()).removeRecursively());

    viewer.showOrvel(kImport);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.application.getWarnings(), QStringList());
}

void TestOrvelGUIExtension::showsAnItemPage()
{
    WindowFixture fixture;
    COrvel& protocol = fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    CModelElement* item = fixture.addItem(5);
    fixture.runProtocol(kImport, QStringLiteral("Р5"), 5);

    viewer.showItemOrvel(item);
    const QStringList pages = fixture.getPages();
    QCOMPARE(pages.size(), 1);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>{QUrl::fromLocalFile(fixture.tempPath(pages[0]))});
    const QString project = QStringLiteral("%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201");
    QCOMPARE(readPage(fixture.tempPath(pages[0])),
             itemPage(QStringLiteral("<a href=\"survey://generate-protocol?id=305510148&project=") + project +
                          QStringLiteral("\">Импорт</a>"),
                      QString::fromStdWString(protocol.GetItemLink(5, L"Р5"))));
}

void TestOrvelGUIExtension::itemPageLeadsToTheProtocolPageShownLast()
{
    WindowFixture fixture;
    COrvel& protocol = fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    CModelElement* item = fixture.addItem(5);
    fixture.runProtocol(kImport, QStringLiteral("Р5"), 5);

    viewer.showOrvel(kImport);
    viewer.showItemOrvel(item);
    const QStringList paths = fixture.opened.getPaths();
    QCOMPARE(paths.size(), 2);
    QCOMPARE(readPage(paths[1]), itemPage(QStringLiteral("<a href=\"%1\">Импорт</a>").arg(paths[0]),
                                          QString::fromStdWString(protocol.GetItemLink(5, L"Р5"))));
}

void TestOrvelGUIExtension::itemPageIsUtf8()
{
    WindowFixture fixture;
    fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    CModelElement* item = fixture.addItem(5);
    fixture.runProtocol(kImport, QStringLiteral("м\u00b2 \U0001F4CF"), 5);

    viewer.showItemOrvel(item);
    QCOMPARE(fixture.opened.getPaths().size(), 1);
    const QByteArray page = readFile(fixture.opened.getPaths()[0]);
    QVERIFY(page.startsWith("<div class='errorblock'>\n"));
    QVERIFY(page.contains("\">\xD0\xBC\xC2\xB2 \xF0\x9F\x93\x8F</a></div>\n"));
}

void TestOrvelGUIExtension::itemPageStaysWhenTheApplicationEnds()
{
    auto fixture = std::make_unique<WindowFixture>();
    fixture->addProtocol();
    OrvelGUIExtension& viewer = fixture->addViewer();
    CModelElement* item = fixture->addItem(5);
    fixture->runProtocol(kImport, QStringLiteral("Р5"), 5);
    viewer.showItemOrvel(item);
    const QStringList pages = fixture->getPages();
    QCOMPARE(pages.size(), 1);
    viewer.showOrvel(kImport);
    QCOMPARE(fixture->getPages().size(), 2);
    QCOMPARE(pagesLeftBehind(std::move(fixture)), pages);
}

void TestOrvelGUIExtension::showsTheBareTemplateForAnItemWithoutMessages()
{
    WindowFixture fixture;
    fixture.addProtocol();
    writeFile(fixture.tempPath(QStringLiteral("protocol.html")), "<html><div></div></html>");
    fixture.addViewer().showItemOrvel(fixture.addItem(5));
    QCOMPARE(fixture.opened.getPaths().size(), 1);
    QCOMPARE(readPage(fixture.opened.getPaths()[0]), QStringLiteral("<html><div></div></html>"));
}

void TestOrvelGUIExtension::showsNothingForAnEmptyItemPage()
{
    WindowFixture fixture;
    fixture.addProtocol();
    fixture.addViewer().showItemOrvel(fixture.addItem(5));
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.getPages(), QStringList());
    // Not even a name was taken.
    QCOMPARE(Application::getTmpFileName(QStringLiteral("protocol_%1.html")),
             fixture.tempPath(QStringLiteral("protocol_1.html")));
}

void TestOrvelGUIExtension::showsNothingForNoItem()
{
    WindowFixture fixture;
    fixture.addProtocol();
    writeFile(fixture.tempPath(QStringLiteral("protocol.html")), "<html><div></div></html>");
    fixture.addViewer().showItemOrvel(nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.getPages(), QStringList());
}

void TestOrvelGUIExtension::warnsOnceWhenTheItemPageCannotBeWritten()
{
    WindowFixture fixture;
    COrvel& protocol = fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    CModelElement* item = fixture.addItem(5);
    // The data file lies elsewhere, so that the page has something to show.
    const QTemporaryDir dataFolder;
    OrvelTestAccess::dataFilePath(protocol) = dataFolder.filePath(QStringLiteral("data.xml"));
    fixture.runProtocol(kImport, QStringLiteral("Р5"), 5);
    QVERIFY(QDir(Application::getTempFolder()).removeRecursively());

    viewer.showItemOrvel(item);
    QCOMPARE(fixture.application.getWarnings(),
             QStringList{QStringLiteral("Не удалось открыть файл «%1»: такого файла или папки нет.")
                             .arg(fixture.tempPath(QStringLiteral("protocol_1.html")))});
    QCOMPARE(fixture.application.getWarningParents(), QObjectList{&viewer});
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());

    // It goes on working.
    QVERIFY(QDir().mkpath(Application::getTempFolder()));
    viewer.showItemOrvel(item);
    QCOMPARE(fixture.opened.getUrls().size(), 1);
    QCOMPARE(fixture.application.getWarnings().size(), 1);
}

void TestOrvelGUIExtension::templateIsRefreshedWithEveryCall()
{
    WindowFixture fixture;
    fixture.addProtocol();
    OrvelGUIExtension& viewer = fixture.addViewer();
    CModelElement* item = fixture.addItem(5);
    const QTemporaryDir installed;
    COrvel::s_sysTemplateProtocolPath = installed.path();

    const auto showWith = [&](const QByteArray& content, const std::function<void()>& show) {
        writeFile(installed.filePath(QStringLiteral("protocol.html")), content);
        show();
        return readPage(fixture.opened.getPaths().constLast());
    };
    const auto showProtocol = [&] { viewer.showOrvel(kImport); };
    const auto showItem = [&] { viewer.showItemOrvel(item); };
    const QString content = QStringLiteral("<div class='serviceinfoblock'>\n");
    QCOMPARE(showWith("<div>1</div>", showProtocol), QStringLiteral("<div>1%1</div>").arg(content));
    QCOMPARE(showWith("<div>2</div>", showItem), QStringLiteral("<div>2</div>"));
    QCOMPARE(showWith("<div>3</div>", showItem), QStringLiteral("<div>3</div>"));
    QCOMPARE(showWith("<div>4</div>", showProtocol), QStringLiteral("<div>4%1</div>").arg(content));

    // What was removed comes back, with what lies beside the template.
    QVERIFY(QFile::remove(fixture.tempPath(QStringLiteral("protocol.html"))));
    QVERIFY(QDir(installed.path()).mkdir(QStringLiteral("protocol_file")));
    writeFile(installed.filePath(QStringLiteral("protocol_file/page.css")), "p {}");
    QCOMPARE(showWith("<div>5</div>", showProtocol), QStringLiteral("<div>5%1</div>").arg(content));
    QCOMPARE(readFile(fixture.tempPath(QStringLiteral("protocol_file/page.css"))), QByteArray("p {}"));
}

void TestOrvelGUIExtension::templateIsNotTouchedWithoutAProtocol()
{
    WindowFixture fixture;
    OrvelGUIExtension& viewer = fixture.addViewer();
    const QTemporaryDir installed;
    writeFile(installed.filePath(QStringLiteral("protocol.html")), "<div></div>");
    COrvel::s_sysTemplateProtocolPath = installed.path();

    viewer.showOrvel(kImport);
    viewer.showItemOrvel(fixture.addItem(5));
    QVERIFY(!QFile::exists(fixture.tempPath(QStringLiteral("protocol.html"))));
    fixture.addProtocol();
    viewer.showItemOrvel(nullptr);
    QVERIFY(!QFile::exists(fixture.tempPath(QStringLiteral("protocol.html"))));
}

void TestOrvelGUIExtension::findsTheFirstViewerOfAWindow()
{
    WindowFixture fixture;
    QCOMPARE(OrvelGUIExtension::find(fixture.window), nullptr);
    fixture.window.addExtension(kOrvelItemType, new GUIExtension(&fixture.window, nullptr));
    QCOMPARE(OrvelGUIExtension::find(fixture.window), nullptr);
    fixture.window.addExtension(1, new OrvelGUIExtension(&fixture.window, nullptr));
    QCOMPARE(OrvelGUIExtension::find(fixture.window), nullptr);

    OrvelGUIExtension& first = fixture.addViewer();
    fixture.addViewer();
    QCOMPARE(OrvelGUIExtension::find(fixture.window), &first);
}

QTEST_MAIN(TestOrvelGUIExtension)
#include "tst_orvelguiextension.moc"

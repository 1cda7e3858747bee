#include "Orvel/integration/OrvelGUIExtension.h"
#include "host/app/PluginManager.h"
#include "tests/integration/WindowFixture.h"

#include <QtTest>

namespace {

constexpr int kImport = 0x1235B704;

/// A project window that the plug-in has extended.
struct ExtendedWindow : WindowFixture
{
    ExtendedWindow()
    {
        if (!plugins.load(QStringLiteral(ORVEL_PLUGIN_PATH)))
            qFatal("%s", qUtf8Printable(plugins.getFailures().constLast().reason));
        plugins.extendModel(&model);
        model.initialize();
        plugins.extendProjectGUI(&window);
    }

    PluginManager plugins;
};

} // namespace

/// The handler of "generate-protocol" links that the plug-in gives to a project window.
class TestUriNavigation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsThePageThatTheLinkNames();
    void followsALink_data();
    void followsALink();
    void declinesALink_data();
    void declinesALink();
    void letterCaseOfTheHostPartIsLostInTheUrl();
    void followsTheLinkOfAPage();
};

void TestUriNavigation::showsThePageThatTheLinkNames()
{
    ExtendedWindow fixture;
    fixture.runProtocol(kImport, QStringLiteral("строка"));

    QVERIFY(fixture.window.navigate(
        QUrl(QStringLiteral("survey://generate-protocol?id=305510148&project=%D0%9F%201"))));
    QCOMPARE(fixture.opened.getUrls().size(), 1);
    QFile page(fixture.opened.getPaths().constFirst());
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY(page.readAll().startsWith("<h1>Импорт</h1>\n"));
}

void TestUriNavigation::followsALink_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("without a project") << QStringLiteral("survey://generate-protocol?id=305510148");
    QTest::newRow("of another project") << QStringLiteral("survey://generate-protocol?id=1&project=other");
    QTest::newRow("of another scheme") << QStringLiteral("http://generate-protocol?id=1");
    QTest::newRow("with a path") << QStringLiteral("survey://generate-protocol/path?id=1");
    QTest::newRow("with a port") << QStringLiteral("survey://generate-protocol:80?id=1");
    QTest::newRow("encoded host part") << QStringLiteral("survey://generate%2Dprotocol?id=1");
    QTest::newRow("encoded number") << QStringLiteral("survey://generate-protocol?id=%31%32");
    QTest::newRow("id is not the first item") << QStringLiteral("survey://generate-protocol?x=abc&id=1");
    QTest::newRow("two ids, the first counts") << QStringLiteral("survey://generate-protocol?id=1&id=abc");
    QTest::newRow("zero") << QStringLiteral("survey://generate-protocol?id=0");
    QTest::newRow("negative") << QStringLiteral("survey://generate-protocol?id=-5");
    QTest::newRow("largest") << QStringLiteral("survey://generate-protocol?id=2147483647");
    QTest::newRow("smallest") << QStringLiteral("survey://generate-protocol?id=-2147483648");
    QTest::newRow("leading zero is no octal number") << QStringLiteral("survey://generate-protocol?id=09");
}

void TestUriNavigation::followsALink()
{
    QFETCH(QString, link);
    ExtendedWindow fixture;
    QVERIFY(fixture.window.navigate(QUrl(link)));
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

void TestUriNavigation::declinesALink_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("to an item") << QStringLiteral("survey://locate-item?id=1");
    QTest::newRow("to a report") << QStringLiteral("survey://generate-report?id=1");
    QTest::newRow("longer host part") << QStringLiteral("survey://generate-protocols?id=1");
    QTest::newRow("shorter host part") << QStringLiteral("survey://generate-protoco?id=1");
    QTest::newRow("host part with something before") << QStringLiteral("survey://a.generate-protocol?id=1");
    QTest::newRow("host part with a dot behind") << QStringLiteral("survey://generate-protocol.?id=1");
    QTest::newRow("no host part") << QStringLiteral("survey:generate-protocol?id=1");
    QTest::newRow("command in the path") << QStringLiteral("survey:///generate-protocol?id=1");
    QTest::newRow("empty") << QString();
    QTest::newRow("no query") << QStringLiteral("survey://generate-protocol");
    QTest::newRow("no id") << QStringLiteral("survey://generate-protocol?project=1");
    QTest::newRow("id in another letter case") << QStringLiteral("survey://generate-protocol?ID=1");
    QTest::newRow("empty id") << QStringLiteral("survey://generate-protocol?id=&project=1");
    QTest::newRow("no number") << QStringLiteral("survey://generate-protocol?id=abc");
    QTest::newRow("number with a tail") << QStringLiteral("survey://generate-protocol?id=12x");
    QTest::newRow("hexadecimal") << QStringLiteral("survey://generate-protocol?id=0x1235B704");
    QTest::newRow("fraction") << QStringLiteral("survey://generate-protocol?id=1.0");
    QTest::newRow("over 32 bits") << QStringLiteral("survey://generate-protocol?id=2147483648");
    QTest::newRow("under 32 bits") << QStringLiteral("survey://generate-protocol?id=-2147483649");
}

void TestUriNavigation::declinesALink()
{
    QFETCH(QString, link);
    ExtendedWindow fixture;
    QVERIFY(!fixture.window.navigate(QUrl(link)));
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.getPages(), QStringList());
}

void TestUriNavigation::letterCaseOfTheHostPartIsLostInTheUrl()
{
    // The handler compares exactly, but host parts know no letter case, and a QUrl keeps none.
    const QUrl url(QStringLiteral("survey://Generate-PROTOCOL?id=1"));
    QCOMPARE(url.host(QUrl::FullyDecoded), QStringLiteral("generate-protocol"));
    ExtendedWindow fixture;
    QVERIFY(fixture.window.navigate(url));
}

void TestUriNavigation::followsTheLinkOfAPage()
{
    ExtendedWindow fixture;
    CModelElement* item = fixture.addItem(5);
    fixture.runProtocol(kImport, QStringLiteral("Р5"), 5);
    auto& protocol = dynamic_cast<COrvel&>(*fixture.model.getFirstItem(kOrvelItemType));
    QString html;
    protocol.CreateItemHtml(item->getId(), html);

    const QString link = QStringLiteral(
        "survey://generate-protocol?id=305510148&project=%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201");
    QVERIFY(html.contains(QStringLiteral("<a href=\"%1\">Импорт</a>").arg(link)));
    QVERIFY(fixture.window.navigate(QUrl(link)));
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

QTEST_MAIN(TestUriNavigation)
#include "tst_urinavigation.moc"

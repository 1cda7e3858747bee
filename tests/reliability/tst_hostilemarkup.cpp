#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/COrvel.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

#include <sys/stat.h>

using namespace orvel::desk;
using namespace orvel::test;

/// Mark-up that comes in with lines and names runs nothing and loads nothing, wherever it is shown.
class TestHostileMarkup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyPageForbidsWhatItDoesNotBring_data();
    void everyPageForbidsWhatItDoesNotBring();
    void journalAsAPageForbidsAllButStyles();
    void namesInReportsAreText();
    void journalLoadsNothing_data();
    void journalLoadsNothing();
    void journalDoesNotWaitForAPipe();
    void tableShowsNamesAsText();
    void messagesShowLinksFromOutsideAsText();

private:
    QString lastPage() const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

namespace {

const QString kName = QStringLiteral("<img src=x onerror=alert(1)><script>alert(2)</script>");

/// A network whose points have mark-up for names.
QByteArray makeNetwork()
{
    const QByteArray name = kName.toHtmlEscaped().toUtf8();
    return "<gama-local><network><description>" + name +
           "</description><points-observations>\n<point id=\"A\" z=\"1\" fix=\"z\"/>\n<point id=\"" + name +
           "\" adj=\"z\"/>\n<height-differences>\n<dh from=\"A\" to=\"" + name +
           "\" val=\"1\" dist=\"1\"/>\n<dh from=\"" + name +
           "\" to=\"A\" val=\"-1.001\" dist=\"1\"/>\n</height-differences>\n"
           "</points-observations></network></gama-local>\n";
}

QString policyOf(const QString& page)
{
    const QString begin = QStringLiteral("<meta http-equiv=\"Content-Security-Policy\" content=\"");
    const int at = page.indexOf(begin);
    // A policy counts from where it stands: nothing that it is to forbid may go before it.
    if (at < 0 || page.leftRef(at).contains(QLatin1String("<script")) ||
        page.leftRef(at).contains(QLatin1String("<style")))
        return QString();
    return page.mid(at + begin.size(), page.indexOf(QLatin1Char('"'), at + begin.size()) - at - begin.size());
}

} // namespace

void TestHostileMarkup::init()
{
    desk = std::make_unique<DeskFixture>();
    const QString network = desk->path(QStringLiteral("network.gkf"));
    writeFile(network, makeNetwork());
    window = desk->makeWindow(network);
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
}

void TestHostileMarkup::cleanup()
{
    window.reset();
    desk.reset();
}

QString TestHostileMarkup::lastPage() const
{
    return QString::fromUtf8(readFile(desk->opened.getPaths().last()));
}

void TestHostileMarkup::everyPageForbidsWhatItDoesNotBring_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("protocol") << 0;
    QTest::newRow("item") << 1;
    QTest::newRow("report of heights") << 2;
    QTest::newRow("report of residuals") << 3;
}

void TestHostileMarkup::everyPageForbidsWhatItDoesNotBring()
{
    QFETCH(int, page);
    if (page == 0)
        window->getPages().showProtocol(enums::Adjust);
    else if (page == 1)
        OrvelGUIExtension::find(*window)->showItemOrvel(window->getDocument().getPoints()[1]);
    else
        window->getPages().showReport(page == 2 ? kHeightCatalogue : kResidualList);
    const QString policy = policyOf(lastPage());
    QVERIFY2(policy.startsWith(QStringLiteral("default-src 'none'; ")), qUtf8Printable(policy));
    QVERIFY(!policy.contains(QStringLiteral("unsafe")));
    QVERIFY(!policy.contains(QStringLiteral("http")));
}

void TestHostileMarkup::journalAsAPageForbidsAllButStyles()
{
    CProcessMonitor monitor;
    monitor.writeError(kName.toStdWString());
    monitor.start([](qor::IProcessMonitor& run) { run.writeError(kName.toStdWString()); });
    QVERIFY(monitor.waitForFinished());
    QMetaObject::invokeMethod(&monitor, "onProtocolPushed");
    QCOMPARE(policyOf(lastPage()), QStringLiteral("default-src 'none'; style-src 'unsafe-inline'"));
    QVERIFY(!lastPage().contains(QStringLiteral("<script")));
    QVERIFY(!lastPage().contains(QStringLiteral("onerror")));
}

void TestHostileMarkup::namesInReportsAreText()
{
    window->getPages().showReport(kHeightCatalogue);
    QVERIFY(lastPage().contains(QStringLiteral("<p>") + kName.toHtmlEscaped() + QStringLiteral("</p>")));
    QVERIFY(lastPage().contains(QStringLiteral("<td class=\"name\">") + kName.toHtmlEscaped() +
                                QStringLiteral("</td>")));
    // The one image is the picture of the network, in which names are text as well.
    const QString image = QStringLiteral("<img alt=\"Схема сети\" src=\"data:image/svg+xml;base64,");
    const QString page = lastPage();
    QCOMPARE(page.count(QStringLiteral("<img")), 1);
    const int at = page.indexOf(image);
    QVERIFY(at > 0);
    const int data = at + image.size();
    const QString svg = QString::fromUtf8(
        QByteArray::fromBase64(page.mid(data, page.indexOf(QLatin1Char('"'), data) - data).toLatin1()));
    QVERIFY2(svg.contains(kName.toHtmlEscaped()), qUtf8Printable(svg));
    QVERIFY(!svg.contains(QStringLiteral("<img")));
    QVERIFY(!svg.contains(QStringLiteral("<script")));
    QVERIFY(!page.contains(QStringLiteral("<script")));
}

void TestHostileMarkup::journalLoadsNothing_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("isImage");
    QTest::newRow("image by path") << QStringLiteral("<img src=\"%1\">") << true;
    QTest::newRow("image by address") << QStringLiteral("<img src=\"file://%1\">") << true;
    QTest::newRow("style sheet")
        << QStringLiteral("<link rel=\"stylesheet\" href=\"file://%1.css\"><p class=\"error\">x</p>")
        << false;
}

void TestHostileMarkup::journalLoadsNothing()
{
    QFETCH(QString, line);
    QFETCH(bool, isImage);
    const QString path = desk->path(QStringLiteral("image.png"));
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(path));
    writeFile(path + QStringLiteral(".css"), "p { font-size: 333pt; }");

    CProcessMonitor monitor;
    monitor.start([&](qor::IProcessMonitor& run) { run.writeError(line.arg(path).toStdWString()); });
    QVERIFY(monitor.waitForFinished());
    const QTextDocument& journal = *monitor.getJournal()->document();
    bool hasImage = false;
    for (QTextBlock block = journal.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            QVERIFY(format.fontPointSize() < 300);
            if (!format.isImageFormat())
                continue;
            hasImage = true;
            const QUrl url(format.toImageFormat().name());
            const QVariant shown = journal.resource(QTextDocument::ImageResource, url);
            QCOMPARE(shown.value<QImage>().size(), QSize(1, 1));
        }
    }
    QCOMPARE(hasImage, isImage);
}

void TestHostileMarkup::journalDoesNotWaitForAPipe()
{
    const QString pipe = desk->path(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    CProcessMonitor monitor;
    monitor.show();
    monitor.start([&](qor::IProcessMonitor& run) {
        run.writeError(QStringLiteral("<img src=\"%1\"> line").arg(pipe).toStdWString());
    });
    QVERIFY(monitor.waitForFinished());
    monitor.getJournal()->grab();
    QVERIFY(monitor.getJournal()->toPlainText().contains(QStringLiteral("line")));
}

void TestHostileMarkup::tableShowsNamesAsText()
{
    const QAbstractItemModel& model = *window->getTable().model();
    bool isFound = false;
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < model.columnCount(); ++column) {
            const QModelIndex index = model.index(row, column);
            isFound = isFound || index.data().toString().contains(kName);
            // A tool tip is taken for rich text when it looks like it.
            QVERIFY(!index.data(Qt::ToolTipRole).toString().contains(QLatin1String("<img")));
        }
    }
    QVERIFY(isFound);
}

void TestHostileMarkup::messagesShowLinksFromOutsideAsText()
{
    QUrl url(QStringLiteral("orvel://locate-item"));
    url.setQuery(QStringLiteral("id=1&project=") + QString::fromLatin1(QUrl::toPercentEncoding(kName)));
    QCOMPARE(window->getUriFollower().follow(url), UriFollower::Answer::OtherProject);
    window->getUriFollower().explain(url);
    QVERIFY(window->getMessageBar().getMessage().contains(kName));
    for (const QLabel* label : window->getMessageBar().findChildren<QLabel*>()) {
        if (!label->text().isEmpty())
            QCOMPARE(label->textFormat(), Qt::PlainText);
    }
}

QTEST_MAIN(TestHostileMarkup)
#include "tst_hostilemarkup.moc"

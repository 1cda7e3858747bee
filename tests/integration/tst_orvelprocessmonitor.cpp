#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/integration/OrvelProcessMonitor.h"
#include "host/enums/EnumData.h"
#include "tests/integration/MethodText.h"
#include "tests/integration/WindowFixture.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QTextCursor>
#include <QXmlStreamReader>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>

namespace {

constexpr int kAdjust = 0x1235B702;
constexpr int kImport = 0x1235B704;

/// Works until the user stops the run.
void workUntilStopped(qor::IProcessMonitor& run)
{
    while (run.isProcessRunning())
        std::this_thread::yield();
}

/// The messages of the data file, in its order: "ptype mtype sid [ids] text".
QStringList readDataFile(COrvel& protocol)
{
    QStringList lines;
    QXmlStreamReader xml(readFile(OrvelTestAccess::dataFilePath(protocol)));
    QString head;
    QStringList ids;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == QLatin1String("li")) {
            head = attributes.value(QLatin1String("ptype")) + QLatin1Char(' ') +
                   attributes.value(QLatin1String("mtype"));
            ids.clear();
        } else if (xml.name() == QLatin1String("item")) {
            ids.append(attributes.value(QLatin1String("iid")).toString());
        } else if (xml.name() == QLatin1String("mess")) {
            const QString stage = attributes.value(QLatin1String("sid")).toString();
            lines.append(QStringLiteral("%1 %2 [%3] %4")
                             .arg(head, stage.isEmpty() ? QStringLiteral("-") : stage,
                                  ids.join(QLatin1Char(',')), withoutDates(xml.readElementText())));
        }
    }
    if (xml.hasError())
        qFatal("%s", qUtf8Printable(xml.errorString()));
    return lines;
}

QStringList messagesOf(COrvel& protocol)
{
    return describe(OrvelTestAccess::messages(protocol));
}

/// What the window says of the run.
QString getStateText(const CProcessMonitor& monitor)
{
    for (const QLabel* label : monitor.findChildren<QLabel*>()) {
        if (label->accessibleName() == QStringLiteral("Этап"))
            return label->text();
    }
    qFatal("The window has no stage line");
}

QPushButton* getProtocolButton(const CProcessMonitor& monitor)
{
    for (QPushButton* button : monitor.findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("&Протокол"))
            return button;
    }
    qFatal("The window has no protocol button");
}

/// An application with a project whose window has a protocol and a viewer.
struct MonitorFixture : WindowFixture
{
    MonitorFixture() : protocol(addProtocol()), viewer(addViewer()) {}

    COrvel& protocol;
    OrvelGUIExtension& viewer;
};

} // namespace

class TestOrvelProcessMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void methodsStandInTheirOrder();
    void startsWithItsDefaults();

    void recordsWhatIsWritten();
    void recordsTheFirstArgumentOnly();
    void recordsNoEmptyText();
    void journalShowsWhatTheBaseDialogShows();
    void recordsUnderTheTypeOfTheMoment();

    void stagesGoToTheProtocol();
    void linksAreTheProtocols();
    void linksAreTheBaseDialogsWithoutAProtocol();

    void followsAJournalLink_data();
    void followsAJournalLink();
    void opensLinksWithoutAHandler();
    void opensLinksAgainWhenTheHandlerIsTakenAway();
    void handlerMaySetAnother();
    void clickInTheJournalCallsTheHandler();

    void takesTheJournalStyle();
    void keepsTheBaseDialogsJournalStyle_data();
    void keepsTheBaseDialogsJournalStyle();

    void protocolButtonShowsTheProtocol();
    void protocolButtonOfTheBaseDialog();
    void worksWithoutAViewer();
    void usesTheFirstViewerOfItsWindow();
    void reachesTheViewerFromAnotherThread();

    void runBeginsAndEndsTheProtocol();
    void runGoesToTheTypeOfItsEnd();
    void interruptedRunLeavesTheProtocolOpen();
    void failedRunLeavesTheProtocolOpen();
    void runDestroyedWithItsWindowLeavesTheProtocolOpen();
    void runIsOverBeforeTheHandlerIsDestroyed();
    void linksOfARunAreRightAtEachMoment();
    void linksOfADerivedMonitorAreItsOwn();
    void secondRunOnTheProjectIsRefused();
    void linesOfAWorkerThreadEndInTheDataFileInOrder();
};

void TestOrvelProcessMonitor::methodsStandInTheirOrder()
{
    const QMetaObject& metaObject = OrvelProcessMonitor::staticMetaObject;
    QCOMPARE(metaObject.className(), "OrvelProcessMonitor");
    QCOMPARE(metaObject.superClass(), &CProcessMonitor::staticMetaObject);
    QCOMPARE(describeMethods(metaObject),
             QStringList({QStringLiteral("public signal void showOrvel(int protocolType)"),
                          QStringLiteral("protected slot void onProtocolPushed()")}));
}

void TestOrvelProcessMonitor::startsWithItsDefaults()
{
    MonitorFixture fixture;
    QWidget parent;
    const OrvelProcessMonitor monitor(&fixture.window, &parent, Qt::Tool);
    QCOMPARE(monitor.parentWidget(), &parent);
    QCOMPARE(monitor.windowFlags() & Qt::WindowType_Mask, Qt::WindowFlags(Qt::Tool));
    QCOMPARE(monitor.getProtocolType(), 0x1235B700);
    QCOMPARE(monitor.getOrvel(), &fixture.protocol);
    QCOMPARE(monitor.getJournal()->toPlainText(), QString());
}

void TestOrvelProcessMonitor::recordsWhatIsWritten()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    monitor.write(L"служебная");
    monitor.writeError(L"ошибка");
    monitor.writeWarning(L"предупреждение\nв две строки");
    monitor.writeMessage(fixture.protocol.GetItemLink(12, L"\U0001F4CF"));
    const QString link = QString::fromStdWString(fixture.protocol.GetItemLink(12, L"\U0001F4CF"));
    QCOMPARE(messagesOf(fixture.protocol),
             QStringList(
                 {QStringLiteral("ptype=305510148 mtype=1 stage=0 ids=0 types=1710060288 text=служебная"),
                  QStringLiteral("ptype=305510148 mtype=3 stage=0 ids=0 types=1710060288 text=ошибка"),
                  QStringLiteral("ptype=305510148 mtype=4 stage=0 ids=0 types=1710060288 "
                                 "text=предупреждение<br>в две строки"),
                  QStringLiteral("ptype=305510148 mtype=5 stage=0 ids=12 types=1710060288 text=") + link}));
}

void TestOrvelProcessMonitor::recordsTheFirstArgumentOnly()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.write(L"1", L"detail <a href=\"survey://locate-item?id=9\">9</a>");
    monitor.writeError(L"3", L"detail");
    monitor.writeWarning(L"4", L"detail");
    monitor.writeMessage(L"5", L"detail");
    QCOMPARE(messagesOf(fixture.protocol),
             QStringList({QStringLiteral("ptype=305510144 mtype=1 stage=0 ids=0 types=1710060288 text=1"),
                          QStringLiteral("ptype=305510144 mtype=3 stage=0 ids=0 types=1710060288 text=3"),
                          QStringLiteral("ptype=305510144 mtype=4 stage=0 ids=0 types=1710060288 text=4"),
                          QStringLiteral("ptype=305510144 mtype=5 stage=0 ids=0 types=1710060288 text=5")}));
}

void TestOrvelProcessMonitor::recordsNoEmptyText()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    CProcessMonitor base;
    for (CProcessMonitor* each : {static_cast<CProcessMonitor*>(&monitor), &base}) {
        each->write(L"");
        each->writeError(L"", L"detail");
        each->writeWarning(L"", L"");
        each->writeMessage(L"");
    }
    QCOMPARE(messagesOf(fixture.protocol), QStringList());
    QCOMPARE(monitor.getJournal()->toPlainText(), base.getJournal()->toPlainText());
    QVERIFY(monitor.getJournal()->toPlainText().contains(QStringLiteral("detail")));

    monitor.write(L" ");
    QCOMPARE(messagesOf(fixture.protocol),
             QStringList{QStringLiteral("ptype=305510144 mtype=1 stage=0 ids=0 types=1710060288 text= ")});
}

void TestOrvelProcessMonitor::journalShowsWhatTheBaseDialogShows()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    CProcessMonitor base;
    for (CProcessMonitor* each : {static_cast<CProcessMonitor*>(&monitor), &base}) {
        each->write(L"служебная", L"s");
        each->writeError(L"<b>ошибка</b>", L"e");
        each->writeWarning(L"предупреждение\nв две строки", L"w");
        each->writeMessage(L"<a href=\"survey://locate-item?id=9\">9</a>", L"m");
    }
    QCOMPARE(monitor.getJournal()->toHtml(), base.getJournal()->toHtml());
    QVERIFY(monitor.getJournal()->toPlainText().contains(QStringLiteral("ошибка e")));
    QVERIFY(monitor.wasErrors());
}

void TestOrvelProcessMonitor::recordsUnderTheTypeOfTheMoment()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    QCOMPARE(monitor.getProtocolType(), kImport);
    monitor.write(L"a");
    monitor.setProtocolType(-7);
    QCOMPARE(monitor.getProtocolType(), -7);
    monitor.write(L"b");
    QCOMPARE(messagesOf(fixture.protocol),
             QStringList({QStringLiteral("ptype=-7 mtype=1 stage=0 ids=0 types=1710060288 text=b"),
                          QStringLiteral("ptype=305510148 mtype=1 stage=0 ids=0 types=1710060288 text=a")}));
}

void TestOrvelProcessMonitor::stagesGoToTheProtocol()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kAdjust);
    const QString state = getStateText(monitor);
    monitor.startProtocolStage(L"Состав сети");
    QCOMPARE(getStateText(monitor), state);
    monitor.writeMessage(L"внутри");
    monitor.finishProtocolStage();
    QCOMPARE(getStateText(monitor), state);
    monitor.writeMessage(L"между");
    monitor.startProtocolStage(L"Результаты");
    monitor.finishProtocolStage();
    const QString head = QStringLiteral("ptype=305510146 mtype=%1 stage=%2 ids=0 types=1710060288 text=%3");
    QCOMPARE(messagesOf(fixture.protocol),
             QStringList({head.arg(6).arg(1).arg(QStringLiteral("Состав сети")),
                          head.arg(5).arg(1).arg(QStringLiteral("внутри")),
                          head.arg(5).arg(0).arg(QStringLiteral("между")),
                          head.arg(6).arg(2).arg(QStringLiteral("Результаты"))}));
    // The base dialog's own stages stay its own.
    monitor.startStage(L"этап окна");
    QCOMPARE(getStateText(monitor), QStringLiteral("этап окна"));
    QCOMPARE(messagesOf(fixture.protocol).size(), 4);
}

void TestOrvelProcessMonitor::linksAreTheProtocols()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    const QString link = QString::fromStdWString(monitor.getItemLink(12, L"<b>Р</b>"));
    QVERIFY(link.startsWith(QStringLiteral("<a href=\"survey://locate-item?type=")));
    QVERIFY(link.endsWith(
        QStringLiteral("&id=12&project=%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201\"><b>Р</b></a>")));
    QCOMPARE(link, QString::fromStdWString(fixture.protocol.GetItemLink(12, L"<b>Р</b>")));
}

void TestOrvelProcessMonitor::linksAreTheBaseDialogsWithoutAProtocol()
{
    WindowFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    QCOMPARE(monitor.getOrvel(), nullptr);
    QCOMPARE(monitor.getItemLink(12, L"Р"), std::wstring(L"Р"));
    // It is looked up with every call.
    COrvel& protocol = fixture.addProtocol();
    QCOMPARE(monitor.getOrvel(), &protocol);
    QCOMPARE(monitor.getItemLink(12, L"Р"), protocol.GetItemLink(12, L"Р"));
}

void TestOrvelProcessMonitor::followsAJournalLink_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<LONGID>("id"); // 0: the system opens the link
    const auto row = [](const char* name, const char* link, LONGID id) {
        QTest::newRow(name) << QString::fromUtf8(link) << id;
    };
    row("item", "survey://locate-item?type=Point&id=12&project=x", 12);
    row("largest id", "survey://locate-item?id=9223372036854775807", 9223372036854775807LL);
    row("negative id", "survey://locate-item?id=-5", -5);
    row("another command", "survey://generate-protocol?id=7", 7);
    row("another scheme", "http://example.org/page?id=8", 8);
    row("encoded digits", "survey://locate-item?id=%31%32", 12);
    row("first of two ids", "survey://locate-item?id=1&id=2", 1);
    row("id 0", "survey://locate-item?id=0", 0);
    row("id 00", "survey://locate-item?id=00", 0);
    row("number with a tail", "survey://locate-item?id=12x", 0);
    row("no number", "survey://locate-item?id=abc", 0);
    row("hexadecimal", "survey://locate-item?id=0x12", 0);
    row("over 64 bits", "survey://locate-item?id=9223372036854775808", 0);
    row("empty id", "survey://locate-item?id=&type=Point", 0);
    row("no id", "survey://locate-item?type=Point", 0);
    row("id in another letter case", "survey://locate-item?ID=12", 0);
    row("empty query", "survey://locate-item?", 0);
    row("no query", "survey://locate-item", 0);
    row("id in the fragment", "survey://locate-item#id=12", 0);
    row("web page", "http://example.org/", 0);
}

void TestOrvelProcessMonitor::followsAJournalLink()
{
    QFETCH(QString, link);
    QFETCH(LONGID, id);
    MonitorFixture fixture;
    const OpenedUrls opened({QStringLiteral("survey"), QStringLiteral("http")});
    OrvelProcessMonitor monitor(&fixture.window);
    QList<LONGID> clicked;
    monitor.setOnItemClicked([&](LONGID itemId) { clicked.append(itemId); });

    const QUrl url(link);
    Q_EMIT monitor.getJournal()->anchorClicked(url);
    QCOMPARE(clicked, id == 0 ? QList<LONGID>() : QList<LONGID>{id});
    QCOMPARE(opened.getUrls(), id == 0 ? QList<QUrl>{url} : QList<QUrl>());
}

void TestOrvelProcessMonitor::opensLinksWithoutAHandler()
{
    MonitorFixture fixture;
    const OpenedUrls opened({QStringLiteral("survey")});
    const OrvelProcessMonitor monitor(&fixture.window);
    const QUrl url(QStringLiteral("survey://locate-item?id=12"));
    Q_EMIT monitor.getJournal()->anchorClicked(url);
    QCOMPARE(opened.getUrls(), QList<QUrl>{url});
}

void TestOrvelProcessMonitor::opensLinksAgainWhenTheHandlerIsTakenAway()
{
    MonitorFixture fixture;
    const OpenedUrls opened({QStringLiteral("survey")});
    OrvelProcessMonitor monitor(&fixture.window);
    const QUrl url(QStringLiteral("survey://locate-item?id=12"));
    QList<LONGID> first;
    QList<LONGID> second;
    monitor.setOnItemClicked([&](LONGID id) { first.append(id); });
    monitor.setOnItemClicked([&](LONGID id) { second.append(id); });
    Q_EMIT monitor.getJournal()->anchorClicked(url);
    QCOMPARE(first, QList<LONGID>());
    QCOMPARE(second, QList<LONGID>{12});
    QCOMPARE(opened.getUrls(), QList<QUrl>());

    monitor.setOnItemClicked({});
    Q_EMIT monitor.getJournal()->anchorClicked(url);
    QCOMPARE(second, QList<LONGID>{12});
    QCOMPARE(opened.getUrls(), QList<QUrl>{url});
}

void TestOrvelProcessMonitor::handlerMaySetAnother()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    QStringList calls;
    // The text is the handler's own: it must not go before the handler is done.
    monitor.setOnItemClicked([&monitor, &calls, text = QStringLiteral("first %1")](LONGID id) {
        monitor.setOnItemClicked([&calls](LONGID next) { calls.append(QString::number(next)); });
        calls.append(text.arg(id));
    });
    const QUrl url(QStringLiteral("survey://locate-item?id=12"));
    Q_EMIT monitor.getJournal()->anchorClicked(url);
    Q_EMIT monitor.getJournal()->anchorClicked(url);
    QCOMPARE(calls, (QStringList{QStringLiteral("first 12"), QStringLiteral("12")}));
}

void TestOrvelProcessMonitor::clickInTheJournalCallsTheHandler()
{
    MonitorFixture fixture;
    const OpenedUrls opened({QStringLiteral("survey")});
    OrvelProcessMonitor monitor(&fixture.window);
    LONGID clicked = 0;
    monitor.setOnItemClicked([&](LONGID id) { clicked = id; });
    monitor.writeError(monitor.getItemLink(12, L"Репер двенадцатый"));
    monitor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&monitor));

    QTextBrowser* journal = monitor.getJournal();
    const QTextCursor onLink = journal->document()->find(QStringLiteral("двенадцатый"));
    QVERIFY(!onLink.isNull());
    QTest::mouseClick(journal->viewport(), Qt::LeftButton, {},
                      journal->cursorRect(onLink).center() - QPoint(4, 0));
    QCOMPARE(clicked, LONGID{12});
    QCOMPARE(opened.getUrls(), QList<QUrl>());
    QCOMPARE(journal->toPlainText().count(QStringLiteral("Репер")), 1);
}

void TestOrvelProcessMonitor::takesTheJournalStyle()
{
    MonitorFixture fixture;
    QVERIFY(QDir(Application::getTempFolder()).mkdir(QStringLiteral("protocol_file")));
    writeFile(fixture.tempPath(QStringLiteral("protocol_file/monitor.css")),
              "p { color: red }\n.error { color: blue }\n");
    const OrvelProcessMonitor monitor(&fixture.window);
    QCOMPARE(monitor.getJournal()->document()->defaultStyleSheet(),
             QStringLiteral("p { color: red }\n.error { color: blue }\n"));
}

void TestOrvelProcessMonitor::keepsTheBaseDialogsJournalStyle_data()
{
    QTest::addColumn<QString>("state");
    QTest::newRow("no folder") << QString();
    QTest::newRow("no file") << QStringLiteral("folder");
    QTest::newRow("empty file") << QStringLiteral("empty");
    QTest::newRow("a folder of that name") << QStringLiteral("unreadable");
}

void TestOrvelProcessMonitor::keepsTheBaseDialogsJournalStyle()
{
    QFETCH(QString, state);
    MonitorFixture fixture;
    const QString path = fixture.tempPath(QStringLiteral("protocol_file/monitor.css"));
    if (!state.isEmpty())
        QVERIFY(QDir(Application::getTempFolder()).mkdir(QStringLiteral("protocol_file")));
    if (state == QStringLiteral("empty"))
        writeFile(path, "");
    if (state == QStringLiteral("unreadable"))
        QVERIFY(QDir().mkdir(path));
    const OrvelProcessMonitor monitor(&fixture.window);
    const CProcessMonitor base;
    QCOMPARE(monitor.getJournal()->document()->defaultStyleSheet(),
             base.getJournal()->document()->defaultStyleSheet());
    QCOMPARE(fixture.application.getWarnings(), QStringList());
}

void TestOrvelProcessMonitor::protocolButtonShowsTheProtocol()
{
    MonitorFixture fixture;
    fixture.runProtocol(kImport, QStringLiteral("строка"));
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    const QSignalSpy spy(&monitor, &OrvelProcessMonitor::showOrvel);

    getProtocolButton(monitor)->click();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0], QVariantList{kImport});
    QCOMPARE(fixture.getPages().size(), 1);
    QCOMPARE(fixture.opened.getPaths(), QStringList{fixture.tempPath(fixture.getPages()[0])});
    QVERIFY(readFile(fixture.opened.getPaths()[0]).startsWith("<h1>Импорт</h1>\n"));

    // The same through the meta-object.
    QVERIFY(QMetaObject::invokeMethod(&monitor, "onProtocolPushed"));
    QCOMPARE(spy.count(), 2);
}

void TestOrvelProcessMonitor::protocolButtonOfTheBaseDialog()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    const QSignalSpy spy(&monitor, &OrvelProcessMonitor::showOrvel);
    monitor.writeMessage(L"строка журнала");

    monitor.setUseSystemProtocolViewer(true);
    getProtocolButton(monitor)->click();
    QCOMPARE(spy.count(), 0);
    QCOMPARE(fixture.getPages(), QStringList());
    QCOMPARE(fixture.opened.getPaths().size(), 1);
    QVERIFY(
        QString::fromUtf8(readFile(fixture.opened.getPaths()[0])).contains(QStringLiteral("строка журнала")));

    monitor.setUseSystemProtocolViewer(false);
    getProtocolButton(monitor)->click();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(fixture.getPages().size(), 1);
}

void TestOrvelProcessMonitor::worksWithoutAViewer()
{
    WindowFixture fixture;
    COrvel& protocol = fixture.addProtocol();
    fixture.window.addExtension(kOrvelItemType, new GUIExtension(&fixture.window, nullptr));
    fixture.window.addExtension(1, new OrvelGUIExtension(&fixture.window, nullptr));
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    const QSignalSpy spy(&monitor, &OrvelProcessMonitor::showOrvel);
    monitor.start([](qor::IProcessMonitor& run) { run.writeError(L"ошибка"); });
    QVERIFY(monitor.waitForFinished());

    getProtocolButton(monitor)->click();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.getPages(), QStringList());
    QCOMPARE(readDataFile(protocol).size(), 4);
}

void TestOrvelProcessMonitor::usesTheFirstViewerOfItsWindow()
{
    WindowFixture fixture;
    fixture.addProtocol();
    fixture.window.addExtension(kOrvelItemType, new GUIExtension(&fixture.window, nullptr));
    fixture.addViewer();
    fixture.addViewer();
    OrvelProcessMonitor monitor(&fixture.window);
    Q_EMIT monitor.showOrvel(kImport);
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

void TestOrvelProcessMonitor::reachesTheViewerFromAnotherThread()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    std::thread([&] { Q_EMIT monitor.showOrvel(kImport); }).join();
    // Not made in that thread, but when the window's own thread comes to it.
    QCOMPARE(fixture.getPages(), QStringList());
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCoreApplication::processEvents();
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

void TestOrvelProcessMonitor::runBeginsAndEndsTheProtocol()
{
    MonitorFixture fixture;
    fixture.runProtocol(kImport, QStringLiteral("старая"));
    fixture.runProtocol(kAdjust, QStringLiteral("другого вида"));
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    std::atomic<bool> isFinished{false};
    monitor.start([&](qor::IProcessMonitor&) {
        while (!isFinished)
            std::this_thread::yield();
    });

    // The data file is read, and the type's old lines are dropped.
    QCOMPARE(messagesOf(fixture.protocol).size(), 4);
    QVERIFY(messagesOf(fixture.protocol)[0].startsWith(QStringLiteral("ptype=305510146 ")));
    isFinished = true;
    QVERIFY(monitor.waitForFinished());

    QCOMPARE(messagesOf(fixture.protocol), QStringList());
    QCOMPARE(readDataFile(fixture.protocol),
             QStringList(
                 {QStringLiteral("305510146 3 - [0] другого вида"),
                  QStringLiteral("305510146 0 - [0] Уравнивание"), QStringLiteral("305510146 1 - [0] DATE"),
                  QStringLiteral("305510146 1 - [0] Проект: Проект 1"),
                  QStringLiteral("305510148 0 - [0] Импорт"), QStringLiteral("305510148 1 - [0] DATE"),
                  QStringLiteral("305510148 1 - [0] Проект: Проект 1")}));
    // The base dialog's start hook, which writes the time, is left out; its end hook is not.
    QCOMPARE(monitor.getJournal()->toPlainText(), QString());
    QCOMPARE(getStateText(monitor), QStringLiteral("Завершено"));
}

void TestOrvelProcessMonitor::runGoesToTheTypeOfItsEnd()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    std::atomic<bool> isFinished{false};
    monitor.start([&](qor::IProcessMonitor& run) {
        while (!isFinished)
            std::this_thread::yield();
        run.writeError(L"после");
    });
    monitor.writeError(L"до");
    monitor.setProtocolType(kAdjust);
    isFinished = true;
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(readDataFile(fixture.protocol),
             QStringList({QStringLiteral("305510146 3 - [0] после"),
                          QStringLiteral("305510146 0 - [0] Уравнивание"),
                          QStringLiteral("305510146 1 - [0] DATE"),
                          QStringLiteral("305510146 1 - [0] Проект: Проект 1"),
                          QStringLiteral("305510148 3 - [0] до")}));
}

void TestOrvelProcessMonitor::interruptedRunLeavesTheProtocolOpen()
{
    MonitorFixture fixture;
    fixture.runProtocol(kImport, QStringLiteral("прежняя"));
    const QByteArray data = readFile(OrvelTestAccess::dataFilePath(fixture.protocol));
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    monitor.start([](qor::IProcessMonitor& run) {
        run.writeError(L"новая");
        workUntilStopped(run);
    });
    monitor.stop();
    QVERIFY(monitor.waitForFinished());

    QCOMPARE(
        messagesOf(fixture.protocol),
        QStringList{QStringLiteral("ptype=305510148 mtype=3 stage=0 ids=0 types=1710060288 text=новая")});
    QCOMPARE(readFile(OrvelTestAccess::dataFilePath(fixture.protocol)), data);
    QCOMPARE(getStateText(monitor), QStringLiteral("Остановлено"));
    QCOMPARE(monitor.getJournal()->toPlainText(),
             QStringLiteral("✖ новая\nСтроки остановленной обработки в протокол не записаны. Его страница "
                            "покажет прежнюю обработку, если она была."));
}

void TestOrvelProcessMonitor::failedRunLeavesTheProtocolOpen()
{
    MonitorFixture fixture;
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kImport);
    monitor.start([](qor::IProcessMonitor&) { throw std::runtime_error("деление на <ноль>"); });
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(messagesOf(fixture.protocol),
             QStringList{QStringLiteral("ptype=305510148 mtype=3 stage=0 ids=0 types=1710060288 "
                                        "text=деление на &lt;ноль&gt;")});
    QVERIFY(!QFile::exists(OrvelTestAccess::dataFilePath(fixture.protocol)));
}

void TestOrvelProcessMonitor::runDestroyedWithItsWindowLeavesTheProtocolOpen()
{
    MonitorFixture fixture;
    auto monitor = std::make_unique<OrvelProcessMonitor>(&fixture.window);
    monitor->setProtocolType(kImport);
    monitor->start(workUntilStopped);
    monitor->writeError(L"строка");
    monitor.reset();
    QCOMPARE(
        messagesOf(fixture.protocol),
        QStringList{QStringLiteral("ptype=305510148 mtype=3 stage=0 ids=0 types=1710060288 text=строка")});
    QVERIFY(!QFile::exists(OrvelTestAccess::dataFilePath(fixture.protocol)));
}

void TestOrvelProcessMonitor::runIsOverBeforeTheHandlerIsDestroyed()
{
    MonitorFixture fixture;
    std::atomic<bool> isRunOver{false};
    QStringList states;
    auto monitor = std::make_unique<OrvelProcessMonitor>(&fixture.window);
    const auto sayState = [&](void*) {
        states.append(isRunOver ? QStringLiteral("over") : QStringLiteral("working"));
    };
    monitor->setOnItemClicked([guard = std::shared_ptr<void>(nullptr, sayState)](LONGID) {});
    monitor->start([&](qor::IProcessMonitor& run) {
        workUntilStopped(run);
        isRunOver = true;
    });
    monitor.reset();
    QCOMPARE(states, QStringList{QStringLiteral("over")});
}

void TestOrvelProcessMonitor::linksOfARunAreRightAtEachMoment()
{
    struct Point : CModelElement
    {
        Point() { setId(12); }
        int getType() const override { return 0x11223366; }
    };
    registerEnumData(EnumData(0x11223366, "MonitoredPoint", "", ""));
    MonitorFixture fixture;
    fixture.model.addItem(std::make_unique<Point>());
    OrvelProcessMonitor monitor(&fixture.window);
    std::vector<std::wstring> links;
    std::vector<std::wstring> expected;
    std::atomic<int> step{0};
    monitor.start([&](qor::IProcessMonitor& run) {
        for (int i = 0; i < 4; ++i) {
            links.push_back(run.getItemLink(12, L"Р"));
            ++step;
            while (step == 2 * i + 1)
                QTest::qSleep(1);
        }
    });
    const auto awaitStep = [&step](int number) {
        while (step != number)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    };
    const auto takeExpected = [&] { expected.push_back(fixture.protocol.GetItemLink(12, L"Р")); };
    awaitStep(1);
    takeExpected();
    fixture.project.setName(QStringLiteral("Другой проект"));
    ++step;
    awaitStep(3);
    takeExpected();
    fixture.model.removeItem(12);
    ++step;
    awaitStep(5);
    takeExpected();
    fixture.model.addItem(std::make_unique<Point>());
    ++step;
    awaitStep(7);
    takeExpected();
    ++step;
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(links, expected);
    QVERIFY(links[0] != links[1]);
    QVERIFY(links[1] != links[2]);
}

void TestOrvelProcessMonitor::linksOfADerivedMonitorAreItsOwn()
{
    class OwnLinks : public OrvelProcessMonitor
    {
    public:
        using OrvelProcessMonitor::OrvelProcessMonitor;
        std::wstring getItemLink(LONGID id, const std::wstring& text) override
        {
            return L"(" + OrvelProcessMonitor::getItemLink(id, text) + L")";
        }
    };
    MonitorFixture fixture;
    OwnLinks monitor(&fixture.window);
    std::vector<std::wstring> links;
    monitor.start([&](qor::IProcessMonitor& run) {
        for (LONGID id = 1; id <= 3; ++id)
            links.push_back(run.getItemLink(id, L"Р"));
    });
    QVERIFY(monitor.waitForFinished());
    for (std::size_t i = 0; i < links.size(); ++i)
        QCOMPARE(links[i], L"(" + fixture.protocol.GetItemLink(static_cast<LONGID>(i) + 1, L"Р") + L")");
}

void TestOrvelProcessMonitor::linesOfAWorkerThreadEndInTheDataFileInOrder()
{
    constexpr int kRounds = 1000;
    MonitorFixture fixture;
    fixture.addItem(12);
    OrvelProcessMonitor monitor(&fixture.window);
    monitor.setProtocolType(kAdjust);
    monitor.start([](qor::IProcessMonitor& run) {
        for (int i = 0; i < kRounds; ++i) {
            const std::wstring number = std::to_wstring(i);
            run.startProtocolStage(L"этап " + number);
            run.writeError(L"ошибка " + number, L"detail");
            run.finishProtocolStage();
            run.writeWarning(L"предупреждение " + number);
            run.writeMessage(L"сообщение " + number);
            run.write(i % 100 == 0 ? run.getItemLink(12, number) : number);
            run.setPercentage(i * 100 / kRounds);
        }
    });
    QVERIFY(monitor.waitForFinished());

    QStringList expected;
    for (int i = 0; i < kRounds; ++i) {
        const QString number = QString::number(i);
        const QString stage = QString::number(i + 1);
        expected << QStringLiteral("305510146 6 %1 [0] этап %2").arg(stage, number)
                 << QStringLiteral("305510146 3 %1 [0] ошибка %2").arg(stage, number)
                 << QStringLiteral("305510146 4 - [0] предупреждение ") + number
                 << QStringLiteral("305510146 5 - [0] сообщение ") + number;
        const std::wstring text = number.toStdWString();
        if (i % 100 == 0)
            expected << QStringLiteral("305510146 1 - [12] ") +
                            QString::fromStdWString(fixture.protocol.GetItemLink(12, text));
        else
            expected << QStringLiteral("305510146 1 - [0] ") + number;
    }
    expected << QStringLiteral("305510146 0 - [0] Уравнивание") << QStringLiteral("305510146 1 - [0] DATE")
             << QStringLiteral("305510146 1 - [0] Проект: Проект 1");
    QCOMPARE(readDataFile(fixture.protocol), expected);
    QVERIFY(fixture.protocol.IsMessages(12));
    QVERIFY(!fixture.protocol.IsMessages(13));
}

void TestOrvelProcessMonitor::secondRunOnTheProjectIsRefused()
{
    const QString word =
        QStringLiteral("С этим проектом уже работает другая обработка. Повторите, когда она закончится.");
    MonitorFixture fixture;
    OrvelProcessMonitor first(&fixture.window);
    first.setProtocolType(kAdjust);
    OrvelProcessMonitor second(&fixture.window);
    second.setProtocolType(kImport);
    std::atomic_bool mayEnd{false};
    first.start([&](qor::IProcessMonitor& run) {
        run.writeMessage(L"строка");
        while (!mayEnd)
            std::this_thread::yield();
    });
    bool hasRun = false;
    second.start([&](qor::IProcessMonitor&) { hasRun = true; });
    QVERIFY(!second.isRunning());
    QCOMPARE(fixture.application.getWarnings(), QStringList(word));
    // A page would take the first run's lines.
    getProtocolButton(second)->click();
    QCOMPARE(fixture.application.getWarnings(), (QStringList{word, word}));
    QCOMPARE(fixture.opened.getPaths(), QStringList());
    mayEnd = true;
    QVERIFY(first.waitForFinished());
    QVERIFY(readDataFile(fixture.protocol).contains(QStringLiteral("305510146 5 - [0] строка")));

    second.start([&](qor::IProcessMonitor&) { hasRun = true; });
    QVERIFY(second.waitForFinished());
    QVERIFY(hasRun);
}

QTEST_MAIN(TestOrvelProcessMonitor)
#include "tst_orvelprocessmonitor.moc"

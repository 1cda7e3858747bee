#include "host/app/Application.h"
#include "host/reports/ReportsGeneratorItem.h"
#include "tests/host/files/FileFailure.h"
#include "tests/support/TestFiles.h"

#include <QDesktopServices>
#include <QDir>
#include <QtTest>

#include <stdexcept>

using reports::ReportsGeneratorItem;

namespace {

QString adjustmentReport()
{
    return QStringLiteral("<html>Отчёт \U0001F4D0</html>\n");
}

} // namespace

class TestReportsGeneratorItem : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openUrl(const QUrl& url) { openedUrls.append(url); }

private Q_SLOTS:
    void init();
    void cleanup();
    void hasItsType();
    void typesOnOfferAscend();
    void reportIsWrittenAsAFileInTheTempFolder();
    void everyReportHasAFileOfItsOwn();
    void laterWriterReplacesTheEarlier();
    void reportFileGoesWithTheApplication();
    void unknownTypeGivesNothing();
    void failingWriterLeavesNoFile();
    void withoutAnApplicationTheReportFails();
    void shownReportIsOpened();
    void unknownTypeIsNotShown();

private:
    QScopedPointer<Application> application;
    QList<QUrl> openedUrls;
};

void TestReportsGeneratorItem::init()
{
    application.reset(new Application);
    openedUrls.clear();
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openUrl");
}

void TestReportsGeneratorItem::cleanup()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    application.reset();
}

void TestReportsGeneratorItem::hasItsType()
{
    QCOMPARE(ReportsGeneratorItem().getType(), 0x2C071301);
}

void TestReportsGeneratorItem::typesOnOfferAscend()
{
    ReportsGeneratorItem item;
    QVERIFY(item.getReportTypes().empty());
    for (const int type : {7, -1, 3, 7})
        item.registerReport(type, adjustmentReport);

    QCOMPARE(item.getReportTypes(), std::vector<int>({-1, 3, 7}));
}

void TestReportsGeneratorItem::reportIsWrittenAsAFileInTheTempFolder()
{
    ReportsGeneratorItem item;
    item.registerReport(7, adjustmentReport);
    const QString path = item.generateReport(7);

    QCOMPARE(path, Application::getTempFolder() + QStringLiteral("/report_1.html"));
    QCOMPARE(readFile(path), adjustmentReport().toUtf8());
    QCOMPARE(openedUrls, QList<QUrl>());
}

void TestReportsGeneratorItem::everyReportHasAFileOfItsOwn()
{
    ReportsGeneratorItem item;
    int runs = 0;
    item.registerReport(7, [&runs] { return QString::number(++runs); });
    const QString first = item.generateReport(7);
    const QString second = item.generateReport(7);

    QVERIFY(first != second);
    QCOMPARE(readFile(first), QByteArrayLiteral("1"));
    QCOMPARE(readFile(second), QByteArrayLiteral("2"));
}

void TestReportsGeneratorItem::laterWriterReplacesTheEarlier()
{
    ReportsGeneratorItem item;
    item.registerReport(7, adjustmentReport);
    item.registerReport(7, [] { return QStringLiteral("later"); });

    QCOMPARE(readFile(item.generateReport(7)), QByteArrayLiteral("later"));
}

void TestReportsGeneratorItem::reportFileGoesWithTheApplication()
{
    ReportsGeneratorItem item;
    item.registerReport(7, adjustmentReport);
    const QString path = item.generateReport(7);
    QVERIFY(QFileInfo::exists(path));
    application.reset();

    QVERIFY(!QFileInfo::exists(path));
}

void TestReportsGeneratorItem::unknownTypeGivesNothing()
{
    const ReportsGeneratorItem item;

    QCOMPARE(item.generateReport(7), QString());
    QVERIFY(QDir(Application::getTempFolder()).isEmpty());
}

void TestReportsGeneratorItem::failingWriterLeavesNoFile()
{
    ReportsGeneratorItem item;
    item.registerReport(7, []() -> QString { throw std::runtime_error("no data"); });

    QVERIFY_EXCEPTION_THROWN(item.generateReport(7), std::runtime_error);
    QVERIFY(QDir(Application::getTempFolder()).isEmpty());
}

void TestReportsGeneratorItem::withoutAnApplicationTheReportFails()
{
    application.reset();
    ReportsGeneratorItem item;
    item.registerReport(7, adjustmentReport);

    QCOMPARE(getFailure([&] { item.showReport(7); }).code, static_cast<int>(qor::CFileException::CannotOpen));
    QCOMPARE(openedUrls, QList<QUrl>());
}

void TestReportsGeneratorItem::shownReportIsOpened()
{
    ReportsGeneratorItem item;
    item.registerReport(7, adjustmentReport);

    QVERIFY(item.showReport(7));
    const QString path = Application::getTempFolder() + QStringLiteral("/report_1.html");
    QCOMPARE(openedUrls, QList<QUrl>{QUrl::fromLocalFile(path)});
    QCOMPARE(readFile(path), adjustmentReport().toUtf8());
}

void TestReportsGeneratorItem::unknownTypeIsNotShown()
{
    QVERIFY(!ReportsGeneratorItem().showReport(7));
    QCOMPARE(openedUrls, QList<QUrl>());
}

QTEST_GUILESS_MAIN(TestReportsGeneratorItem)
#include "tst_reportsgeneratoritem.moc"

#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// Files that an earlier version wrote are read. They lie in a folder per version and are never written anew;
/// a version that writes another form adds its own.
class TestUpgrade : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dataFileIsRead_data();
    void dataFileIsRead();
    void projectIsRead_data();
    void projectIsRead();

private:
    DeskFixture desk;
};

namespace {

void addVersions()
{
    QTest::addColumn<QString>("folder");
    const QDir fixtures(QStringLiteral(UPGRADE_FIXTURES));
    for (const QString& version : fixtures.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        QTest::newRow(qPrintable(version)) << fixtures.filePath(version);
}

/// What the protocol holds, in lines; what the folder's own list says it is.
QStringList readProtocol(COrvel& protocol)
{
    if (!OrvelTestAccess::ReadXML(protocol))
        return {QStringLiteral("not read")};
    return describe(OrvelTestAccess::messages(protocol));
}

QStringList expectedLines(const QString& folder)
{
    QStringList lines =
        QString::fromUtf8(readFile(folder + QStringLiteral("/messages.txt"))).split(QLatin1Char('\n'));
    lines.removeLast();
    return lines;
}

} // namespace

void TestUpgrade::dataFileIsRead_data()
{
    addVersions();
}

void TestUpgrade::dataFileIsRead()
{
    QFETCH(QString, folder);
    Document document(desk.plugins, QStringLiteral("P"));
    orvel::ProtocolState state;
    state.dataFilePath = folder + QStringLiteral("/data.xml");
    state.write(document.getProtocol());
    QCOMPARE(readProtocol(document.getProtocol()), expectedLines(folder));
}

void TestUpgrade::projectIsRead_data()
{
    addVersions();
}

void TestUpgrade::projectIsRead()
{
    QFETCH(QString, folder);
    Document document(desk.plugins, QStringLiteral("P"));
    projectfile::load(document, folder + QStringLiteral("/project.orvel"));
    QCOMPARE(document.getProject().getName(), QStringLiteral("blunder"));
    QCOMPARE(int(document.getPoints().size()), 12);
    QCOMPARE(int(document.getSections().size()), 19);
    QCOMPARE(document.getPoints()[1]->getName(), QStringLiteral("Рп102"));
    QCOMPARE(document.getPoints()[2]->getResult().has_value(), true);
    QVERIFY(document.getSections()[9]->getResult()->residual < -39.0);
    QVERIFY(document.getProtocol().IsMessages(document.getPoints()[1]->getId()));
    QCOMPARE(readProtocol(document.getProtocol()), expectedLines(folder));
}

QTEST_MAIN(TestUpgrade)
#include "tst_upgrade.moc"

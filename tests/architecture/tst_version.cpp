#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

/// Programs and documents tell the version that the project has.
class TestVersion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changelogBeginsWithIt();
    void programsTellIt_data();
    void programsTellIt();
};

void TestVersion::changelogBeginsWithIt()
{
    QFile file(QStringLiteral(PROJECT_SOURCES "/CHANGELOG.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QRegularExpression release(QStringLiteral(R"(^## \[([0-9.]+)\] - \d{4}-\d{2}-\d{2}$)"),
                                     QRegularExpression::MultilineOption);
    QCOMPARE(release.match(QString::fromUtf8(file.readAll())).captured(1), QStringLiteral(ORVEL_VERSION));
}

void TestVersion::programsTellIt_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("orvel-desk") << QStringLiteral(DESK_PROGRAM);
    QTest::newRow("orvel-replay") << QStringLiteral(REPLAY_PROGRAM);
}

void TestVersion::programsTellIt()
{
    QFETCH(QString, program);
    QProcess process;
    process.start(program, {QStringLiteral("--version")});
    QVERIFY2(process.waitForFinished(), qPrintable(process.errorString()));
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()),
             QStringLiteral("%1 " ORVEL_VERSION "\n").arg(QString::fromUtf8(QTest::currentDataTag())));
    QCOMPARE(process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestVersion)
#include "tst_version.moc"

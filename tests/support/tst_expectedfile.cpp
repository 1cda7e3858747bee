#include "tests/support/ExpectedFile.h"
#include "tests/support/TestFiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using orvel::test::compareWithFile;

class TestExpectedFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheFirstLineThatDiffers_data();
    void tellsTheFirstLineThatDiffers();
    void missingFileIsEmpty();
    void writesAnewWhenAskedTo();
};

void TestExpectedFile::tellsTheFirstLineThatDiffers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("difference"); // behind the path
    const auto row = [](const char* text, const char* difference) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(difference);
    };
    row("один\nдва\n", "");
    row("один\nтри\n", ", line 2\nexpected: два\nactual:   три");
    row("один\nдва", ", line 3\nexpected: \nactual:   (the end)");
    row("один\nдва\n\n", ", line 4\nexpected: (the end)\nactual:   ");
}

void TestExpectedFile::tellsTheFirstLineThatDiffers()
{
    QFETCH(QString, text);
    QFETCH(QString, difference);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("1.html"));
    writeFile(path, "один\nдва\n");
    QCOMPARE(compareWithFile(text, path), difference.isEmpty() ? QString() : path + difference);
}

void TestExpectedFile::missingFileIsEmpty()
{
    const QString path = QStringLiteral("no/such.html");
    QCOMPARE(compareWithFile(QString(), path), QString());
    QCOMPARE(compareWithFile(QStringLiteral("1"), path),
             QStringLiteral("no/such.html, line 1\nexpected: \nactual:   1"));
}

void TestExpectedFile::writesAnewWhenAskedTo()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("1.html"));
    qputenv("ORVEL_UPDATE_EXPECTED", "1");
    QCOMPARE(compareWithFile(QStringLiteral("три"), path), QString());
    QCOMPARE(readFile(path), QByteArray("три"));
    QCOMPARE(compareWithFile(QString(), path), QString());
    QVERIFY(!QFile::exists(path));
    qunsetenv("ORVEL_UPDATE_EXPECTED");
}

QTEST_APPLESS_MAIN(TestExpectedFile)
#include "tst_expectedfile.moc"

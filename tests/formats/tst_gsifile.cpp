#include "formats/GsiFile.h"

#include <QBuffer>
#include <QTest>

using namespace formats;

/// Words and blocks of GSI files.
class TestGsiFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shortWordsAreRead();
    void longWordsAreRead();
    void dataMayHoldBlanks();
    void wideWordsMayLackTheirAsterisk();
    void wordsThatAreCutEndAtTheBlank();
    void lastWordIsAsWideAsTheOthers();
    void whatIsNoWordIsKept();
    void unitsAreConverted_data();
    void unitsAreConverted();
    void dataThatIsNoNumberHasNoValue_data();
    void dataThatIsNoNumberHasNoValue();
    void pointsLoseTheirZeros_data();
    void pointsLoseTheirZeros();
    void onlyTheFirstPointOrCodeHasABlockNumber();
    void linesAreToldApart();
};

void TestGsiFile::shortWordsAreRead()
{
    const GsiBlock block = GsiFile::parse("110003+0000BM01 32...6+00253400 331.06-00015230 ");
    QVERIFY(!block.isLong);
    QVERIFY(block.unreadable.isEmpty());
    QCOMPARE(int(block.words.size()), 3);
    QCOMPARE(block.words[0].index, 11);
    QCOMPARE(block.words[0].information, QStringLiteral("0003"));
    QCOMPARE(block.words[0].toText(), QStringLiteral("BM01"));
    QCOMPARE(block.words[1].index, 32);
    QCOMPARE(*block.words[1].toMetres(), 25.34);
    QCOMPARE(block.words[2].index, 331);
    QVERIFY(block.words[2].getInputMode() == QLatin1Char('0'));
    QCOMPARE(*block.words[2].toMetres(), -1.523);
    QCOMPARE(block.find(331), &block.words[2]);
    QVERIFY(!block.find(332));
}

void TestGsiFile::longWordsAreRead()
{
    const GsiBlock block =
        GsiFile::parse("*110003+000000000000000G 331.08+0000000000159977 573..8-0000000000109339\r");
    QVERIFY(block.isLong);
    QCOMPARE(int(block.words.size()), 3);
    QCOMPARE(block.words[0].toText(), QStringLiteral("G"));
    QCOMPARE(*block.words[1].toMetres(), 1.59977);
    QCOMPARE(*block.words[1].getResolution(), 1e-5);
    QCOMPARE(block.words[2].index, 573);
    QCOMPARE(*block.words[2].toNumber(), qint64(-109339));
}

void TestGsiFile::dataMayHoldBlanks()
{
    const GsiBlock block = GsiFile::parse("*508...+00000Line \xE1 closed 509...+000000000000000S ");
    QVERIFY(!block.unreadable.isEmpty()); // 17 characters: the word ends at its blank
    const GsiBlock fitting = GsiFile::parse("*508...+0000Line\xE1 closed 509...+000000000000000S ");
    QVERIFY(fitting.unreadable.isEmpty());
    QCOMPARE(int(fitting.words.size()), 2);
    QCOMPARE(fitting.words[0].toText(), QStringLiteral("Line\u00E1 closed"));
    const GsiBlock unicode =
        GsiFile::parse(QByteArray("*508...+0000Line\xC3\xA1 closed 509...+000000000000000S "));
    QCOMPARE(unicode.words[0].toText(), fitting.words[0].toText());
}

void TestGsiFile::wideWordsMayLackTheirAsterisk()
{
    const GsiBlock wide = GsiFile::parse("110003+000000000000000G 331.08+0000000000159977");
    QCOMPARE(int(wide.words.size()), 2);
    QCOMPARE(*wide.words[1].toMetres(), 1.59977);
    const GsiBlock mixed = GsiFile::parse("*110003+0000000G 331.08+0000000000159977");
    QCOMPARE(int(mixed.words.size()), 2);
    QCOMPARE(mixed.words[0].toText(), QStringLiteral("G"));
}

void TestGsiFile::wordsThatAreCutEndAtTheBlank()
{
    const GsiBlock block = GsiFile::parse("110003+BM 331.08+159977");
    QCOMPARE(int(block.words.size()), 2);
    QCOMPARE(block.words[0].toText(), QStringLiteral("BM"));
    QCOMPARE(*block.words[1].toMetres(), 1.59977);
}

/// Wide words without an asterisk, the last one of which has lost half of its characters.
void TestGsiFile::lastWordIsAsWideAsTheOthers()
{
    const GsiBlock block = GsiFile::parse("110003+000000000000000G 331.08+00000000 ");
    QCOMPARE(int(block.words.size()), 2);
    QVERIFY(!block.words[1].toMetres());
    const GsiBlock mixed = GsiFile::parse("*110003+0000000G 331.08+00000000 32...8+0000000000159977");
    QCOMPARE(*mixed.words[1].toMetres(), 0.0);
    QCOMPARE(*mixed.words[2].toMetres(), 1.59977);
}

void TestGsiFile::whatIsNoWordIsKept()
{
    const GsiBlock block = GsiFile::parse("110003+0000BM01 noise 331.06+ 332.06+00015230");
    QCOMPARE(block.unreadable, QStringList({QStringLiteral("noise"), QStringLiteral("331.06+")}));
    QCOMPARE(int(block.words.size()), 2);
    QCOMPARE(block.words[1].index, 332);
}

void TestGsiFile::unitsAreConverted_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<double>("metres");
    QTest::addColumn<double>("resolution");
    QTest::addColumn<bool>("isInFeet");
    QTest::newRow("1 mm") << QByteArray("331.00+00001523") << 1.523 << 1e-3 << false;
    QTest::newRow("0.1 mm") << QByteArray("331.06+00015230") << 1.523 << 1e-4 << false;
    QTest::newRow("0.01 mm") << QByteArray("331.08+00152300") << 1.523 << 1e-5 << false;
    QTest::newRow("0.001 ft") << QByteArray("331.01+00005000") << 1.524 << 3.048e-4 << true;
    QTest::newRow("0.0001 ft") << QByteArray("331.07+00050000") << 1.524 << 3.048e-5 << true;
}

void TestGsiFile::unitsAreConverted()
{
    QFETCH(QByteArray, line);
    QFETCH(double, metres);
    QFETCH(double, resolution);
    QFETCH(bool, isInFeet);
    const GsiBlock block = GsiFile::parse(line);
    QCOMPARE(*block.words[0].toMetres(), metres);
    QCOMPARE(*block.words[0].getResolution(), resolution);
    QCOMPARE(block.words[0].isInFeet(), isInFeet);
}

void TestGsiFile::dataThatIsNoNumberHasNoValue_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("letters") << QByteArray("331.08+0001523A");
    QTest::newRow("second sign") << QByteArray("331.08+-0015230");
    QTest::newRow("blank") << QByteArray("331.08+         ");
    QTest::newRow("more digits than numbers have") << QByteArray("331.08+99999999999999999999");
    QTest::newRow("cut off") << QByteArray("331.08+001523");
    QTest::newRow("nearly all cut off") << QByteArray("331.08+0");
    QTest::newRow("cut off to the width of short words") << QByteArray("*331.08+00000000");
    QTest::newRow("wide and cut off") << QByteArray("*331.08+000000000001523");
    QTest::newRow("unit of an angle") << QByteArray("331.03+00015230");
    QTest::newRow("no unit") << QByteArray("331.0.+00015230");
}

void TestGsiFile::dataThatIsNoNumberHasNoValue()
{
    QFETCH(QByteArray, line);
    const GsiBlock block = GsiFile::parse(line);
    QVERIFY(block.words.empty() || !block.words[0].toMetres());
}

void TestGsiFile::pointsLoseTheirZeros_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("text");
    QTest::newRow("number") << QByteArray("110001+00000012") << QStringLiteral("12");
    QTest::newRow("name") << QByteArray("110001+00IIM08A") << QStringLiteral("IIM08A");
    QTest::newRow("zero") << QByteArray("110001+00000000") << QStringLiteral("0");
    QTest::newRow("blanks") << QByteArray("110001+  BM 1  ") << QStringLiteral("BM 1");
}

void TestGsiFile::pointsLoseTheirZeros()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, text);
    QCOMPARE(GsiFile::parse(line).words[0].toText(), text);
}

void TestGsiFile::onlyTheFirstPointOrCodeHasABlockNumber()
{
    const GsiBlock code = GsiFile::parse("410015+?......1 42....+00000007");
    QCOMPARE(code.words[0].index, 41);
    QCOMPARE(code.words[1].index, 42);
    QCOMPARE(GsiFile::parse("32...6+00253400 110.06+00015230").words[1].index, 110);
}

void TestGsiFile::linesAreToldApart()
{
    QByteArray content("110003+0000BM01\r\n \t\r\nnoise\r\x1A");
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    GsiFile file(buffer);
    QCOMPARE(file.readNext(), GsiFile::Line::Block);
    QCOMPARE(file.getBlock().line, qint64(1));
    QCOMPARE(file.readNext(), GsiFile::Line::Blank);
    QCOMPARE(file.readNext(), GsiFile::Line::Malformed);
    QCOMPARE(file.getBlock().unreadable, QStringList(QStringLiteral("noise")));
    QCOMPARE(file.getLineNumber(), qint64(3));
    QCOMPARE(file.readNext(), GsiFile::Line::Blank); // a control character that ends files
    QCOMPARE(file.readNext(), GsiFile::Line::End);
    QCOMPARE(file.getEnd(), LineReader::End::File);
}

QTEST_APPLESS_MAIN(TestGsiFile)
#include "tst_gsifile.moc"

#include "formats/M5File.h"

#include <QBuffer>
#include <QtTest>

#include <cmath>

using formats::M5File;
using formats::M5Record;
using formats::M5Value;

/// Lines of an M5 file: what stands in which column.
class TestM5File : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measurementIsRead();
    void textIsRead();
    void levelRecordIsRead();
    void columnsAreCharacters();
    void missingBlanksAtTheEndAreNone();
    void numberThatIsCutOffIsNone();
    void markOfTheInstrumentIsRead();
    void otherLinesAreNoRecords_data();
    void otherLinesAreNoRecords();
    void linesAreTold();
    void numbersAreRead_data();
    void numbersAreRead();
};

namespace {

const QByteArray kMeasurement = QByteArrayLiteral("For M5|Adr 00017|PI1           0              45|SD       "
                                                  "  24.622 m   |Hz       301.1402 DMS |V1        "
                                                  "89.1341 DMS | ");

QString flatten(const M5Record& record)
{
    QStringList fields{record.type, record.information.simplified()};
    for (const M5Value& value : record.values)
        fields += {value.type, value.text, value.unit};
    return fields.join(QLatin1Char('|'));
}

} // namespace

void TestM5File::measurementIsRead()
{
    QCOMPARE(kMeasurement.size(), 119);
    const auto record = M5File::parse(kMeasurement);
    QVERIFY(record);
    QCOMPARE(flatten(*record), QStringLiteral("PI1|0 45|SD|24.622|m|Hz|301.1402|DMS|V1|89.1341|DMS"));
    QCOMPARE(record->information, QStringLiteral("          0              45"));
    QVERIFY(!record->isMarked);
    QVERIFY(record->find(QStringLiteral("Hz")));
    QCOMPARE(record->find(QStringLiteral("Hz"))->text, QStringLiteral("301.1402"));
    QVERIFY(!record->find(QStringLiteral("X")));
}

void TestM5File::textIsRead()
{
    const auto record =
        M5File::parse("For M5|Adr 00015|TI  INPUT                      |th          1.000 m   |ih   "
                      "       1.450 m   |                      | ");
    QVERIFY(record);
    QCOMPARE(flatten(*record), QStringLiteral("TI|INPUT|th|1.000|m|ih|1.450|m|||"));
}

void TestM5File::levelRecordIsRead()
{
    const auto record = M5File::parse("For M5|Adr     4|KD1 12             1234        |Rb        1.23456 m  "
                                      " |HD         25.310 m   |                      | ");
    QVERIFY(record);
    QCOMPARE(flatten(*record), QStringLiteral("KD1|12 1234|Rb|1.23456|m|HD|25.310|m|||"));
}

void TestM5File::columnsAreCharacters()
{
    const auto record =
        M5File::parse("For M5|Adr     4|KD1     Рп7                    |Rb        1.23456 m   |");
    QVERIFY(record);
    QCOMPARE(flatten(*record), QStringLiteral("KD1|Рп7|Rb|1.23456|m||||||"));
    const auto narrow =
        M5File::parse("For M5|Adr     4|KD1      \xC4\xFC                    |Rb        1.23456 m   |");
    QVERIFY(narrow);
    QCOMPARE(flatten(*narrow), QStringLiteral("KD1|Äü|Rb|1.23456|m||||||"));
}

void TestM5File::missingBlanksAtTheEndAreNone()
{
    const auto record = M5File::parse("For M5|Adr 00010|TI  KN STAT");
    QVERIFY(record);
    QCOMPARE(flatten(*record), QStringLiteral("TI|KN STAT|||||||||"));
    QCOMPARE(record->information.size(), 27);
}

void TestM5File::numberThatIsCutOffIsNone()
{
    const QByteArray line = "For M5|Adr     4|KD1 12             1234        |Rb        1.23456 m";
    const auto whole = M5File::parse(line);
    QVERIFY(whole);
    QCOMPARE(*M5File::toNumber(whole->values[0]), 1.23456);
    QCOMPARE(*M5File::toNumber(M5File::parse(line.chopped(2))->values[0]), 1.23456);
    const auto cut = M5File::parse(line.chopped(3));
    QVERIFY(cut);
    QCOMPARE(flatten(*cut), QStringLiteral("KD1|12 1234|Rb|1.2345…|||||||"));
    QVERIFY(!M5File::toNumber(cut->values[0]));
}

void TestM5File::markOfTheInstrumentIsRead()
{
    QByteArray line = kMeasurement;
    line[118] = 'e';
    const auto record = M5File::parse(line);
    QVERIFY(record);
    QVERIFY(record->isMarked);
}

void TestM5File::otherLinesAreNoRecords_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("prose") << QByteArray("Levelling of the dam");
    QTest::newRow("other format") << QByteArray("For R5|Adr 0008|KR NTR1100|X       21.259 m   |");
    QTest::newRow("nothing behind the address") << QByteArray("For M5|Adr 00010|");
    QTest::newRow("shifted") << QByteArray(kMeasurement).insert(60, ' ').chopped(1);
    QTest::newRow("separator replaced") << QByteArray(kMeasurement).replace(48, 1, " ");
    QTest::newRow("too long") << kMeasurement + "x";
    QTest::newRow("NUL at a separator") << QByteArray(kMeasurement).replace(71, 1, QByteArray(1, '\0'));
}

void TestM5File::otherLinesAreNoRecords()
{
    QFETCH(QByteArray, line);
    QVERIFY(!M5File::parse(line));
}

void TestM5File::linesAreTold()
{
    QByteArray text = kMeasurement + "\r\n\r\nabc\r\n" + kMeasurement;
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    M5File file(buffer);
    QCOMPARE(file.readNext(), M5File::Line::Record);
    QCOMPARE(file.getRecord().line, 1);
    QCOMPARE(file.readNext(), M5File::Line::Blank);
    QCOMPARE(file.readNext(), M5File::Line::Malformed);
    QCOMPARE(file.getLineNumber(), 3);
    QCOMPARE(file.readNext(), M5File::Line::Record);
    QCOMPARE(file.getRecord().line, 4);
    QCOMPARE(file.readNext(), M5File::Line::End);
    QCOMPARE(file.getEnd(), formats::LineReader::End::File);
}

void TestM5File::numbersAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");
    QTest::newRow("usual") << "24.622" << 24.622;
    QTest::newRow("negative") << "-0.018" << -0.018;
    QTest::newRow("word") << "abc" << std::nan("");
    QTest::newRow("empty") << "" << std::nan("");
    QTest::newRow("not finite") << "nan" << std::nan("");
    QTest::newRow("infinite") << "inf" << std::nan("");
    QTest::newRow("beyond bounds") << "1e10" << std::nan("");
    QTest::newRow("comma") << "1,5" << std::nan("");
}

void TestM5File::numbersAreRead()
{
    QFETCH(QString, text);
    QFETCH(double, number);
    const std::optional<double> read = M5File::toNumber(M5Value{QString(), text, QString()});
    QCOMPARE(read.has_value(), !std::isnan(number));
    if (read)
        QCOMPARE(*read, number);
}

QTEST_APPLESS_MAIN(TestM5File)
#include "tst_m5file.moc"

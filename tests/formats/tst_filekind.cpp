#include "formats/FileKind.h"

#include <QBuffer>
#include <QTest>

#include <algorithm>

using namespace formats;

Q_DECLARE_METATYPE(formats::FileKind)

namespace {

/// Gives its content in small portions, and cannot go back.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray& bytes) : content(bytes) { open(QIODevice::ReadOnly); }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const int count = static_cast<int>(std::min<qint64>({size, 7, content.size()}));
        std::copy_n(content.constData(), count, data);
        content.remove(0, count);
        return count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray content;
};

QByteArray m5(const char* type, const char* information, const char* value)
{
    return QByteArray("For M5|Adr     1|") + QByteArray(type).leftJustified(4) +
           QByteArray(information).leftJustified(27) + '|' + QByteArray(value).leftJustified(22) +
           "|                      |                      |\r\n";
}

} // namespace

/// What a file holds, by its content.
class TestFileKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesAreRecognised_data();
    void filesAreRecognised();
    void deviceGivesEverythingStill();
};

void TestFileKind::filesAreRecognised_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<FileKind>("kind");
    QTest::newRow("nothing") << QByteArray() << FileKind::Unknown;
    QTest::newRow("prose") << QByteArray("Dear surveyor,\nhere they are.\n") << FileKind::Unknown;
    QTest::newRow("numbers") << QByteArray("1 2.5 3\n2 2.6 4\n") << FileKind::Unknown;
    QTest::newRow("XML") << QByteArray("\n <?xml version=\"1.0\"?>") << FileKind::Xml;
    QTest::newRow("XML with a mark") << QByteArray("\xEF\xBB\xBF<gama-local>") << FileKind::Xml;
    QTest::newRow("XML of wide characters") << QByteArray("\xFF\xFE<\0g\0", 6) << FileKind::Xml;
    QTest::newRow("XML of wide characters without a mark") << QByteArray("\0<\0g", 4) << FileKind::Xml;
    QTest::newRow("table of wide characters") << QByteArray("\xFF\xFE"
                                                            "1\0;\0"
                                                            "2\0\n\0",
                                                            10)
                                              << FileKind::Unknown;
    QTest::newRow("GSI with a mark") << QByteArray("\xEF\xBB\xBF*410001+00000000?......2 \n")
                                     << FileKind::GsiLevel;
    QTest::newRow("M5 with a mark") << "\xEF\xBB\xBF" + m5("KD1", "BM1", "Rb        1.52300 m")
                                    << FileKind::M5Level;
    QTest::newRow("REC_E with a mark")
        << QByteArray("\xEF\xBB\xBF 65 Start-Line   BFFB   101\n") << FileKind::RecLevel;
    QTest::newRow("GSI-8 level") << QByteArray("410001+?......1\r\n") << FileKind::GsiLevel;
    QTest::newRow("GSI-16 level") << QByteArray("*410001+00000000?......2 \n") << FileKind::GsiLevel;
    QTest::newRow("GSI level behind codes")
        << QByteArray("410001+00000099 42....+00020692\n110002+000000A1 32...8+02505387 330.08+00125972\n")
        << FileKind::GsiLevel;
    QTest::newRow("GSI angles") << QByteArray(
                                       "410001+00000099\n110002+000000A1 21.102+17920860 22.102+07567500\n")
                                << FileKind::GsiTotalStation;
    QTest::newRow("GSI coordinates") << QByteArray("*110001+0000000000000101 81..10+0000000000119197\n")
                                     << FileKind::GsiTotalStation;
    QTest::newRow("GSI heights") << QByteArray("110001+00000101 83..10+00119197\n")
                                 << FileKind::GsiTotalStation;
    QTest::newRow("M5 level") << m5("TO", "job 7", "") + m5("KD1", "BM1", "Rb        1.52300 m")
                              << FileKind::M5Level;
    QTest::newRow("German M5 level") << m5("KD1", "BM1", "Lv        1.52300 m") << FileKind::M5Level;
    QTest::newRow("M5 level that begins") << m5("TO", "Start-Line         BF     1", "") << FileKind::M5Level;
    QTest::newRow("M5 total station") << m5("PI1", "1", "SD         24.622 m") << FileKind::M5TotalStation;
    QTest::newRow("M5 texts") << m5("TI", "START", "") << FileKind::M5TotalStation;
    QTest::newRow("REC_E level") << QByteArray("   65 Start-Line   BFFB   101\n") << FileKind::RecLevel;
}

void TestFileKind::filesAreRecognised()
{
    QFETCH(QByteArray, start);
    QFETCH(FileKind, kind);
    QCOMPARE(recognise(start), kind);
}

void TestFileKind::deviceGivesEverythingStill()
{
    const QByteArray content =
        "410001+?......1\r\n" + QByteArray("110002+0000BM01 83...6+01000000 \n").repeated(3000);
    Pipe pipe(content);
    QCOMPARE(recognise(pipe), FileKind::GsiLevel);
    QCOMPARE(pipe.readAll(), content);
    QByteArray copy = content;
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(recognise(buffer), FileKind::GsiLevel);
    QCOMPARE(buffer.readAll(), content);
}

QTEST_APPLESS_MAIN(TestFileKind)
#include "tst_filekind.moc"

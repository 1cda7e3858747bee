#include "formats/LineReader.h"

#include <QBuffer>
#include <QtTest>

using formats::LineReader;

/// Lines of a text, of whatever length and with whatever ends.
class TestLineReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesEndInThreeWays_data();
    void linesEndInThreeWays();
    void linesAreWholeAcrossPortions();
    void longLineEndsReading();
    void longestLineIsRead();
    void endlessFileEndsReading();
    void stopEndsReading();
};

namespace {

/// Gives the same byte for ever.
class EndlessDevice : public QIODevice
{
public:
    explicit EndlessDevice(QByteArray repeated) : pattern(std::move(repeated)) { open(ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        for (qint64 i = 0; i < size; ++i)
            data[i] = pattern.at(static_cast<int>(place++ % pattern.size()));
        return size;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    const QByteArray pattern;
    qint64 place = 0;
};

QList<QByteArray> readAll(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    LineReader reader(buffer);
    QList<QByteArray> lines;
    while (reader.readNext()) {
        lines.append(reader.getLine());
        if (reader.getNumber() != lines.size())
            qFatal("the number of a line is its place");
    }
    return lines;
}

} // namespace

void TestLineReader::linesEndInThreeWays_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QList<QByteArray>>("lines");
    QTest::newRow("LF") << QByteArray("a\nb\n") << QList<QByteArray>{"a", "b"};
    QTest::newRow("CR LF") << QByteArray("a\r\nb\r\n") << QList<QByteArray>{"a", "b"};
    QTest::newRow("CR") << QByteArray("a\rb\r") << QList<QByteArray>{"a", "b"};
    QTest::newRow("no end") << QByteArray("a\nb") << QList<QByteArray>{"a", "b"};
    QTest::newRow("blank lines") << QByteArray("\n\na\r\r\nb") << QList<QByteArray>{"", "", "a", "", "b"};
    QTest::newRow("nothing") << QByteArray() << QList<QByteArray>{};
    QTest::newRow("mark of UTF-8") << QByteArray("\xEF\xBB\xBF"
                                                 "a\n\xEF\xBB\xBF"
                                                 "b")
                                   << QList<QByteArray>{"a", "\xEF\xBB\xBF"
                                                             "b"};
    QTest::newRow("NUL") << QByteArray("a\0b\nc", 5) << QList<QByteArray>{QByteArray("a\0b", 3), "c"};
}

void TestLineReader::linesEndInThreeWays()
{
    QFETCH(QByteArray, text);
    QFETCH(QList<QByteArray>, lines);
    QCOMPARE(readAll(text), lines);
}

void TestLineReader::linesAreWholeAcrossPortions()
{
    QByteArray text;
    QList<QByteArray> lines;
    for (int i = 0; i < 5000; ++i) {
        lines.append(QByteArray(i % 97, 'x') + QByteArray::number(i));
        text += lines.last() + "\r\n";
    }
    QCOMPARE(readAll(text), lines);
}

void TestLineReader::longLineEndsReading()
{
    QByteArray text = "a\n" + QByteArray(LineReader::kLongestLine + 1, 'x') + "\nb\n";
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    LineReader reader(buffer);
    QVERIFY(reader.readNext());
    QVERIFY(!reader.readNext());
    QCOMPARE(reader.getEnd(), LineReader::End::LineTooLong);
    QCOMPARE(reader.getNumber(), 1);
    QVERIFY(!reader.readNext());
}

void TestLineReader::longestLineIsRead()
{
    const QByteArray line(LineReader::kLongestLine, 'x');
    QCOMPARE(readAll(line + "\nb"), (QList<QByteArray>{line, "b"}));
}

void TestLineReader::endlessFileEndsReading()
{
    EndlessDevice device("0123456789abcdef0123456789abcdef\n");
    LineReader reader(device);
    while (reader.readNext())
        ;
    QCOMPARE(reader.getEnd(), LineReader::End::FileTooLarge);

    EndlessDevice withoutEnds("x");
    LineReader other(withoutEnds);
    QVERIFY(!other.readNext());
    QCOMPARE(other.getEnd(), LineReader::End::LineTooLong);
}

void TestLineReader::stopEndsReading()
{
    EndlessDevice device("0123456789abcdef\n");
    int questions = 0;
    LineReader reader(device, [&questions] { return ++questions > 3; });
    while (reader.readNext())
        ;
    QCOMPARE(reader.getEnd(), LineReader::End::Stopped);
    QCOMPARE(questions, 4);
}

QTEST_APPLESS_MAIN(TestLineReader)
#include "tst_linereader.moc"

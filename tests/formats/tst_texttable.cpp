#include "formats/TextTable.h"

#include <QBuffer>
#include <QTextCodec>
#include <QtTest>

using namespace formats;

/// Rows of text files: how they are divided, decoded and bounded.
class TestTextTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreDivided_data();
    void rowsAreDivided();
    void columnsOfFixedWidth();
    void rowsThatHoldNoData();
    void openQuoteIsOnItsLine();
    void encodings_data();
    void encodings();
    void byteOrderMarkWins();
    void whatIsNoTextIsReplaced();
    void textEndingWithinACharacter();
    void linesAreWholeAcrossPortions();
    void longLineEndsReading();
    void endlessFileEndsReading();
    void stopEndsReading();
};

namespace {

/// Gives the same bytes for ever.
class EndlessDevice : public QIODevice
{
public:
    explicit EndlessDevice(QByteArray repeated) : pattern(std::move(repeated)) { open(ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 count = std::min(size, static_cast<qint64>(pattern.size()));
        std::copy_n(pattern.cbegin(), count, data);
        return count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    const QByteArray pattern;
};

/// Gives one byte at a time, as a pipe may.
class SlowDevice : public QIODevice
{
public:
    explicit SlowDevice(QByteArray content) : bytes(std::move(content)) { open(ReadOnly | Unbuffered); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 /*size*/) override
    {
        if (place == bytes.size())
            return -1;
        *data = bytes.at(place++);
        return 1;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    const QByteArray bytes;
    int place = 0;
};

/// The rows as "line: cell|cell", and those without cells as "line: what they are".
QStringList readRows(QByteArray bytes, const TableSyntax& syntax)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TextTable table(buffer, syntax);
    QStringList rows;
    TableRow row;
    const QStringList kinds{QString(), QStringLiteral("heading"), QStringLiteral("empty"),
                            QStringLiteral("comment"), QStringLiteral("open quote")};
    while (table.readRow(row)) {
        const QString text = row.kind == TableRow::Kind::Cells ? row.cells.join(QLatin1Char('|'))
                                                               : kinds[static_cast<int>(row.kind)];
        rows.append(QStringLiteral("%1: %2").arg(QString::number(row.line), text));
    }
    return rows;
}

TableSyntax separatedBy(char separator)
{
    TableSyntax syntax;
    syntax.separator = QLatin1Char(separator);
    return syntax;
}

QByteArray encode(const char* codec, const QString& text)
{
    return QTextCodec::codecForName(codec)->fromUnicode(text);
}

} // namespace

void TestTextTable::rowsAreDivided_data()
{
    QTest::addColumn<char>("separator");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("cells");
    const auto row = [](const char* name, char separator, const char* line, const char* cells) {
        QTest::newRow(name) << separator << QString::fromUtf8(line) << QString::fromUtf8(cells);
    };
    row("plain", ';', "A;B;1,5", "A|B|1,5");
    row("blanks around cells", ';', "  A ;\tB ; 1 ", "A|B|1");
    row("empty cells", ';', ";A;;", "|A||");
    row("one cell", ';', "A", "A");
    row("separator in quotes", ';', "\"A;B\";C", "A;B|C");
    row("quotes in quotes", ';', "\"say \"\"x\"\"\";C", "say \"x\"|C");
    row("empty quotes", ';', "\"\";C", "|C");
    row("blanks before quotes", ';', " \"A\" ; \"B\"", "A|B");
    row("text behind quotes", ';', "\"A\"b;C", "Ab|C");
    row("quote inside a cell", ';', "5\" pipe;C", "5\" pipe|C");
    row("tabs", '\t', "A\t\tB C", "A||B C");
    row("commas", ',', "A,\"1,5\"", "A|1,5");
    row("blanks", ' ', "  A   B\t1.5  ", "A|B|1.5");
    row("blank in quotes", ' ', "\"A 1\" B", "A 1|B");
}

void TestTextTable::rowsAreDivided()
{
    QFETCH(char, separator);
    QFETCH(QString, line);
    QFETCH(QString, cells);
    QCOMPARE(readRows(line.toUtf8(), separatedBy(separator)), QStringList(QStringLiteral("1: ") + cells));
}

void TestTextTable::columnsOfFixedWidth()
{
    TableSyntax syntax;
    syntax.widths = {3, 4, 2};
    QCOMPARE(readRows("A  B;  12\nAB\n\"A\"1234567 x\n", syntax),
             QStringList({QStringLiteral("1: A|B;|12"), QStringLiteral("2: AB||"),
                          QStringLiteral("3: \"A\"|1234|56|7 x")}));
    // What no line is as long as.
    syntax.widths = std::vector<int>(10, 2000000000);
    QCOMPARE(readRows("A", syntax), QStringList(QStringLiteral("1: A|||||||||")));
}

void TestTextTable::rowsThatHoldNoData()
{
    TableSyntax syntax;
    syntax.skipRows = 2;
    const QByteArray text = "from;to\r\n\rA;B\n\n ;\"\";\n  # A;B\n#\n\"#\";1";
    QCOMPARE(readRows(text, syntax), QStringList({QStringLiteral("1: heading"), QStringLiteral("2: heading"),
                                                  QStringLiteral("3: A|B"), QStringLiteral("4: empty"),
                                                  QStringLiteral("5: empty"), QStringLiteral("6: comment"),
                                                  QStringLiteral("7: comment"), QStringLiteral("8: #|1")}));
    syntax.comment.clear();
    syntax.skipRows = 0;
    QCOMPARE(readRows("#;1", syntax), QStringList(QStringLiteral("1: #|1")));
}

void TestTextTable::openQuoteIsOnItsLine()
{
    QCOMPARE(readRows("\"A;1\nB;2\n", TableSyntax()),
             QStringList({QStringLiteral("1: open quote"), QStringLiteral("2: B|2")}));
}

void TestTextTable::encodings_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("bytes");
    const QString text = QStringLiteral("Пункт;№ 1\nЁ;ж\n");
    const auto row = [](const char* name, const char* encoding, const QByteArray& bytes) {
        QTest::newRow(name) << QByteArray(encoding) << bytes;
    };
    row("UTF-8", "UTF-8", text.toUtf8());
    row("UTF-8 with a mark", "utf-8", "\xEF\xBB\xBF" + text.toUtf8());
    row("Windows-1251", "windows-1251", encode("windows-1251", text));
    row("UTF-16 with a mark", "UTF-16", encode("UTF-16", text));
    row("UTF-16, big end first", "UTF-16", QByteArray("\xFE\xFF") + encode("UTF-16BE", text));
    row("UTF-16LE", "UTF-16LE", encode("UTF-16LE", text));
    row("system", "system", QTextCodec::codecForLocale()->fromUnicode(text));
}

void TestTextTable::encodings()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, bytes);
    TableSyntax syntax;
    syntax.encoding = encoding;
    const QStringList rows{QStringLiteral("1: Пункт|№ 1"), QStringLiteral("2: Ё|ж")};
    QCOMPARE(readRows(bytes, syntax), rows);

    SlowDevice slow(bytes);
    TextTable table(slow, syntax);
    TableRow row;
    QVERIFY(table.readRow(row));
    QCOMPARE(row.cells, QStringList({QStringLiteral("Пункт"), QStringLiteral("№ 1")}));
    QCOMPARE(table.getMarkedEncoding(), QByteArray());
    QCOMPARE(table.getUndecodedRows(), qint64(0));
}

void TestTextTable::byteOrderMarkWins()
{
    QByteArray bytes = "\xEF\xBB\xBF" + QStringLiteral("Пункт").toUtf8();
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TableSyntax syntax;
    syntax.encoding = "windows-1251";
    TextTable table(buffer, syntax);
    TableRow row;
    QVERIFY(table.readRow(row));
    QCOMPARE(row.cells, QStringList(QStringLiteral("Пункт")));
    QCOMPARE(table.getMarkedEncoding(), QByteArray("UTF-8"));
}

void TestTextTable::whatIsNoTextIsReplaced()
{
    QByteArray bytes("A;1\nB\x01;2\n\xCF\xF3;3\nC\xED\xA0\x80;4\n\xF0\x9F\x98\x80;5\n");
    bytes.append(QByteArray("D\0;6\n", 5));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TextTable table(buffer, TableSyntax());
    QStringList names;
    TableRow row;
    while (table.readRow(row))
        names.append(row.cells[0]);
    const QChar replaced(QChar::ReplacementCharacter);
    QCOMPARE(names[0], QStringLiteral("A"));
    QCOMPARE(names[1], QStringLiteral("B") + replaced);
    QVERIFY(names[2].contains(replaced));
    QVERIFY(names[3].contains(replaced));
    QCOMPARE(names[4], QString::fromUtf8("\xF0\x9F\x98\x80"));
    QCOMPARE(names[5], QStringLiteral("D") + replaced);
    QCOMPARE(table.getUndecodedRows(), qint64(4));
    QCOMPARE(table.getUndecodedLine(), qint64(2));
}

void TestTextTable::textEndingWithinACharacter()
{
    QCOMPARE(readRows("A;\xD0", TableSyntax()),
             QStringList(QStringLiteral("1: A|") + QChar(QChar::ReplacementCharacter)));
}

void TestTextTable::linesAreWholeAcrossPortions()
{
    // Line ends, and the characters of two bytes, fall on every place of a portion.
    QByteArray text;
    constexpr int count = 40000;
    for (int i = 0; i < count; ++i)
        text += "ж" + QByteArray::number(i) + (i % 3 == 0 ? "\r\n" : i % 3 == 1 ? "\n" : "\r");
    const QStringList rows = readRows(text, TableSyntax());
    QCOMPARE(rows.size(), count);
    for (int i = 0; i < count; ++i)
        QCOMPARE(rows[i], QStringLiteral("%1: ж%2").arg(QString::number(i + 1), QString::number(i)));
}

void TestTextTable::longLineEndsReading()
{
    const QByteArray longest(TextTable::kLongestLine, 'x');
    QByteArray text = "A\n" + longest + "\n" + longest + "x\nB\n";
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    TextTable table(buffer, TableSyntax());
    TableRow row;
    QVERIFY(table.readRow(row));
    QVERIFY(table.readRow(row));
    QCOMPARE(row.cells[0].size(), TextTable::kLongestLine);
    QVERIFY(!table.readRow(row));
    QCOMPARE(table.getFailure(), TextTable::Failure::LineTooLong);
    QCOMPARE(table.getLine(), qint64(3));

    EndlessDevice endless("x");
    TextTable endlessLine(endless, TableSyntax());
    QVERIFY(!endlessLine.readRow(row));
    QCOMPARE(endlessLine.getFailure(), TextTable::Failure::LineTooLong);
}

void TestTextTable::endlessFileEndsReading()
{
    const QByteArray line = QByteArray(1023, 'x') + '\n';
    EndlessDevice endless(line);
    TextTable table(endless, TableSyntax());
    TableRow row;
    qint64 rows = 0;
    while (table.readRow(row))
        ++rows;
    QCOMPARE(table.getFailure(), TextTable::Failure::FileTooLarge);
    QCOMPARE(rows, TextTable::kLargestFile / line.size());
}

void TestTextTable::stopEndsReading()
{
    EndlessDevice endless("\n\n");
    int questions = 0;
    TextTable table(endless, TableSyntax(), [&questions] { return ++questions == 3; });
    TableRow row;
    int rows = 0;
    while (table.readRow(row))
        ++rows;
    // Two portions: the first one has what a byte order mark may have.
    QCOMPARE(rows, 6);
    QCOMPARE(table.getFailure(), TextTable::Failure::Stopped);
}

QTEST_GUILESS_MAIN(TestTextTable)
#include "tst_texttable.moc"

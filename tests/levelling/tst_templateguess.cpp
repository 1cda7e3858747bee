#include "levelling/TemplateGuess.h"

#include <QTextCodec>
#include <QtTest>

using namespace levelling;

/// How a text file looks to be read.
class TestTemplateGuess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesAreUnderstood_data();
    void filesAreUnderstood();
    void encodings_data();
    void encodings();
    void anythingGivesAGuess_data();
    void anythingGivesAGuess();
};

namespace {

QString describe(const TableTemplate& format)
{
    QStringList columns;
    for (const ColumnRole role : format.columns)
        columns.append(getRoleName(role));
    return QStringLiteral("'%1' '%2' %3 %4 %5 %6")
        .arg(format.syntax.separator, format.decimal, QString::number(format.syntax.skipRows),
             columns.join(QLatin1Char(',')), getUnitName(format.differenceUnit),
             getUnitName(format.lengthUnit));
}

} // namespace

void TestTemplateGuess::filesAreUnderstood_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("guess");
    const auto row = [](const char* name, const char* text, const char* guess) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(guess);
    };
    row("Russian spreadsheet",
        "Начальный пункт;Конечный пункт;Превышение, мм;Длина, км;Штативов;СКО, мм;Дата;Примечание\n"
        "Рп1;М2;1234,5;0,51;5;1,2;01.05.2026;ветер\n"
        "М2;М3;-345,6;0,72;7;1,4;02.05.2026;\n",
        "';' ',' 1 from,to,dh,length,stations,sigma,date,note mm km");
    row("English spreadsheet", "From,To,dh (m),Distance (m)\nA,B,1.2345,510\nB,C,-0.3456,720\n",
        "',' '.' 1 from,to,dh,length m m");
    row("tabs without a heading", "A\tB\t1,2345\t0,5\nB\tC\t-0,3456\t0,7\n",
        "'\t' ',' 0 from,to,dh,length m km");
    row("blanks without a heading", "  A   B   1.2345  510\n  B   C  -0.3456  720\n",
        "' ' '.' 0 from,to,dh,length m m");
    row("names that are numbers", "1;2;1,234\n2;3;-0,5\n", "';' ',' 0 from,to,dh m km");
    row("decimal commas between blanks", "A B 1,234 0,5\nB C -1,5 0,7\n", "' ' ',' 0 from,to,dh,length m km");
    row("title above the heading", "Ведомость\n\nот;до;h;L\nA;B;1.5;0.5\nB;C;1.5;0.5\n",
        "';' '.' 3 from,to,dh,length m km");
    row("known points", "Пункт;Отметка, м;СКО, мм\nA;100,123;2\nB;101,5;3\n",
        "';' ',' 1 point,height,sigma m km");
    row("points without a heading", "A 100.123\nB 101.5\n", "' ' '.' 0 point,height m km");
    row("coordinates", "Имя\tX\tY\tH\n1\t10.5\t20.5\t100.1\n2\t11.5\t21.5\t101.1\n",
        "'\t' '.' 1 point,x,y,height m km");
    row("bars", "A|B|1.25|0.5\nB|C|1.5|0.7\n", "'|' '.' 0 from,to,dh,length m km");
    row("commas in texts", "A;B;1.25;wind, rain\nB;C;1.5;sun, wind\n", "';' '.' 0 from,to,dh,skip m km");
}

void TestTemplateGuess::filesAreUnderstood()
{
    QFETCH(QString, text);
    QFETCH(QString, guess);
    QCOMPARE(describe(guessTemplate(text.toUtf8())), guess);
}

void TestTemplateGuess::encodings_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("encoding");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QByteArray() << QByteArray("UTF-8");
    QTest::newRow("UTF-8 with a mark")
        << QByteArray("UTF-8") << QByteArray("\xEF\xBB\xBF") << QByteArray("UTF-8");
    QTest::newRow("Windows-1251") << QByteArray("windows-1251") << QByteArray() << QByteArray("windows-1251");
    QTest::newRow("UTF-16 with a mark")
        << QByteArray("UTF-16LE") << QByteArray("\xFF\xFE") << QByteArray("UTF-16LE");
    QTest::newRow("UTF-16LE") << QByteArray("UTF-16LE") << QByteArray() << QByteArray("UTF-16LE");
    QTest::newRow("UTF-16BE") << QByteArray("UTF-16BE") << QByteArray() << QByteArray("UTF-16BE");
}

void TestTemplateGuess::encodings()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, encoding);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString text = QStringLiteral("от;до;превышение\nПункт;Б;1,5\nБ;В;2,5\n");
    const QByteArray bytes =
        mark + QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
    const TableTemplate format = guessTemplate(bytes);
    QCOMPARE(format.syntax.encoding, encoding);
    QCOMPARE(describe(format), QStringLiteral("';' ',' 1 from,to,dh m km"));
}

void TestTemplateGuess::anythingGivesAGuess_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a line end") << QByteArray("\n");
    QTest::newRow("a word") << QByteArray("word");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QTest::newRow("separators") << QByteArray(";;;;\n,,,\n\t\t\n");
    QTest::newRow("an open quote") << QByteArray("\"A;B\n");
    QTest::newRow("a long line") << QByteArray(20000, ';');
}

void TestTemplateGuess::anythingGivesAGuess()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(findFault(guessTemplate(bytes)));
}

QTEST_GUILESS_MAIN(TestTemplateGuess)
#include "tst_templateguess.moc"

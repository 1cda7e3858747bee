#include "Orvel/store/LinkScanner.h"

#include <QRegExp>
#include <QtTest>

#include <random>

using orvel::links::Range;

namespace {

/// A printable form of a range, "-" for none.
QString toText(const std::optional<Range>& range)
{
    return range ? QStringLiteral("%1..%2").arg(range->begin).arg(range->end) : QStringLiteral("-");
}

/// What the regular expression that defines a link finds.
QString expectedAnchor(const QString& text, int from)
{
    QRegExp expression(QStringLiteral("(<a.*</a>)"), Qt::CaseSensitive, QRegExp::RegExp);
    expression.setMinimal(true);
    const int begin = expression.indexIn(text, from);
    return begin < 0 ? QStringLiteral("-") : toText(Range{begin, begin + expression.matchedLength()});
}

/// What the regular expression that defines an id finds.
QString expectedIdDigits(const QString& text, int from)
{
    QRegExp expression(QStringLiteral("id=(\\d+)"), Qt::CaseSensitive, QRegExp::RegExp);
    if (expression.indexIn(text, from) < 0)
        return QStringLiteral("-");
    return toText(Range{expression.pos(1), expression.pos(1) + expression.cap(1).size()});
}

/// Makes texts out of pieces of mark-up, so that nested, unfinished and overlapping links abound.
class TextGenerator
{
public:
    QString next()
    {
        QString text;
        const int pieces = number(0, 14);
        for (int i = 0; i < pieces; ++i)
            text += piece();
        return text;
    }

    int number(int first, int last) { return std::uniform_int_distribution<int>(first, last)(engine); }

private:
    QString piece()
    {
        static const QStringList links = {QStringLiteral("<a"), QStringLiteral("<a "), QStringLiteral("</a>"),
                                          QStringLiteral("id="), QStringLiteral("12")};
        static const QStringList others = {
            QStringLiteral("</a"),
            QStringLiteral("<A"),
            QStringLiteral("</A>"),
            QStringLiteral("<"),
            QStringLiteral("a"),
            QStringLiteral(">"),
            QStringLiteral("/"),
            QStringLiteral("iid=7"),
            QStringLiteral("ID=5"),
            QStringLiteral("i"),
            QStringLiteral("d="),
            QStringLiteral("="),
            QStringLiteral("-3"),
            QStringLiteral("99999999999999999999"), // more than 64 bits
            QStringLiteral("\u0661\u0662"),         // Arabic-Indic digits
            QStringLiteral("\uFF11"),               // fullwidth digit
            QStringLiteral("\u00B2\u2460\u2155"),   // numbers, but no decimal digits
            QStringLiteral("\U0001D7D8"),           // a digit outside of the first plane
            QStringLiteral("\n"),
            QStringLiteral("\r\n"),
            QStringLiteral("<br>"),
            QStringLiteral("текст"),
            QString(QChar(0)),
            QString(QChar(0xD800)),
            QStringLiteral(" href=\""),
        };
        const QStringList& pieces = number(0, 1) == 0 ? links : others;
        return pieces[number(0, static_cast<int>(pieces.size()) - 1)];
    }

    std::mt19937 engine{20200229};
};

} // namespace

class TestLinkScanner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anchorOfAText_data();
    void anchorOfAText();
    void anchorAtOrBehindAPosition();
    void idDigitsOfAText_data();
    void idDigitsOfAText();
    void idDigitsAtOrBehindAPosition();
    void findsWhatTheRegularExpressionsFind();
    void unfinishedLinksAreScannedOnce();
};

void TestLinkScanner::anchorOfAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found");
    QTest::newRow("empty") << QString() << "-";
    QTest::newRow("plain") << "Невязка"
                           << "-";
    QTest::newRow("whole text") << "<a href=\"x\">1</a>"
                                << "0..17";
    QTest::newRow("within a text") << "от <a>1</a> до"
                                   << "3..11";
    QTest::newRow("first of two") << "<a>1</a> <a>2</a>"
                                  << "0..8";
    QTest::newRow("shortest") << "<a></a></a>"
                              << "0..7";
    QTest::newRow("nothing between") << "<a</a>"
                                     << "0..6";
    QTest::newRow("ends share no character") << "</a>"
                                             << "-";
    QTest::newRow("another element") << "<abbr>1</abbr></a>"
                                     << "0..18";
    QTest::newRow("nested") << "<a><a>1</a></a>"
                            << "0..11";
    QTest::newRow("over line breaks") << "<a\n>\r\n</a>"
                                      << "0..10";
    QTest::newRow("end before begin") << "</a><a>"
                                      << "-";
    QTest::newRow("unfinished end") << "<a>1</a"
                                    << "-";
    QTest::newRow("upper-case begin") << "<A>1</a>"
                                      << "-";
    QTest::newRow("upper-case end") << "<a>1</A>"
                                    << "-";
    QTest::newRow("upper-case end, then lower") << "<a>1</A></a>"
                                                << "0..12";
}

void TestLinkScanner::anchorOfAText()
{
    QFETCH(QString, text);
    QFETCH(QString, found);
    QCOMPARE(toText(orvel::links::findAnchor(text, 0)), found);
}

void TestLinkScanner::anchorAtOrBehindAPosition()
{
    const QString text = QStringLiteral("<a>1</a><a>2</a>");
    QCOMPARE(toText(orvel::links::findAnchor(text, 0)), QStringLiteral("0..8"));
    QCOMPARE(toText(orvel::links::findAnchor(text, 1)), QStringLiteral("8..16"));
    QCOMPARE(toText(orvel::links::findAnchor(text, 8)), QStringLiteral("8..16"));
    QCOMPARE(toText(orvel::links::findAnchor(text, 9)), QStringLiteral("-"));
    QCOMPARE(toText(orvel::links::findAnchor(text, 16)), QStringLiteral("-"));
}

void TestLinkScanner::idDigitsOfAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("found");
    QTest::newRow("empty") << QString() << "-";
    QTest::newRow("one digit") << "id=5"
                               << "3..4";
    QTest::newRow("all digits") << "id=0123456789x"
                                << "3..13";
    QTest::newRow("in a query") << "?type=Point&id=17&project=1"
                                << "15..17";
    QTest::newRow("end of a longer name") << "itemid=17"
                                          << "7..9";
    QTest::newRow("no digits") << "id="
                               << "-";
    QTest::newRow("no digits, then digits") << "id=x id=42"
                                            << "8..10";
    QTest::newRow("directly again") << "id=id=42"
                                    << "6..8";
    QTest::newRow("negative") << "id=-5"
                              << "-";
    QTest::newRow("blank before") << "id= 5"
                                  << "-";
    QTest::newRow("upper case") << "ID=5 Id=6 iD=7"
                                << "-";
    QTest::newRow("any decimal digits") << "id=1\u0662\uFF13;"
                                        << "3..6";
    QTest::newRow("numbers that are no digits") << "id=\u00B2"
                                                << "-";
}

void TestLinkScanner::idDigitsOfAText()
{
    QFETCH(QString, text);
    QFETCH(QString, found);
    QCOMPARE(toText(orvel::links::findIdDigits(text, 0)), found);
}

void TestLinkScanner::idDigitsAtOrBehindAPosition()
{
    const QString text = QStringLiteral("id=12&id=3");
    QCOMPARE(toText(orvel::links::findIdDigits(text, 0)), QStringLiteral("3..5"));
    QCOMPARE(toText(orvel::links::findIdDigits(text, 1)), QStringLiteral("9..10"));
    QCOMPARE(toText(orvel::links::findIdDigits(text, 5)), QStringLiteral("9..10"));
    QCOMPARE(toText(orvel::links::findIdDigits(text, 10)), QStringLiteral("-"));
}

void TestLinkScanner::findsWhatTheRegularExpressionsFind()
{
    TextGenerator generator;
    int anchors = 0;
    int ids = 0;
    for (int i = 0; i < 60000; ++i) {
        const QString text = generator.next();
        const int from = i % 3 == 0 ? 0 : generator.number(0, text.size());
        const QString wantedAnchor = expectedAnchor(text, from);
        const QString wantedDigits = expectedIdDigits(text, from);
        anchors += wantedAnchor == QLatin1String("-") ? 0 : 1;
        ids += wantedDigits == QLatin1String("-") ? 0 : 1;
        const QString where = QStringLiteral(" from %1 in %2").arg(from).arg(text);
        QCOMPARE(toText(orvel::links::findAnchor(text, from)) + where, wantedAnchor + where);
        QCOMPARE(toText(orvel::links::findIdDigits(text, from)) + where, wantedDigits + where);
    }
    // The texts must be worth the comparison.
    QVERIFY(anchors > 5000);
    QVERIFY(ids > 5000);
}

void TestLinkScanner::unfinishedLinksAreScannedOnce()
{
    // Where each "<a" is followed to the end of the text, this takes hours instead of milliseconds.
    const QString text = QStringLiteral("<a ").repeated(2000000);
    QCOMPARE(toText(orvel::links::findAnchor(text, 0)), QStringLiteral("-"));
    const QString ids = QStringLiteral("id=").repeated(2000000);
    QCOMPARE(toText(orvel::links::findIdDigits(ids, 0)), QStringLiteral("-"));
}

QTEST_GUILESS_MAIN(TestLinkScanner)
#include "tst_linkscanner.moc"

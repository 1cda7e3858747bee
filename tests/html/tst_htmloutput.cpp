#include "Orvel/html/HtmlOutput.h"

#include <QBuffer>
#include <QtTest>

using orvel::HtmlOutput;

class TestHtmlOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appendsToAText();
    void writesToAFileAsUtf8();
    void keepsASurrogatePairTogether();
    void loneSurrogatesBecomeQuestionMarks();
    void keepsNoMoreThanAPieceInMemory();
};

void TestHtmlOutput::appendsToAText()
{
    QString text = QStringLiteral("<p>");
    HtmlOutput html(text);
    html << QStringLiteral("Импорт") << QLatin1String("</p>");
    html.flush();
    QCOMPARE(text, QStringLiteral("<p>Импорт</p>"));
}

void TestHtmlOutput::writesToAFileAsUtf8()
{
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    HtmlOutput html(file);
    html << QLatin1String("<p>") << QStringLiteral("\u0418😀") << QLatin1String("</p>");
    html.flush();
    QCOMPARE(file.data(), QByteArray("<p>\xD0\x98\xF0\x9F\x98\x80</p>"));
}

void TestHtmlOutput::keepsASurrogatePairTogether()
{
    const QString pair = QStringLiteral("😀");
    // Wherever a piece may end, within a text and between two.
    for (int size : {0, 1, (1 << 15) - 2, (1 << 15) - 1, 1 << 15, 1000000}) {
        QBuffer file;
        QVERIFY(file.open(QIODevice::WriteOnly));
        HtmlOutput html(file);
        const QString filling(size, QLatin1Char('x'));
        html << filling + pair[0] << QString(pair[1]) << QLatin1String("!");
        html.flush();
        html << pair;
        html.flush();
        QCOMPARE(file.data(), filling.toLatin1() + "\xF0\x9F\x98\x80!\xF0\x9F\x98\x80");
    }
}

void TestHtmlOutput::loneSurrogatesBecomeQuestionMarks()
{
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    HtmlOutput html(file);
    html << QString(QChar(0xD83D)) << QLatin1String("a") << QString(QChar(0xDE00)) << QLatin1String("b");
    html.flush();
    QCOMPARE(file.data(), QByteArray("?a?b"));
}

void TestHtmlOutput::keepsNoMoreThanAPieceInMemory()
{
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    HtmlOutput html(file);
    const QByteArray line("<li>line</li>\n");
    for (int i = 1; i <= 100000; ++i) {
        html << QLatin1String(line);
        QVERIFY(static_cast<qint64>(i) * line.size() - file.size() < 100000);
    }
    html.flush();
    QCOMPARE(file.data(), line.repeated(100000));
}

QTEST_APPLESS_MAIN(TestHtmlOutput)
#include "tst_htmloutput.moc"

#include "Orvel/html/HtmlOutput.h"

#include <QBuffer>
#include <QtTest>

class TestHtmlOutput : public QObject
{
    Q_OBJECT

private slots:
    void appendsToAText();
    void writesToAFileAsUtf8();
    void keepsASurrogatePairTogether();
    void keepsNoMoreThanAPieceInMemory();
};

void TestHtmlOutput::appendsToAText()
{
    QString text = QStringLiteral("<p>");
    const HtmlOutput html(text);
    html << QStringLiteral("Импорт") << QLatin1String("</p>");
    html.flush();
    QCOMPARE(text, QStringLiteral("<p>Импорт</p>"));
}

void TestHtmlOutput::writesToAFileAsUtf8()
{
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    QString piece;
    const HtmlOutput html(piece, file);
    html << QLatin1String("<p>") << QStringLiteral("\u0418😀") << QLatin1String("</p>");
    html.flush();
    QCOMPARE(file.data(), QByteArray("<p>\xD0\x98\xF0\x9F\x98\x80</p>"));
}

void TestHtmlOutput::keepsASurrogatePairTogether()
{
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    QString piece;
    const HtmlOutput html(piece, file);
    const QString pair = QStringLiteral("😀");
    const QString filling(1000000, QLatin1Char('x'));
    html << filling + pair[0] << QString(pair[1]) << QLatin1String("!");
    html.flush();
    QCOMPARE(file.data(), filling.toLatin1() + "\xF0\x9F\x98\x80!");
}

void TestHtmlOutput::keepsNoMoreThanAPieceInMemory()
{
    QBuffer file;
    QVERIFY(file.open(QIODevice::WriteOnly));
    QString piece;
    const HtmlOutput html(piece, file);
    for (int i = 0; i < 100000; ++i) {
        html << QLatin1String("<li>line</li>\n");
        QVERIFY(piece.size() < 100000);
    }
    html.flush();
    QCOMPARE(file.data(), QByteArray("<li>line</li>\n").repeated(100000));
}

QTEST_APPLESS_MAIN(TestHtmlOutput)
#include "tst_htmloutput.moc"

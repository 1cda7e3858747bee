#include "host/files/StringUtils.h"

#include <QtTest>

class TestStringUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstCharacterBecomesUpperCase_data();
    void firstCharacterBecomesUpperCase();
    void controlsBecomeVisible_data();
    void controlsBecomeVisible();
};

void TestStringUtils::firstCharacterBecomesUpperCase_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("one letter") << QStringLiteral("a") << QStringLiteral("A");
    QTest::newRow("only the first") << QStringLiteral("abc def") << QStringLiteral("Abc def");
    QTest::newRow("upper case stays") << QStringLiteral("ABC") << QStringLiteral("ABC");
    QTest::newRow("rest stays") << QStringLiteral("aBC") << QStringLiteral("ABC");
    QTest::newRow("Cyrillic") << QStringLiteral("ёлка") << QStringLiteral("Ёлка");
    QTest::newRow("no letter") << QStringLiteral("1 a") << QStringLiteral("1 a");
    QTest::newRow("white space") << QStringLiteral(" a") << QStringLiteral(" a");
    QTest::newRow("surrogate pair") << QStringLiteral("\U00010428\U00010428")
                                    << QStringLiteral("\U00010400\U00010428");
    QTest::newRow("pair without case") << QStringLiteral("\U0001F4D0a") << QStringLiteral("\U0001F4D0a");
    QTest::newRow("half a pair") << QString(QChar(0xD801)) << QString(QChar(0xD801));
    QTest::newRow("half a pair before a letter")
        << QString(QChar(0xD801)) + QLatin1Char('a') << QString(QChar(0xD801)) + QLatin1Char('a');
    QTest::newRow("two letters in upper case") << QStringLiteral("ßa") << QStringLiteral("SSa");
}

void TestStringUtils::firstCharacterBecomesUpperCase()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);

    QCOMPARE(utils::toUpperFirst(text), expected);
}

void TestStringUtils::controlsBecomeVisible_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("plain") << QStringLiteral("a  б \U0001F4D0") << QStringLiteral("a  б \U0001F4D0");
    QTest::newRow("line break and tab") << QStringLiteral("a\nb\tc\r") << QStringLiteral("a\\nb\\tc\\x0d");
    QTest::newRow("terminal") << QStringLiteral("\x1b[2J\x7f") << QStringLiteral("\\x1b[2J\\x7f");
    QTest::newRow("eight bits") << QString(QChar(0x9b)) << QStringLiteral("\\x9b");
    QTest::newRow("direction") << QStringLiteral("a\u202eb\u2028") << QStringLiteral("a\\u202eb\\u2028");
}

void TestStringUtils::controlsBecomeVisible()
{
    QFETCH(const QString, text);
    QFETCH(const QString, expected);

    QCOMPARE(utils::escapeControls(text), expected);
}

QTEST_APPLESS_MAIN(TestStringUtils)
#include "tst_stringutils.moc"

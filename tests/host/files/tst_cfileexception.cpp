#include "host/files/CFileException.h"

#include <QtTest>

using qor::CFileException;

class TestCFileException : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesCodeAndDescription();
    void textIsTheDescription();
    void withoutADescriptionTheTextIsASentenceForTheCode_data();
    void withoutADescriptionTheTextIsASentenceForTheCode();
    void isCaughtAsAnErrorAndAsAStandardException();
};

void TestCFileException::givesCodeAndDescription()
{
    const CFileException e(17, L"Нет файла");

    QCOMPARE(e.getCode(), 17);
    QCOMPARE(e.getDescription(), std::wstring(L"Нет файла"));
}

void TestCFileException::textIsTheDescription()
{
    const CFileException e(CFileException::CannotRead, L"файл %1");

    QCOMPARE(e.getText(), std::wstring(L"файл %1"));
    QCOMPARE(QByteArray(e.what()), QStringLiteral("файл %1").toUtf8());
}

void TestCFileException::withoutADescriptionTheTextIsASentenceForTheCode_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::newRow("corrupt") << 1 << QStringLiteral("Файл повреждён: недопустимое содержимое.");
    QTest::newRow("open") << 2 << QStringLiteral("Не удалось открыть файл.");
    QTest::newRow("read") << 3 << QStringLiteral("Не удалось прочитать файл.");
    QTest::newRow("write") << 4 << QStringLiteral("Не удалось записать файл.");
    QTest::newRow("folder") << 5 << QStringLiteral("Не удалось создать папку.");
    QTest::newRow("other") << -7 << QStringLiteral("Ошибка при работе с файлом (код -7).");
}

void TestCFileException::withoutADescriptionTheTextIsASentenceForTheCode()
{
    QFETCH(const int, code);
    QFETCH(const QString, text);
    const CFileException e(code, std::wstring());

    QCOMPARE(QString::fromStdWString(e.getText()), text);
    QCOMPARE(QString::fromUtf8(e.what()), text);
    QCOMPARE(e.getDescription(), std::wstring());
    QCOMPARE(e.getCode(), code);
}

void TestCFileException::isCaughtAsAnErrorAndAsAStandardException()
{
    std::wstring text;
    try {
        throw CFileException(1, L"файл");
    } catch (const exceptions::Error& e) {
        text = e.getText();
    }
    QCOMPARE(text, std::wstring(L"файл"));

    QByteArray what;
    try {
        throw CFileException(1, L"file");
    } catch (const std::exception& e) {
        what = e.what();
    }
    QCOMPARE(what, QByteArrayLiteral("file"));
}

QTEST_APPLESS_MAIN(TestCFileException)
#include "tst_cfileexception.moc"

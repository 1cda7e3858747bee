#include "host/files/CTranslater.h"
#include "tests/support/TestFiles.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kTranslation = QStringLiteral(TRANSLATION_FILE);

std::wstring translate(const char* context, const char* text)
{
    return CTranslater::GetInstance().translate(context, text);
}

} // namespace

class TestCTranslater : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsOne();
    void withoutATranslationTheTextItselfIsGiven();
    void unusableFilesAreRefused();
    void loadedTranslationCounts();
};

void TestCTranslater::thereIsOne()
{
    QCOMPARE(&CTranslater::GetInstance(), &CTranslater::GetInstance());
}

void TestCTranslater::withoutATranslationTheTextItselfIsGiven()
{
    QCOMPARE(translate("Test", "отметка"), std::wstring(L"отметка"));
    QCOMPARE(translate("Test", ""), std::wstring());
}

void TestCTranslater::unusableFilesAreRefused()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("text.qm"));
    writeFile(path, "no translation");

    QVERIFY(!CTranslater::GetInstance().loadTranslation(path));
    QVERIFY(!CTranslater::GetInstance().loadTranslation(QStringLiteral("/missing/file.qm")));
    QCOMPARE(translate("Test", "отметка"), std::wstring(L"отметка"));
}

void TestCTranslater::loadedTranslationCounts()
{
    QVERIFY(CTranslater::GetInstance().loadTranslation(kTranslation));

    QCOMPARE(translate("Test", "отметка"), std::wstring(L"height \U0001F4D0"));
    QCOMPARE(translate("Other", "отметка"), std::wstring(L"отметка"));
}

QTEST_GUILESS_MAIN(TestCTranslater)
#include "tst_ctranslater.moc"

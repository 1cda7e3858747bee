#include "host/enums/EnumData.h"

#include <QtTest>

#include <thread>
#include <vector>

namespace {

/// Registered before main(), as other libraries do.
const bool kIsEarlyRecordRegistered = [] {
    registerEnumData(EnumData(100, "Early", "ранняя", "ранние"));
    return true;
}();

} // namespace

class TestEnumData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordGivesItsTexts();
    void textsBeyondTheFirstPlaneAndEmptyOnesAreKept();
    void registeredRecordIsFound();
    void recordOfAStaticInitializerIsFound();
    void laterRecordReplacesTheEarlier();
    void unknownValueHasEmptyTexts();
    void threadsMayRegisterAndLookUpTogether();
};

void TestEnumData::recordGivesItsTexts()
{
    const EnumData record(-3, "Adjust", "Уравнивание", "Уравнивания");

    QCOMPARE(record.getValue(), -3);
    QCOMPARE(record.getTextInternal(), std::string("Adjust"));
    QCOMPARE(record.getTextSingular(), std::wstring(L"Уравнивание"));
    QCOMPARE(record.getTextPlural(), std::wstring(L"Уравнивания"));
}

void TestEnumData::textsBeyondTheFirstPlaneAndEmptyOnesAreKept()
{
    const EnumData record(1, "", "\xF0\x9F\x93\x90", "");

    QCOMPARE(record.getTextInternal(), std::string());
    QCOMPARE(record.getTextSingular(), std::wstring(L"\U0001F4D0"));
    QCOMPARE(record.getTextPlural(), std::wstring());
}

void TestEnumData::registeredRecordIsFound()
{
    registerEnumData(EnumData(1, "Import", "импорт", "импорты"));
    registerEnumData(EnumData(2, "Export", "экспорт", "экспорты"));
    const EnumData found = getEnumData(1);

    QCOMPARE(found.getValue(), 1);
    QCOMPARE(found.getTextInternal(), std::string("Import"));
    QCOMPARE(found.getTextSingular(), std::wstring(L"импорт"));
    QCOMPARE(found.getTextPlural(), std::wstring(L"импорты"));
    QCOMPARE(getEnumData(2).getTextInternal(), std::string("Export"));
}

void TestEnumData::recordOfAStaticInitializerIsFound()
{
    QVERIFY(kIsEarlyRecordRegistered);
    QCOMPARE(getEnumData(100).getTextSingular(), std::wstring(L"ранняя"));
}

void TestEnumData::laterRecordReplacesTheEarlier()
{
    registerEnumData(EnumData(3, "old", "старая", "старые"));
    registerEnumData(EnumData(3, "new", "новая", "новые"));
    const EnumData found = getEnumData(3);

    QCOMPARE(found.getTextInternal(), std::string("new"));
    QCOMPARE(found.getTextSingular(), std::wstring(L"новая"));
    QCOMPARE(found.getTextPlural(), std::wstring(L"новые"));
}

void TestEnumData::unknownValueHasEmptyTexts()
{
    const EnumData found = getEnumData(-12345);

    QCOMPARE(found.getValue(), -12345);
    QCOMPARE(found.getTextInternal(), std::string());
    QCOMPARE(found.getTextSingular(), std::wstring());
    QCOMPARE(found.getTextPlural(), std::wstring());
    QCOMPARE(getEnumData(-12345).getTextInternal(), std::string());
}

void TestEnumData::threadsMayRegisterAndLookUpTogether()
{
    constexpr int threadCount = 4;
    constexpr int recordCount = 2000;
    std::vector<int> mistakes(threadCount);
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([thread, &mistakes] {
            for (int i = 0; i < recordCount; ++i) {
                const int value = 1000 + thread * recordCount + i;
                const std::string text = std::to_string(value);
                registerEnumData(EnumData(value, text, text, text));
                registerEnumData(EnumData(999, "shared", text, text));
                const bool isRight = getEnumData(value).getTextInternal() == text &&
                                     getEnumData(999).getTextInternal() == "shared";
                mistakes[static_cast<std::size_t>(thread)] += isRight ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    QCOMPARE(mistakes, std::vector<int>(threadCount));
    for (int value = 1000; value < 1000 + threadCount * recordCount; ++value)
        QCOMPARE(getEnumData(value).getTextInternal(), std::to_string(value));
}

QTEST_APPLESS_MAIN(TestEnumData)
#include "tst_enumdata.moc"

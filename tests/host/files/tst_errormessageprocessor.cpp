#include "host/files/ErrorMessageProcessor.h"

#include <QTextCodec>
#include <QtTest>

using qor::ErrorMessageProcessor;

namespace {

const std::wstring kUnknown = L"Неизвестная ошибка.";

} // namespace

class TestErrorMessageProcessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysThatMemoryRanOut();
    void utf8IsDecoded();
    void otherBytesAreInTheEncodingOfTheLocale();
    void wideMessageIsKept();
    void whiteSpaceAroundIsDropped();
    void emptyMessageBecomesASentence();
};

void TestErrorMessageProcessor::saysThatMemoryRanOut()
{
    QCOMPARE(ErrorMessageProcessor::getBadAllocText(),
             std::wstring(L"Для выполнения операции не хватило памяти."));
}

void TestErrorMessageProcessor::utf8IsDecoded()
{
    QCOMPARE(ErrorMessageProcessor::processMessage(std::string("ошибка \xF0\x9F\x93\x90")),
             std::wstring(L"ошибка \U0001F4D0"));
}

void TestErrorMessageProcessor::otherBytesAreInTheEncodingOfTheLocale()
{
    QTextCodec* usual = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("windows-1251"));
    const std::wstring wrong = ErrorMessageProcessor::processMessage(std::string("\xEE\xF8\xE8\xE1\xEA\xE0"));
    const std::wstring cutOff = ErrorMessageProcessor::processMessage(std::string("a\xD0"));
    QTextCodec::setCodecForLocale(usual);

    QCOMPARE(wrong, std::wstring(L"ошибка"));
    QCOMPARE(cutOff, std::wstring(L"aР"));
}

void TestErrorMessageProcessor::wideMessageIsKept()
{
    QCOMPARE(ErrorMessageProcessor::processMessage(std::wstring(L"ошибка \U0001F4D0")),
             std::wstring(L"ошибка \U0001F4D0"));
}

void TestErrorMessageProcessor::whiteSpaceAroundIsDropped()
{
    QCOMPARE(ErrorMessageProcessor::processMessage(std::string(" \t\nbad  value\r\n")),
             std::wstring(L"bad  value"));
    QCOMPARE(ErrorMessageProcessor::processMessage(std::wstring(L"\u00A0bad\n")), std::wstring(L"bad"));
}

void TestErrorMessageProcessor::emptyMessageBecomesASentence()
{
    QCOMPARE(ErrorMessageProcessor::processMessage(std::string()), kUnknown);
    QCOMPARE(ErrorMessageProcessor::processMessage(std::string(" \n")), kUnknown);
    QCOMPARE(ErrorMessageProcessor::processMessage(std::wstring()), kUnknown);
    QCOMPARE(ErrorMessageProcessor::processMessage(std::wstring(L"\t")), kUnknown);
}

QTEST_GUILESS_MAIN(TestErrorMessageProcessor)
#include "tst_errormessageprocessor.moc"

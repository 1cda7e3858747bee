#include "host/files/Error.h"

#include <QtTest>

#include <boost/exception/get_error_info.hpp>
#include <boost/exception/info.hpp>

using exceptions::Error;
using exceptions::err_info::MessageTag;

class TestError : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesItsText();
    void whatIsTheTextInUtf8();
    void copyKeepsText();
    void isCaughtAsAStandardException();
    void carriesAMessageForTheUser();
};

void TestError::givesItsText()
{
    QCOMPARE(Error(L"Ошибка \U0001F4D0").getText(), std::wstring(L"Ошибка \U0001F4D0"));
    QCOMPARE(Error(L"").getText(), std::wstring());
}

void TestError::whatIsTheTextInUtf8()
{
    QCOMPARE(QByteArray(Error(L"Яa\U0001F4D0").what()), QByteArray::fromHex("d0af61f09f9390"));
    QCOMPARE(QByteArray(Error(L"").what()), QByteArray());
}

void TestError::copyKeepsText()
{
    Error copy(L"other");
    {
        const Error error(L"text");
        copy = error;
        QCOMPARE(Error(error).getText(), std::wstring(L"text"));
    }
    QCOMPARE(copy.getText(), std::wstring(L"text"));
    QCOMPARE(QByteArray(copy.what()), QByteArrayLiteral("text"));
}

void TestError::isCaughtAsAStandardException()
{
    QByteArray caught;
    try {
        throw Error(L"text");
    } catch (const std::exception& e) {
        caught = e.what();
    }
    QCOMPARE(caught, QByteArrayLiteral("text"));
}

void TestError::carriesAMessageForTheUser()
{
    std::wstring message;
    try {
        throw Error(L"text") << MessageTag(L"сообщение");
    } catch (const boost::exception& e) {
        if (const std::wstring* found = boost::get_error_info<MessageTag>(e))
            message = *found;
    }
    QCOMPARE(message, std::wstring(L"сообщение"));
}

QTEST_APPLESS_MAIN(TestError)
#include "tst_error.moc"

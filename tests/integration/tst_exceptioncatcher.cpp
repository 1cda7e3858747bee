#include "Orvel/integration/ExceptionCatcher.h"
#include "host/files/CFileException.h"
#include "host/files/Error.h"

#include <QTranslator>
#include <QtTest>

#include <boost/exception/exception.hpp>
#include <boost/exception/info.hpp>

#include <functional>
#include <new>
#include <stdexcept>

Q_DECLARE_METATYPE(std::function<void()>)

using orvel::ExceptionCatcher;

namespace {

using exceptions::err_info::MessageTag;

/// An error that makes its text when asked, and counts.
struct CountingError : exceptions::Error
{
    explicit CountingError(int& questions) : Error(L"stored"), count(&questions) {}

    std::wstring getText() const override
    {
        ++*count;
        return L"made when asked";
    }

    int* count;
};

struct BadAllocOfBoost : std::bad_alloc, boost::exception
{};

struct StandardErrorOfBoost : std::runtime_error, boost::exception
{
    using std::runtime_error::runtime_error;
};

struct BoostError : boost::exception
{};

/// Answers for one context only.
struct Translator : QTranslator
{
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        if (QByteArray(context) != "ExceptionCatcher")
            return QString();
        return QStringLiteral("translated: ") + QString::fromUtf8(text);
    }

    bool isEmpty() const override { return false; }
};

/// What a catcher with one handler says of what the action throws.
QStringList messagesOf(const std::function<void()>& action)
{
    QStringList messages;
    ExceptionCatcher catcher;
    catcher.addErrorHandler([&](const QString& message) { messages.append(message); });
    catcher.run(action);
    return messages;
}

} // namespace

class TestExceptionCatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void actionThatSucceedsCallsNoHandler();
    void messageByKind_data();
    void messageByKind();
    void unknownKindsAreTranslatedInTheCatchersContext();
    void handlersAreCalledInOrder();
    void messageIsMadeForEveryHandler();
    void nothingPropagatesWithoutHandlers();
    void catcherCanBeUsedAgain();
};

void TestExceptionCatcher::actionThatSucceedsCallsNoHandler()
{
    QStringList calls;
    ExceptionCatcher catcher;
    catcher.addErrorHandler([&](const QString& message) { calls.append(message); });
    catcher.addAfterErrorHandler([&] { calls.append(QStringLiteral("after")); });
    catcher.run([&] { calls.append(QStringLiteral("action")); });
    QCOMPARE(calls, QStringList{QStringLiteral("action")});
}

void TestExceptionCatcher::messageByKind_data()
{
    QTest::addColumn<std::function<void()>>("action");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const std::function<void()>& action, const QString& message) {
        QTest::newRow(name) << action << message;
    };

    row(
        "1 error of the host", [] { throw exceptions::Error(L" Нет места "); },
        QStringLiteral(" Нет места "));
    row(
        "1 error of the host, derived", [] { throw qor::CFileException(7, L"файл 7"); },
        QStringLiteral("файл 7"));
    row(
        "1 error of the host, with a Boost message",
        [] { throw boost::enable_error_info(exceptions::Error(L"own")) << MessageTag(L"tag"); },
        QStringLiteral("own"));
    row(
        "2 out of memory", [] { throw std::bad_alloc(); },
        QStringLiteral("Для выполнения операции не хватило памяти."));
    row(
        "2 out of memory, derived", [] { throw std::bad_array_new_length(); },
        QStringLiteral("Для выполнения операции не хватило памяти."));
    row(
        "2 out of memory, with a Boost message", [] { throw BadAllocOfBoost() << MessageTag(L"tag"); },
        QStringLiteral("Для выполнения операции не хватило памяти."));
    row(
        "3 standard", [] { throw std::runtime_error(" ошибка чтения\n"); }, QStringLiteral("ошибка чтения"));
    row(
        "3 standard, without a text", [] { throw std::runtime_error(""); },
        QStringLiteral("Неизвестная ошибка."));
    row(
        "3 standard, with a Boost message", [] { throw StandardErrorOfBoost("what") << MessageTag(L"tag"); },
        QStringLiteral("what"));
    row(
        "4 Boost, with a message", [] { throw BoostError() << MessageTag(L" метка "); },
        QStringLiteral("метка"));
    row(
        "4 Boost, with an empty message", [] { throw BoostError() << MessageTag(L""); },
        QStringLiteral("Неизвестная ошибка."));
    row(
        "4 Boost, without a message", [] { throw BoostError(); }, QStringLiteral("Ошибка boost"));
    row(
        "5 anything else", [] { throw 5; }, QStringLiteral("Системная ошибка"));
    row(
        "5 anything else, a text", [] { throw "text"; }, QStringLiteral("Системная ошибка"));
}

void TestExceptionCatcher::messageByKind()
{
    QFETCH(std::function<void()>, action);
    QFETCH(QString, message);
    QCOMPARE(messagesOf(action), QStringList{message});
}

void TestExceptionCatcher::unknownKindsAreTranslatedInTheCatchersContext()
{
    Translator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(messagesOf([] { throw BoostError(); }), QStringList{QStringLiteral("translated: Ошибка boost")});
    QCOMPARE(messagesOf([] { throw 5; }), QStringList{QStringLiteral("translated: Системная ошибка")});
    QVERIFY(QCoreApplication::removeTranslator(&translator));
}

void TestExceptionCatcher::handlersAreCalledInOrder()
{
    QStringList calls;
    ExceptionCatcher catcher;
    catcher.addAfterErrorHandler([&] { calls.append(QStringLiteral("after 1")); });
    catcher.addErrorHandler([&](const QString& message) { calls.append(QStringLiteral("1: ") + message); });
    catcher.addAfterErrorHandler([&] { calls.append(QStringLiteral("after 2")); });
    catcher.addErrorHandler([&](const QString& message) { calls.append(QStringLiteral("2: ") + message); });
    catcher.run([] { throw std::runtime_error("failed"); });
    QCOMPARE(calls, QStringList({QStringLiteral("1: failed"), QStringLiteral("2: failed"),
                                 QStringLiteral("after 1"), QStringLiteral("after 2")}));
}

void TestExceptionCatcher::messageIsMadeForEveryHandler()
{
    int questions = 0;
    QStringList messages;
    ExceptionCatcher catcher;
    catcher.addAfterErrorHandler([] {});
    const auto throwError = [&] { throw CountingError(questions); };
    catcher.run(throwError);
    QCOMPARE(questions, 0);

    for (int i = 0; i < 3; ++i)
        catcher.addErrorHandler([&](const QString& message) { messages.append(message); });
    catcher.run(throwError);
    QCOMPARE(questions, 3);
    const QString message = QStringLiteral("made when asked");
    QCOMPARE(messages, QStringList({message, message, message}));
}

void TestExceptionCatcher::nothingPropagatesWithoutHandlers()
{
    const ExceptionCatcher catcher;
    catcher.run([] { throw exceptions::Error(L"error"); });
    catcher.run([] { throw std::bad_alloc(); });
    catcher.run([] { throw BoostError(); });
    catcher.run([] { throw 5; });
}

void TestExceptionCatcher::catcherCanBeUsedAgain()
{
    QStringList messages;
    ExceptionCatcher catcher;
    catcher.addErrorHandler([&](const QString& message) { messages.append(message); });
    catcher.run([] { throw std::runtime_error("first"); });
    catcher.run([] {});
    catcher.run([] { throw 2; });
    QCOMPARE(messages, QStringList({QStringLiteral("first"), QStringLiteral("Системная ошибка")}));
}

QTEST_GUILESS_MAIN(TestExceptionCatcher)
#include "tst_exceptioncatcher.moc"

#include "host/app/SDIApplication.h"

#include <QMessageBox>
#include <QtTest>

#include <unistd.h>

namespace {

/// What `action` writes to the standard error output.
template<class Action>
QByteArray getStandardError(Action action)
{
    QTemporaryFile file;
    if (!file.open())
        return {};
    std::fflush(stderr);
    const int original = dup(STDERR_FILENO);
    dup2(file.handle(), STDERR_FILENO);
    action();
    std::fflush(stderr);
    dup2(original, STDERR_FILENO);
    close(original);
    file.seek(0);
    return file.readAll();
}

} // namespace

class TestSDIApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsScheme();
    void isTheApplication();
    void warningWithoutADisplayGoesToStandardError();
};

void TestSDIApplication::knowsItsScheme()
{
    const SDIApplication application(QStringLiteral("survey"));
    QCOMPARE(application.getUriScheme(), QStringLiteral("survey"));
}

void TestSDIApplication::isTheApplication()
{
    QVERIFY(getApplication() == nullptr);
    SDIApplication application(QStringLiteral("survey"));
    QVERIFY(getApplication() == &application);
    QVERIFY(qobject_cast<SDIApplication*>(Application::instance()) == &application);
}

void TestSDIApplication::warningWithoutADisplayGoesToStandardError()
{
    SDIApplication application(QStringLiteral("survey"));
    QWidget window;
    const QByteArray text =
        getStandardError([&] { Application::warning(QStringLiteral("Файл не записан"), &window); });
    QCOMPARE(QString::fromUtf8(text), QStringLiteral("Файл не записан\n"));
    QVERIFY(window.findChild<QMessageBox*>() == nullptr);
}

QTEST_MAIN(TestSDIApplication)
#include "tst_sdiapplication.moc"

#include "host/model/ISubject.h"
#include "tests/host/model/RecordingObserver.h"

#include <QtTest>

#include <functional>

namespace {

/// Does something when it is told of a change.
class ActingObserver : public IObserver
{
public:
    explicit ActingObserver(std::function<void()> reaction) : action(std::move(reaction)) {}

    void subjectChanged(const ISubject& /*subject*/) override { action(); }

private:
    std::function<void()> action;
};

} // namespace

class TestISubject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void observersAreToldInTheOrderOfAttachment();
    void observerIsGivenTheSubject();
    void observerAttachedTwiceIsToldOnce();
    void nullObserverIsIgnored();
    void detachedObserverIsNotTold();
    void observerDetachedWhileOthersAreToldIsNotTold();
    void observerMayDetachItself();
    void observerAttachedWhileOthersAreToldHasToWait();
    void copyHasNoObservers();
    void assignmentLeavesObserversAsTheyAre();
};

void TestISubject::observersAreToldInTheOrderOfAttachment()
{
    QStringList log;
    RecordingObserver first(&log, QStringLiteral("first"));
    RecordingObserver second(&log, QStringLiteral("second"));
    ISubject subject;
    subject.attach(&second);
    subject.attach(&first);

    subject.notify();

    QCOMPARE(log, QStringList({QStringLiteral("second"), QStringLiteral("first")}));
}

void TestISubject::observerIsGivenTheSubject()
{
    struct : IObserver
    {
        void subjectChanged(const ISubject& subject) override { told = &subject; }
        const ISubject* told = nullptr;
    } observer;
    ISubject subject;
    subject.attach(&observer);

    subject.notify();

    QCOMPARE(observer.told, &subject);
}

void TestISubject::observerAttachedTwiceIsToldOnce()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    ISubject subject;
    subject.attach(&observer);
    subject.attach(&observer);

    subject.notify();

    QCOMPARE(log, QStringList{QStringLiteral("told")});
}

void TestISubject::nullObserverIsIgnored()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    ISubject subject;
    subject.attach(nullptr);
    subject.attach(&observer);
    subject.notify();
    QCOMPARE(log, QStringList{QStringLiteral("told")});

    subject.detach(nullptr);
    subject.notify();
    QCOMPARE(log.size(), 2);
}

void TestISubject::detachedObserverIsNotTold()
{
    QStringList log;
    RecordingObserver first(&log, QStringLiteral("first"));
    RecordingObserver second(&log, QStringLiteral("second"));
    ISubject subject;
    subject.attach(&first);
    subject.attach(&second);
    subject.detach(&first);

    subject.notify();

    QCOMPARE(log, QStringList{QStringLiteral("second")});
}

void TestISubject::observerDetachedWhileOthersAreToldIsNotTold()
{
    QStringList log;
    ISubject subject;
    auto dying = std::make_unique<RecordingObserver>(&log, QStringLiteral("dying"));
    ActingObserver killer([&] {
        log.append(QStringLiteral("killer"));
        subject.detach(dying.get());
        dying.reset();
    });
    RecordingObserver last(&log, QStringLiteral("last"));
    subject.attach(&killer);
    subject.attach(dying.get());
    subject.attach(&last);

    subject.notify();

    QCOMPARE(log, QStringList({QStringLiteral("killer"), QStringLiteral("last")}));
}

void TestISubject::observerMayDetachItself()
{
    QStringList log;
    ISubject subject;
    std::unique_ptr<ActingObserver> once;
    once = std::make_unique<ActingObserver>([&] {
        log.append(QStringLiteral("once"));
        subject.detach(once.get());
    });
    RecordingObserver last(&log, QStringLiteral("last"));
    subject.attach(once.get());
    subject.attach(&last);

    subject.notify();
    subject.notify();

    QCOMPARE(log, QStringList({QStringLiteral("once"), QStringLiteral("last"), QStringLiteral("last")}));
}

void TestISubject::observerAttachedWhileOthersAreToldHasToWait()
{
    QStringList log;
    ISubject subject;
    RecordingObserver late(&log, QStringLiteral("late"));
    ActingObserver inviting([&] {
        log.append(QStringLiteral("inviting"));
        subject.attach(&late);
    });
    subject.attach(&inviting);

    subject.notify();
    QCOMPARE(log, QStringList{QStringLiteral("inviting")});

    log.clear();
    subject.notify();
    QCOMPARE(log, QStringList({QStringLiteral("inviting"), QStringLiteral("late")}));
}

void TestISubject::copyHasNoObservers()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    ISubject subject;
    subject.attach(&observer);
    const ISubject copy(subject);

    copy.notify();
    QCOMPARE(log, QStringList());

    subject.notify();
    QCOMPARE(log, QStringList{QStringLiteral("told")});
}

void TestISubject::assignmentLeavesObserversAsTheyAre()
{
    QStringList log;
    RecordingObserver ofSource(&log, QStringLiteral("of source"));
    RecordingObserver ofTarget(&log, QStringLiteral("of target"));
    ISubject source;
    source.attach(&ofSource);
    ISubject target;
    target.attach(&ofTarget);

    target = source;
    target.notify();

    QCOMPARE(log, QStringList{QStringLiteral("of target")});
}

QTEST_GUILESS_MAIN(TestISubject)
#include "tst_isubject.moc"

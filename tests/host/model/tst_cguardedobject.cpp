#include "host/model/CGuardedObject.h"

#include <QtTest>

#include <optional>

namespace {

struct Watched : qor::CGuardedObject
{
    int value = 0;
};

using Pointer = qor::CGuardedPtr<Watched>;

} // namespace

class TestCGuardedObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointerLeadsToTheObject();
    void emptyPointerIsNull();
    void pointerBecomesNullWhenTheObjectDies();
    void everyPointerToTheObjectBecomesNull();
    void copyOfAPointerWatchesToo();
    void pointerOutlivedByItsObjectDoesNoHarm();
    void copyOfAnObjectIsWatchedOnItsOwn();
    void assignedObjectKeepsItsPointers();
    void newObjectAtTheSameAddressIsAnother();
};

void TestCGuardedObject::pointerLeadsToTheObject()
{
    Watched object;
    const Pointer pointer(&object);

    QVERIFY(pointer);
    QCOMPARE(pointer.get(), &object);
    QCOMPARE(&*pointer, &object);
    QCOMPARE(&pointer->value, &object.value);
}

void TestCGuardedObject::emptyPointerIsNull()
{
    QVERIFY(!Pointer());
    QVERIFY(!Pointer(nullptr));
    QCOMPARE(Pointer().get(), static_cast<Watched*>(nullptr));
}

void TestCGuardedObject::pointerBecomesNullWhenTheObjectDies()
{
    auto object = std::make_unique<Watched>();
    const Pointer pointer(object.get());
    object.reset();

    QVERIFY(!pointer);
    QCOMPARE(pointer.get(), static_cast<Watched*>(nullptr));
}

void TestCGuardedObject::everyPointerToTheObjectBecomesNull()
{
    auto object = std::make_unique<Watched>();
    const Pointer first(object.get());
    const Pointer second(object.get());
    QCOMPARE(second.get(), object.get());
    object.reset();

    QVERIFY(!first);
    QVERIFY(!second);
}

void TestCGuardedObject::copyOfAPointerWatchesToo()
{
    auto object = std::make_unique<Watched>();
    Pointer copy;
    {
        const Pointer pointer(object.get());
        copy = pointer;
    }
    QCOMPARE(copy.get(), object.get());
    object.reset();

    QVERIFY(!copy);
}

void TestCGuardedObject::pointerOutlivedByItsObjectDoesNoHarm()
{
    Watched object;
    {
        const Pointer shortLived(&object);
    }
    const Pointer later(&object);

    QCOMPARE(later.get(), &object);
}

void TestCGuardedObject::copyOfAnObjectIsWatchedOnItsOwn()
{
    Watched object;
    const Pointer pointer(&object);
    auto copy = std::make_unique<Watched>(object);
    const Pointer copyPointer(copy.get());
    QCOMPARE(copyPointer.get(), copy.get());
    copy.reset();

    QCOMPARE(pointer.get(), &object);
    QVERIFY(!copyPointer);
}

void TestCGuardedObject::assignedObjectKeepsItsPointers()
{
    auto source = std::make_unique<Watched>();
    source->value = 5;
    const Pointer sourcePointer(source.get());
    auto target = std::make_unique<Watched>();
    const Pointer targetPointer(target.get());
    *target = *source;
    source.reset();
    const Pointer laterPointer(target.get());

    QVERIFY(!sourcePointer);
    QCOMPARE(targetPointer.get(), target.get());
    QCOMPARE(laterPointer.get(), target.get());
    QCOMPARE(target->value, 5);
    target.reset();
    QVERIFY(!targetPointer);
}

void TestCGuardedObject::newObjectAtTheSameAddressIsAnother()
{
    std::optional<Watched> place(std::in_place);
    const Pointer pointer(&*place);
    place.emplace();

    QVERIFY(!pointer);
}

QTEST_GUILESS_MAIN(TestCGuardedObject)
#include "tst_cguardedobject.moc"

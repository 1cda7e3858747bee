#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "host/model/CModelElement.h"
#include "host/model/ItemTypes.h"
#include "tests/host/model/RecordingObserver.h"

#include <QBuffer>
#include <QtTest>

namespace {

const QString kName = QStringLiteral("Rp 17");
constexpr int kHeight = 5;
constexpr int kRemark = 9;

void fill(CModelElement& element)
{
    element.setId(42);
    element.setName(kName);
    element.setProperty(kHeight, 123.4567);
    element.setProperty(kRemark, QStringLiteral("цел"));
}

QByteArray save(CModelElement& element)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    element.serialize(archive);
    return bytes;
}

void load(CModelElement& element, QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    CQtArchive archive(&buffer, CQtArchive::Load);
    element.serialize(archive);
}

/// Notes its destruction.
class MortalElement : public CModelElement
{
public:
    MortalElement(QStringList* commonLog, const QString& ownName) : log(commonLog) { setName(ownName); }
    ~MortalElement() override { log->append(getName()); }

private:
    QStringList* log;
};

} // namespace

class TestCModelElement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newElementIsEmpty();
    void standsBehindItsFourInterfaces();
    void keepsPropertiesById();
    void invalidValueRemovesAProperty();
    void observersAreToldOfEveryChange();
    void observersAreNotToldWhenNothingChanges();
    void copyTakesIdNameAndProperties();
    void copyHasNoParentChildrenOrObservers();
    void assignmentTakesIdNameAndProperties();
    void assignmentLeavesParentChildrenAndObservers();
    void assignmentToItselfChangesNothing();
    void childrenStandInTheOrderOfAddition();
    void elementMadeWithAParentIsItsLastChild();
    void nullChildIsIgnored();
    void takenChildStandsAlone();
    void strangerCannotBeTaken();
    void parentDestroysItsChildren();
    void destroyedChildLeavesItsParent();
    void savesIdNameAndPropertiesInTheOrderOfIds();
    void loadsWhatItSaved();
    void loadingTellsTheObserversOnce();
    void dataCutOffAnywhereLeavesTheElementUnchanged();
    void tooManyPropertiesAreRefused();
};

void TestCModelElement::newElementIsEmpty()
{
    const CModelElement element;

    QCOMPARE(element.getId(), LONGID(0));
    QCOMPARE(element.getName(), QString());
    QCOMPARE(element.getType(), kGeneralItemType);
    QCOMPARE(element.getType(), 0x65ED7300);
    QCOMPARE(element.getProperty(kHeight), QVariant());
    QCOMPARE(element.getParent(), static_cast<CModelElement*>(nullptr));
    QVERIFY(element.getChildren().empty());
}

void TestCModelElement::standsBehindItsFourInterfaces()
{
    CModelElement element;
    fill(element);
    const qor::IIdentifiable& identifiable = element;
    Property::IPropertyHolder& holder = element;

    QCOMPARE(identifiable.getId(), LONGID(42));
    QVERIFY(holder.setProperty(kHeight, 7));
    QCOMPARE(element.getProperty(kHeight), QVariant(7));
    QCOMPARE(holder.getProperty(kHeight), QVariant(7));
    QCOMPARE(static_cast<void*>(static_cast<ISubject*>(&element)), static_cast<void*>(&element));

    auto guarded = std::make_unique<CModelElement>();
    const qor::CGuardedPtr<CModelElement> pointer(guarded.get());
    guarded.reset();
    QVERIFY(!pointer);
}

void TestCModelElement::keepsPropertiesById()
{
    CModelElement element;
    QVERIFY(element.setProperty(kHeight, 1.5));
    QVERIFY(element.setProperty(kRemark, QStringLiteral("a")));
    QVERIFY(element.setProperty(kHeight, 2.5));

    QCOMPARE(element.getProperty(kHeight), QVariant(2.5));
    QCOMPARE(element.getProperty(kRemark), QVariant(QStringLiteral("a")));
    QCOMPARE(element.getProperty(kHeight + 1), QVariant());
}

void TestCModelElement::invalidValueRemovesAProperty()
{
    CModelElement element;
    element.setProperty(kHeight, 1.5);
    QVERIFY(element.setProperty(kHeight, QVariant()));
    CModelElement empty;

    QCOMPARE(element.getProperty(kHeight), QVariant());
    QCOMPARE(save(element), save(empty));
}

void TestCModelElement::observersAreToldOfEveryChange()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    CModelElement element;
    element.attach(&observer);

    element.setId(1);
    QCOMPARE(log.size(), 1);
    element.setName(kName);
    QCOMPARE(log.size(), 2);
    element.setProperty(kHeight, 1.5);
    QCOMPARE(log.size(), 3);
    element.setProperty(kHeight, QVariant());
    QCOMPARE(log.size(), 4);
}

void TestCModelElement::observersAreNotToldWhenNothingChanges()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    CModelElement element;
    fill(element);
    element.attach(&observer);

    fill(element);
    QVERIFY(element.setProperty(kHeight + 1, QVariant()));

    QCOMPARE(log, QStringList());
}

void TestCModelElement::copyTakesIdNameAndProperties()
{
    CModelElement element;
    fill(element);
    CModelElement copy(element);

    QCOMPARE(save(copy), save(element));
    copy.setName(QStringLiteral("other"));
    copy.setProperty(kHeight, 0);
    QCOMPARE(element.getName(), kName);
    QCOMPARE(element.getProperty(kHeight), QVariant(123.4567));
}

void TestCModelElement::copyHasNoParentChildrenOrObservers()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    CModelElement parent;
    CModelElement* element = parent.addChild(std::make_unique<CModelElement>());
    element->addChild(std::make_unique<CModelElement>());
    element->attach(&observer);
    CModelElement copy(*element);
    copy.setName(kName);

    QCOMPARE(copy.getParent(), static_cast<CModelElement*>(nullptr));
    QVERIFY(copy.getChildren().empty());
    QCOMPARE(log, QStringList());
    QCOMPARE(parent.getChildren().size(), std::size_t(1));
    QCOMPARE(element->getChildren().size(), std::size_t(1));
}

void TestCModelElement::assignmentTakesIdNameAndProperties()
{
    CModelElement element;
    fill(element);
    CModelElement target;
    target.setProperty(kHeight + 1, 1);
    target = element;

    QCOMPARE(save(target), save(element));
}

void TestCModelElement::assignmentLeavesParentChildrenAndObservers()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    CModelElement parent;
    CModelElement* target = parent.addChild(std::make_unique<CModelElement>());
    CModelElement* child = target->addChild(std::make_unique<CModelElement>());
    target->attach(&observer);
    CModelElement source;
    source.addChild(std::make_unique<CModelElement>())->setName(QStringLiteral("child of source"));
    *target = source;

    QCOMPARE(target->getParent(), &parent);
    QCOMPARE(target->getChildren().size(), std::size_t(1));
    QCOMPARE(target->getChildren().front().get(), child);
    QCOMPARE(log, QStringList{QStringLiteral("told")});
}

void TestCModelElement::assignmentToItselfChangesNothing()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    CModelElement element;
    fill(element);
    const QByteArray before = save(element);
    element.attach(&observer);
    const CModelElement& same = element;
    element = same;

    QCOMPARE(save(element), before);
    QCOMPARE(log, QStringList());
}

void TestCModelElement::childrenStandInTheOrderOfAddition()
{
    CModelElement parent;
    CModelElement* first = parent.addChild(std::make_unique<CModelElement>());
    CModelElement* second = parent.addChild(std::make_unique<CModelElement>());

    QCOMPARE(parent.getChildren().size(), std::size_t(2));
    QCOMPARE(parent.getChildren()[0].get(), first);
    QCOMPARE(parent.getChildren()[1].get(), second);
    QCOMPARE(first->getParent(), &parent);
}

void TestCModelElement::elementMadeWithAParentIsItsLastChild()
{
    CModelElement parent;
    parent.addChild(std::make_unique<CModelElement>());
    auto* child = new CModelElement(&parent);

    QCOMPARE(child->getParent(), &parent);
    QCOMPARE(parent.getChildren().size(), std::size_t(2));
    QCOMPARE(parent.getChildren().back().get(), child);
}

void TestCModelElement::nullChildIsIgnored()
{
    CModelElement parent;

    QCOMPARE(parent.addChild(nullptr), static_cast<CModelElement*>(nullptr));
    QVERIFY(parent.getChildren().empty());
}

void TestCModelElement::takenChildStandsAlone()
{
    CModelElement parent;
    CModelElement* first = parent.addChild(std::make_unique<CModelElement>());
    CModelElement* second = parent.addChild(std::make_unique<CModelElement>());
    CModelElement* third = parent.addChild(std::make_unique<CModelElement>());
    const std::unique_ptr<CModelElement> taken = parent.takeChild(second);

    QCOMPARE(taken.get(), second);
    QCOMPARE(taken->getParent(), static_cast<CModelElement*>(nullptr));
    QCOMPARE(parent.getChildren().size(), std::size_t(2));
    QCOMPARE(parent.getChildren()[0].get(), first);
    QCOMPARE(parent.getChildren()[1].get(), third);
}

void TestCModelElement::strangerCannotBeTaken()
{
    CModelElement parent;
    CModelElement* child = parent.addChild(std::make_unique<CModelElement>());
    CModelElement* grandchild = child->addChild(std::make_unique<CModelElement>());

    QVERIFY(parent.takeChild(grandchild) == nullptr);
    QVERIFY(parent.takeChild(nullptr) == nullptr);
    QCOMPARE(grandchild->getParent(), child);
}

void TestCModelElement::parentDestroysItsChildren()
{
    QStringList log;
    auto parent = std::make_unique<CModelElement>();
    CModelElement* child = parent->addChild(std::make_unique<MortalElement>(&log, QStringLiteral("child")));
    child->addChild(std::make_unique<MortalElement>(&log, QStringLiteral("grandchild")));
    parent.reset();

    QCOMPARE(log, QStringList({QStringLiteral("child"), QStringLiteral("grandchild")}));
}

void TestCModelElement::destroyedChildLeavesItsParent()
{
    CModelElement parent;
    const CModelElement* first = new CModelElement(&parent);
    CModelElement* second = parent.addChild(std::make_unique<CModelElement>());
    delete first;

    QCOMPARE(parent.getChildren().size(), std::size_t(1));
    QCOMPARE(parent.getChildren().front().get(), second);
}

void TestCModelElement::savesIdNameAndPropertiesInTheOrderOfIds()
{
    CModelElement element;
    element.setId(0x0102030405060708);
    element.setName(QStringLiteral("AЯ"));
    element.setProperty(kRemark, true);
    element.setProperty(kHeight, 7);

    QCOMPARE(save(element).toHex(), QByteArrayLiteral("0102030405060708" // id
                                                      "0000000400"
                                                      "41042f"             // name, UTF-16
                                                      "00000002"           // number of properties
                                                      "00000005"           // the first one's id
                                                      "000000020000000007" // an int
                                                      "00000009"           // the second one's id
                                                      "000000010001"));    // a bool
}

void TestCModelElement::loadsWhatItSaved()
{
    CModelElement element;
    fill(element);
    element.setProperty(100, QByteArrayLiteral("\0\1"));
    CModelElement loaded;
    loaded.setProperty(kHeight + 1, 1);
    load(loaded, save(element));

    QCOMPARE(loaded.getId(), LONGID(42));
    QCOMPARE(loaded.getName(), kName);
    QCOMPARE(loaded.getProperty(kHeight), QVariant(123.4567));
    QCOMPARE(loaded.getProperty(kHeight + 1), QVariant());
    QCOMPARE(loaded.getProperty(kRemark), QVariant(QStringLiteral("цел")));
    QCOMPARE(loaded.getProperty(100), QVariant(QByteArrayLiteral("\0\1")));
}

void TestCModelElement::loadingTellsTheObserversOnce()
{
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    CModelElement element;
    fill(element);
    CModelElement loaded;
    loaded.attach(&observer);
    load(loaded, save(element));

    QCOMPARE(log, QStringList{QStringLiteral("told")});
}

void TestCModelElement::dataCutOffAnywhereLeavesTheElementUnchanged()
{
    CModelElement element;
    fill(element);
    const QByteArray whole = save(element);
    CModelElement target;
    target.setId(7);
    target.setName(QStringLiteral("unchanged"));
    const QByteArray before = save(target);
    QStringList log;
    RecordingObserver observer(&log, QStringLiteral("told"));
    target.attach(&observer);

    for (int length = 0; length < whole.size(); ++length) {
        int code = 0;
        try {
            load(target, whole.left(length));
        } catch (const qor::CFileException& e) {
            code = e.getCode();
        }
        QCOMPARE(code, static_cast<int>(qor::CFileException::CorruptFile));
        QCOMPARE(save(target), before);
    }
    QCOMPARE(log, QStringList());
}

void TestCModelElement::tooManyPropertiesAreRefused()
{
    CModelElement element;
    for (int propertyId = 0; propertyId < 10000; ++propertyId)
        element.setProperty(propertyId, propertyId);
    CModelElement target;
    load(target, save(element));
    QCOMPARE(target.getProperty(9999), QVariant(9999));

    element.setProperty(10000, 10000);
    target = CModelElement();
    int code = 0;
    std::wstring description = L"?";
    try {
        load(target, save(element));
    } catch (const qor::CFileException& e) {
        code = e.getCode();
        description = e.getDescription();
    }
    QCOMPARE(code, 1);
    QCOMPARE(description, std::wstring());
    QCOMPARE(target.getProperty(0), QVariant());
}

QTEST_GUILESS_MAIN(TestCModelElement)
#include "tst_cmodelelement.moc"

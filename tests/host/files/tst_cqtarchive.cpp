#include "host/files/CQtArchive.h"
#include "tests/host/files/FileFailure.h"

#include <QBuffer>
#include <QDateTime>
#include <QtTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(std::vector<int>)

using qor::CFileException;

namespace {

const QString kCorrupt = QStringLiteral("Файл повреждён: данные обрываются раньше времени или недопустимы.");

/// Every type that an archive takes.
struct Record
{
    quint32 count = 0;
    qint32 number = 0;
    LONGID id = 0;
    double height = 0;
    bool isFixed = false;
    QString name;
    QByteArray bytes;
    QVariant value;
};

const Record kRecord = {4000000000U,
                        -7,
                        -9000000000000000001LL,
                        -0.1,
                        true,
                        QStringLiteral("Рп \U0001F4D0"),
                        QByteArrayLiteral("\0\xFF"),
                        QVariant(QStringLiteral("x"))};

CQtArchive& operator<<(CQtArchive& archive, const Record& record)
{
    return archive << record.count << record.number << record.id << record.height << record.isFixed
                   << record.name << record.bytes << record.value;
}

CQtArchive& operator>>(CQtArchive& archive, Record& record)
{
    return archive >> record.count >> record.number >> record.id >> record.height >> record.isFixed >>
           record.name >> record.bytes >> record.value;
}

template<class T>
QByteArray save(const T& value)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    archive << value;
    return bytes;
}

template<class T>
T load(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    CQtArchive archive(&buffer, CQtArchive::Load);
    T value{};
    archive >> value;
    return value;
}

template<class T>
FileFailure getLoadFailure(const QByteArray& bytes)
{
    return getFailure([&] { load<T>(bytes); });
}

template<class T>
T savedAndLoaded(const T& value)
{
    return load<T>(save(value));
}

/// Takes a number of bytes, then fails.
class FullDevice : public QIODevice
{
public:
    explicit FullDevice(qint64 bytes) : free(bytes) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }

    qint64 writeData(const char* /*data*/, qint64 size) override
    {
        if (size > free) {
            setErrorString(QStringLiteral("no space"));
            return -1;
        }
        free -= size;
        return size;
    }

private:
    qint64 free;
};

} // namespace

class TestCQtArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsDirection();
    void everyTypeHasItsBytes_data();
    void everyTypeHasItsBytes();
    void integersComeBack();
    void floatingPointNumbersComeBack();
    void textsComeBack();
    void bytesComeBack();
    void valuesOfDifferentTypesComeBackInOrder();
    void dataCutOffAnywhereIsToldOf();
    void closedDeviceIsToldOf();
    void lengthBeyondTheDataIsToldOf();
    void fullDeviceIsToldOf();
    void plainVariantsComeBack_data();
    void plainVariantsComeBack();
    void otherVariantsAreNotSaved();
    void otherVariantsAreNotLoaded();
};

void TestCQtArchive::knowsItsDirection()
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);

    QVERIFY(CQtArchive(&buffer, CQtArchive::Save).isSaving());
    QVERIFY(!CQtArchive(&buffer, CQtArchive::Load).isSaving());
}

void TestCQtArchive::everyTypeHasItsBytes_data()
{
    QTest::addColumn<QByteArray>("saved");
    QTest::addColumn<QByteArray>("hex");
    QTest::newRow("unsigned") << save(quint32(0x01020304)) << QByteArrayLiteral("01020304");
    QTest::newRow("int") << save(qint32(-2)) << QByteArrayLiteral("fffffffe");
    QTest::newRow("id") << save(LONGID(0x0102030405060708)) << QByteArrayLiteral("0102030405060708");
    QTest::newRow("double") << save(1.5) << QByteArrayLiteral("3ff8000000000000");
    QTest::newRow("true") << save(true) << QByteArrayLiteral("01");
    QTest::newRow("false") << save(false) << QByteArrayLiteral("00");
    QTest::newRow("text") << save(QStringLiteral("AЯ")) << QByteArrayLiteral("000000040041042f");
    QTest::newRow("bytes") << save(QByteArrayLiteral("A\0")) << QByteArrayLiteral("000000024100");
    QTest::newRow("variant") << save(QVariant(7)) << QByteArrayLiteral("000000020000000007");
}

void TestCQtArchive::everyTypeHasItsBytes()
{
    QFETCH(const QByteArray, saved);
    QFETCH(const QByteArray, hex);

    QCOMPARE(saved.toHex(), hex);
}

void TestCQtArchive::integersComeBack()
{
    for (const quint32 value : {0U, 1U, std::numeric_limits<quint32>::max()})
        QCOMPARE(savedAndLoaded(value), value);
    for (const qint32 value : {std::numeric_limits<qint32>::min(), -1, 0, std::numeric_limits<qint32>::max()})
        QCOMPARE(savedAndLoaded(value), value);
    for (const LONGID value :
         {std::numeric_limits<LONGID>::min(), LONGID(0), std::numeric_limits<LONGID>::max()})
        QCOMPARE(savedAndLoaded(value), value);
    QCOMPARE(savedAndLoaded(true), true);
    QCOMPARE(savedAndLoaded(false), false);
}

void TestCQtArchive::floatingPointNumbersComeBack()
{
    for (const double value : {0.1, -123.4567890123456, std::numeric_limits<double>::denorm_min(),
                               std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity()})
        QVERIFY(savedAndLoaded(value) == value);
    QVERIFY(std::signbit(savedAndLoaded(-0.0)));
    QVERIFY(std::isnan(savedAndLoaded(std::numeric_limits<double>::quiet_NaN())));
}

void TestCQtArchive::textsComeBack()
{
    for (const QString& text : {QStringLiteral("Рп 17 \U0001F4D0"), QString(QChar(0)), QString(QChar(0xD800)),
                                QString(1000000, QLatin1Char('x'))})
        QCOMPARE(savedAndLoaded(text), text);
    QVERIFY(savedAndLoaded(QString()).isNull());
    QVERIFY(savedAndLoaded(QStringLiteral("")).isEmpty());
}

void TestCQtArchive::bytesComeBack()
{
    for (const QByteArray& bytes : {QByteArrayLiteral("\0\xFF"), QByteArray(3000000, 'x')})
        QCOMPARE(savedAndLoaded(bytes), bytes);
    QVERIFY(savedAndLoaded(QByteArray()).isNull());
}

void TestCQtArchive::valuesOfDifferentTypesComeBackInOrder()
{
    const Record loaded = savedAndLoaded(kRecord);

    QCOMPARE(loaded.count, kRecord.count);
    QCOMPARE(loaded.number, kRecord.number);
    QCOMPARE(loaded.id, kRecord.id);
    QCOMPARE(loaded.height, kRecord.height);
    QCOMPARE(loaded.isFixed, kRecord.isFixed);
    QCOMPARE(loaded.name, kRecord.name);
    QCOMPARE(loaded.bytes, kRecord.bytes);
    QCOMPARE(loaded.value, kRecord.value);
}

void TestCQtArchive::dataCutOffAnywhereIsToldOf()
{
    const QByteArray whole = save(kRecord);
    QCOMPARE(getLoadFailure<Record>(whole).code, 0);
    for (int length = 0; length < whole.size(); ++length) {
        const FileFailure failure = getLoadFailure<Record>(whole.left(length));
        QCOMPARE(failure.code, static_cast<int>(CFileException::CorruptFile));
        QCOMPARE(failure.description, kCorrupt);
    }
}

void TestCQtArchive::closedDeviceIsToldOf()
{
    QBuffer closed;
    CQtArchive archive(&closed, CQtArchive::Load);
    quint32 number = 0;
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::read (QBuffer): device not open");

    QCOMPARE(getFailure([&] { archive >> number; }).code, static_cast<int>(CFileException::CorruptFile));
}

void TestCQtArchive::lengthBeyondTheDataIsToldOf()
{
    const QByteArray hugeLength = QByteArray::fromHex("7ffffff0") + QByteArrayLiteral("abcd");

    QCOMPARE(getLoadFailure<QString>(hugeLength).description, kCorrupt);
    QCOMPARE(getLoadFailure<QByteArray>(hugeLength).description, kCorrupt);
    QCOMPARE(getLoadFailure<QString>(QByteArray::fromHex("00000003414243")).description, kCorrupt);
}

void TestCQtArchive::fullDeviceIsToldOf()
{
    const int wholeSize = save(kRecord).size();
    for (int size = 0; size < wholeSize; ++size) {
        FullDevice device(size);
        CQtArchive archive(&device, CQtArchive::Save);
        const FileFailure failure = getFailure([&] { archive << kRecord; });
        QCOMPARE(failure.code, static_cast<int>(CFileException::CannotWrite));
        QCOMPARE(failure.description, QStringLiteral("Не удалось записать данные: no space."));
    }
    FullDevice device(wholeSize);
    CQtArchive archive(&device, CQtArchive::Save);
    QCOMPARE(getFailure([&] { archive << kRecord; }).code, 0);
}

void TestCQtArchive::plainVariantsComeBack_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("nothing") << QVariant();
    QTest::newRow("bool") << QVariant(true);
    QTest::newRow("int") << QVariant(-5);
    QTest::newRow("unsigned") << QVariant(4000000000U);
    QTest::newRow("long") << QVariant(qlonglong(-9000000000000000001LL));
    QTest::newRow("unsigned long") << QVariant(qulonglong(18000000000000000000ULL));
    QTest::newRow("double") << QVariant(0.1);
    QTest::newRow("text") << QVariant(QStringLiteral("текст"));
    QTest::newRow("bytes") << QVariant(QByteArrayLiteral("\0\1"));
    QTest::newRow("date") << QVariant(QDate(2024, 2, 29));
    QTest::newRow("time") << QVariant(QTime(23, 59, 59, 999));
    QTest::newRow("date and time") << QVariant(QDateTime(QDate(2024, 2, 29), QTime(1, 2), Qt::UTC));
}

void TestCQtArchive::plainVariantsComeBack()
{
    QFETCH(const QVariant, value);
    const QVariant loaded = savedAndLoaded(value);

    QCOMPARE(loaded.userType(), value.userType());
    QCOMPARE(loaded, value);
}

void TestCQtArchive::otherVariantsAreNotSaved()
{
    const FileFailure list = getFailure([] { save(QVariant(QVariantList{1})); });
    const FileFailure custom = getFailure([] { save(QVariant::fromValue(std::vector<int>{1})); });

    QCOMPARE(list.code, static_cast<int>(CFileException::CannotWrite));
    QCOMPARE(list.description,
             QStringLiteral("Не удалось записать данные: значения типа «QVariantList» не сохраняются."));
    QCOMPARE(custom.description,
             QStringLiteral("Не удалось записать данные: значения типа «std::vector<int>» не сохраняются."));
}

void TestCQtArchive::otherVariantsAreNotLoaded()
{
    QByteArray nested;
    for (int depth = 0; depth < 1000000; ++depth)
        nested += QByteArray::fromHex("000000090000000001"); // a list of one variant
    const QByteArray manyTexts = QByteArray::fromHex("0000000b007fffffff");
    const QByteArray unknownType = QByteArray::fromHex("0000040000");

    for (const QByteArray& bytes : {nested, manyTexts, unknownType}) {
        const FileFailure failure = getLoadFailure<QVariant>(bytes);
        QCOMPARE(failure.code, static_cast<int>(CFileException::CorruptFile));
        QCOMPARE(failure.description, kCorrupt);
    }
}

QTEST_APPLESS_MAIN(TestCQtArchive)
#include "tst_cqtarchive.moc"

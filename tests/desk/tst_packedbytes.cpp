#include "apps/desk/document/PackedBytes.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTest>

using namespace orvel::desk;

/// Bytes that are kept in compressed form.
class TestPackedBytes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesBackWhatItTook_data();
    void givesBackWhatItTook();
    void knowsItsContent_data();
    void knowsItsContent();
    void takesLittleRoomForLinesOfAProtocol();
    void packsWhatOthersRead();
    void readsOnFromWhereOthersStopped();
};

namespace {

QByteArray makeRandom(int size)
{
    QRandomGenerator random(20261122);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

QByteArray makeLines(int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += "<li>Point " + QByteArray::number(i * 7919 % count) + ": H = 100.123 m</li>\n";
    return bytes;
}

void addBytes()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("one") << QByteArray("x");
    QTest::newRow("zeros") << QByteArray(1000000, '\0');
    QTest::newRow("a piece") << makeRandom(1 << 18);
    QTest::newRow("a piece and one byte") << makeRandom((1 << 18) + 1);
    QTest::newRow("several pieces") << makeRandom(2000003);
    QTest::newRow("lines") << makeLines(50000);
}

bool isContentOf(const PackedBytes& packed, const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return packed.isContentOf(buffer);
}

} // namespace

void TestPackedBytes::givesBackWhatItTook_data()
{
    addBytes();
}

void TestPackedBytes::givesBackWhatItTook()
{
    QFETCH(QByteArray, bytes);
    const PackedBytes packed(bytes);
    QCOMPARE(packed.isEmpty(), bytes.isEmpty());
    QCOMPARE(packed.unpack(), bytes);
}

void TestPackedBytes::knowsItsContent_data()
{
    addBytes();
}

void TestPackedBytes::knowsItsContent()
{
    QFETCH(QByteArray, bytes);
    const PackedBytes packed(bytes);
    QVERIFY(isContentOf(packed, bytes));
    QVERIFY(!isContentOf(packed, bytes + 'x'));
    if (bytes.isEmpty())
        return;
    QVERIFY(!isContentOf(packed, bytes.chopped(1)));
    QByteArray other = bytes;
    other[other.size() - 1] = static_cast<char>(other.back() + 1);
    QVERIFY(!isContentOf(packed, other));
}

void TestPackedBytes::takesLittleRoomForLinesOfAProtocol()
{
    const QByteArray lines = makeLines(100000);
    QVERIFY(PackedBytes(lines).getPackedSize() < lines.size() / 5);
}

void TestPackedBytes::packsWhatOthersRead()
{
    const QByteArray lines = makeLines(1000);
    QBuffer buffer;
    buffer.setData(lines);
    buffer.open(QIODevice::ReadOnly);
    PackingReader reader(buffer);
    QCOMPARE(reader.readAll(), lines);
    QCOMPARE(reader.finish().unpack(), lines);
}

void TestPackedBytes::readsOnFromWhereOthersStopped()
{
    const QByteArray lines = makeLines(100000);
    QBuffer buffer;
    buffer.setData(lines);
    buffer.open(QIODevice::ReadOnly);
    PackingReader reader(buffer);
    QCOMPARE(reader.read(1000), lines.left(1000));
    QCOMPARE(reader.finish().unpack(), lines);
}

QTEST_GUILESS_MAIN(TestPackedBytes)
#include "tst_packedbytes.moc"

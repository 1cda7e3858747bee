#include "Orvel/store/COrvel.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/StoredProject.h"
#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "levelling/GkfReader.h"
#include "tests/desk/DeskFixture.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <functional>
#include <limits>

using namespace orvel::desk;
using namespace orvel::test;

Q_DECLARE_METATYPE(std::function<void(Document::Content&)>)

/// The project's network as items.
class TestDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void idsAreUniqueOverPointsAndSections();
    void noIdIsPartOfAnother();
    void bothKindsOfItemAreFoundByLinks();
    void repeatedSectionsGetNumbers();
    void sameNamesKeepTheirIds();
    void idsAreNeverGivenAgain();
    void snapshotIsTheNetwork();
    void adjustmentGivesResults();
    void failedAdjustmentLeavesNone();
    void changedContentIsModified();
    void inconsistentContentIsRefused_data();
    void inconsistentContentIsRefused();
    void contentNobodyCanComputeWithIsRefused_data();
    void contentNobodyCanComputeWithIsRefused();
    void copiedContentKeepsEverything();
    void fieldDataComesBackFromTheProjectFile();
    void tacheometryComesBackFromTheProjectFile();
    void earlierProjectFilesAreRead();
    void projectWithTooManyItemsIsRefused();

private:
    static levelling::Network readNetwork(const char* sample);

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<Document> document;
};

void TestDocument::init()
{
    qRegisterMetaType<LONGID>("LONGID");
    desk = std::make_unique<DeskFixture>();
    document = std::make_unique<Document>(desk->plugins, QStringLiteral("Проект"));
    document->setNetwork(readNetwork("blunder.gkf"));
}

void TestDocument::cleanup()
{
    document.reset();
    desk.reset();
}

levelling::Network TestDocument::readNetwork(const char* sample)
{
    return levelling::GkfReader::readFile(samplePath(QString::fromLatin1(sample))).network;
}

void TestDocument::idsAreUniqueOverPointsAndSections()
{
    QSet<LONGID> ids;
    for (const LevellingPoint* point : document->getPoints())
        ids.insert(point->getId());
    for (const LevellingSection* section : document->getSections())
        ids.insert(section->getId());
    QCOMPARE(ids.size(), 12 + 19);
    QVERIFY(!ids.contains(0));
}

void TestDocument::noIdIsPartOfAnother()
{
    for (const LevellingSection* section : document->getSections())
        QCOMPARE(QString::number(section->getId()).size(), 7);
    QCOMPARE(QString::number(document->getPoints()[0]->getId()).size(), 7);
}

void TestDocument::bothKindsOfItemAreFoundByLinks()
{
    const COrvel& protocol = document->getProtocol();
    const LevellingPoint* point = document->getPoints()[3];
    const LevellingSection* section = document->getSections()[9];
    QCOMPARE(QString::fromStdWString(protocol.GetItemLink(point->getId(), L"x")),
             QStringLiteral("<a href=\"orvel://locate-item?type=LevellingPoint&id=%1&project="
                            "%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82\">x</a>")
                 .replace(QStringLiteral("%1"), QString::number(point->getId())));
    QVERIFY(QString::fromStdWString(protocol.GetItemLink(section->getId(), L"x"))
                .contains(QStringLiteral("type=LevellingSection&id=%1&").arg(section->getId())));
    QCOMPARE(document->getModel().findItemAnywhere(point->getId())->getType(), kPointItemType);
    QCOMPARE(int(document->getModel().getTervoObject()->findItem(section->getId())->getType()),
             kSectionItemType);
    QVERIFY(!document->getModel().findItemAnywhere(section->getId()));
}

void TestDocument::repeatedSectionsGetNumbers()
{
    QCOMPARE(document->getSections()[10]->getName(), QStringLiteral("М5 – М3"));
    QCOMPARE(document->getSections()[11]->getName(), QStringLiteral("М5 – М3 (2)"));
    QCOMPARE(document->getSections()[4]->getName(), QStringLiteral("М3 – М1"));
}

void TestDocument::sameNamesKeepTheirIds()
{
    const LONGID point = document->getPoints()[4]->getId();
    const LONGID repeated = document->getSections()[11]->getId();
    levelling::Network network = readNetwork("blunder.gkf");
    network.sections.erase(network.sections.begin());
    document->setNetwork(network);
    QCOMPARE(document->getPoints()[4]->getId(), point);
    QCOMPARE(document->getSections()[10]->getId(), repeated);
    QCOMPARE(document->getSections()[10]->getName(), QStringLiteral("М5 – М3 (2)"));
}

void TestDocument::idsAreNeverGivenAgain()
{
    QSet<LONGID> ids;
    for (const LevellingPoint* point : document->getPoints())
        ids.insert(point->getId());
    document->setNetwork(readNetwork("one-benchmark.gkf"));
    for (const LevellingPoint* point : document->getPoints())
        QVERIFY(!ids.contains(point->getId()));
}

void TestDocument::snapshotIsTheNetwork()
{
    const NetworkSnapshot snapshot = document->getSnapshot();
    const levelling::Network network = readNetwork("blunder.gkf");
    QCOMPARE(snapshot.network.points.size(), network.points.size());
    QCOMPARE(snapshot.network.points[1].id, QStringLiteral("Рп102"));
    QCOMPARE(*snapshot.network.points[1].height, 151.846);
    QVERIFY(snapshot.network.points[1].fixed);
    QCOMPARE(snapshot.network.sections[11].difference, 0.7385);
    QCOMPARE(snapshot.network.sections[11].line, network.sections[11].line);
    QCOMPARE(snapshot.network.parameters.sigmaApriori, 3.0);
    QCOMPARE(snapshot.pointIds[1], document->getPoints()[1]->getId());
    QCOMPARE(snapshot.sectionIds[11], document->getSections()[11]->getId());
    QCOMPARE(snapshot.sectionNames[11], QStringLiteral("М5 – М3 (2)"));
}

void TestDocument::adjustmentGivesResults()
{
    const QSignalSpy changes(&document->getModel(), &CProjectModel::itemChanged);
    QVERIFY(!document->hasResults());
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    QVERIFY(document->hasResults());
    QCOMPARE(changes.size(), 12);
    QVERIFY(document->getPoints()[2]->getResult());
    QVERIFY(!document->getPoints()[8]->getResult()); // Вр1 hangs in the air
    QVERIFY(document->getSections()[9]->getResult()->residual < -39.0);
}

void TestDocument::failedAdjustmentLeavesNone()
{
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    levelling::Adjustment failed;
    failed.status = levelling::AdjustmentStatus::Singular;
    document->setAdjustment(failed);
    QVERIFY(!document->hasResults());
}

void TestDocument::changedContentIsModified()
{
    const QSignalSpy changes(document.get(), &Document::modifiedChanged);
    QVERIFY(document->isModified());
    document->setModified(false);
    document->setLevellingClass(LevellingClass::IV);
    QVERIFY(!document->isModified());
    document->setLevellingClass(LevellingClass::II);
    QVERIFY(document->isModified());
    document->setModified(false);
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    QVERIFY(document->isModified());
    QCOMPARE(changes.size(), 4);
}

void TestDocument::inconsistentContentIsRefused_data()
{
    QTest::addColumn<LONGID>("secondId");
    QTest::addColumn<LONGID>("nextId");
    QTest::addColumn<int>("end");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("consistent") << LONGID(1000002) << LONGID(1000004) << 1 << true;
    QTest::newRow("same ids") << LONGID(1000001) << LONGID(1000004) << 1 << false;
    QTest::newRow("id of no item") << LONGID(0) << LONGID(1000004) << 1 << false;
    QTest::newRow("id still to be given") << LONGID(1000002) << LONGID(1000003) << 1 << false;
    QTest::newRow("no such point") << LONGID(1000002) << LONGID(1000004) << 2 << false;
    QTest::newRow("negative point") << LONGID(1000002) << LONGID(1000004) << -1 << false;
}

void TestDocument::inconsistentContentIsRefused()
{
    QFETCH(LONGID, secondId);
    QFETCH(LONGID, nextId);
    QFETCH(int, end);
    QFETCH(bool, isTaken);
    Document::Content content;
    content.points.push_back(std::make_unique<LevellingPoint>(1000001, levelling::Point()));
    content.points.push_back(std::make_unique<LevellingPoint>(secondId, levelling::Point()));
    levelling::Section section;
    section.to = end;
    section.sigma = 1.0;
    content.sections.push_back(
        std::make_unique<LevellingSection>(1000003, section, QStringLiteral("section")));
    content.nextId = nextId;
    QCOMPARE(document->setContent(std::move(content)), isTaken);
    QCOMPARE(int(document->getPoints().size()), isTaken ? 2 : 12);
}

void TestDocument::contentNobodyCanComputeWithIsRefused_data()
{
    using Change = std::function<void(Document::Content&)>;
    const auto withPoint = [](const std::function<void(levelling::Point&)>& change) -> Change {
        return [change](Document::Content& content) {
            levelling::Point point = content.points[0]->getPoint();
            change(point);
            content.points[0] = std::make_unique<LevellingPoint>(1000001, point);
        };
    };
    const auto withSection = [](const std::function<void(levelling::Section&)>& change) -> Change {
        return [change](Document::Content& content) {
            levelling::Section section = content.sections[0]->getSection();
            change(section);
            content.sections[0] = std::make_unique<LevellingSection>(1000003, section, QString());
        };
    };
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();

    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("isTaken");
    const auto row = [](const char* name, const Change& change, bool isTaken = false) {
        QTest::newRow(name) << change << isTaken;
    };
    row(
        "nothing", [](Document::Content&) {}, true);
    row("benchmark without height", withPoint([](levelling::Point& p) { p.fixed = true; }));
    row("height that is no number", withPoint([=](levelling::Point& p) { p.height = nan; }));
    row("ends are one point", withSection([](levelling::Section& s) { s.to = s.from; }));
    row("endless difference", withSection([=](levelling::Section& s) { s.difference = -infinity; }));
    row("sigma zero", withSection([](levelling::Section& s) { s.sigma = 0.0; }));
    row("sigma is no number", withSection([=](levelling::Section& s) { s.sigma = nan; }));
    row("negative length", withSection([](levelling::Section& s) { s.distance = -1.0; }));
    row("endless standard deviation", withSection([=](levelling::Section& s) { s.stdev = infinity; }));
    row("no stations", withSection([](levelling::Section& s) { s.stations = 0; }));
    row("readings differ endlessly", withSection([=](levelling::Section& s) { s.readingDifference = nan; }));
    row("section of no file", withSection([](levelling::Section& s) { s.source = 1; }));
    row(
        "section of a second file",
        [=](Document::Content& c) {
            withSection([](levelling::Section& s) { s.source = 1; })(c);
            c.sources = QStringList{QStringLiteral("a.gsi"), QStringLiteral("b.gsi")};
        },
        true);
    row("x without y", withPoint([](levelling::Point& p) { p.x = 1.0; }));
    row("y is no number", withPoint([=](levelling::Point& p) {
            p.x = 1.0;
            p.y = nan;
        }));
    const auto withSight = [](const std::function<void(tacheometry::Setup&)>& change) {
        return [change](Document::Content& c) {
            tacheometry::FieldBook book;
            book.setups.resize(1);
            book.setups[0].sights.resize(1);
            change(book.setups[0]);
            c.fieldBook = std::make_shared<const tacheometry::FieldBook>(book);
        };
    };
    row("field book", withSight([](tacheometry::Setup&) {}), true);
    row("direction is no number", withSight([=](tacheometry::Setup& s) { s.sights[0].direction = nan; }));
    row("distance zero", withSight([](tacheometry::Setup& s) { s.sights[0].slopeDistance = 0.0; }));
    row("instrument height endless",
        withSight([=](tacheometry::Setup& s) { s.instrumentHeight = infinity; }));
    row("scale zero", withSight([](tacheometry::Setup& s) { s.scale = 0.0; }));
    row("set-up of no file", withSight([](tacheometry::Setup& s) { s.source = 7; }));
    row("point of no file", withPoint([](levelling::Point& p) { p.source = -1; }));
    row("sigma-apr zero", [](Document::Content& c) { c.parameters.sigmaApriori = 0.0; });
    row("tol-abs is no number", [=](Document::Content& c) { c.parameters.toleranceAbsolute = nan; });
    row("no ids left", [](Document::Content& c) { c.nextId = std::numeric_limits<LONGID>::max(); });
}

void TestDocument::contentNobodyCanComputeWithIsRefused()
{
    QFETCH(std::function<void(Document::Content&)>, change);
    QFETCH(bool, isTaken);
    Document::Content content;
    content.points.push_back(std::make_unique<LevellingPoint>(1000001, levelling::Point()));
    content.points.push_back(std::make_unique<LevellingPoint>(1000002, levelling::Point()));
    levelling::Section section;
    section.to = 1;
    section.sigma = 1.0;
    content.sections.push_back(std::make_unique<LevellingSection>(1000003, section, QString()));
    content.nextId = 1000004;
    change(content);
    QCOMPARE(document->setContent(std::move(content)), isTaken);
    QCOMPARE(int(document->getPoints().size()), isTaken ? 2 : 12);
}

void TestDocument::copiedContentKeepsEverything()
{
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    document->setLevellingClass(LevellingClass::III);
    Document::Content content = document->copyContent();
    const LONGID id = document->getPoints()[4]->getId();
    const double height = document->getPoints()[4]->getResult()->height;
    document->setNetwork(readNetwork("one-benchmark.gkf"));
    QVERIFY(document->setContent(std::move(content)));
    QCOMPARE(document->getPoints()[4]->getId(), id);
    QCOMPARE(document->getPoints()[4]->getResult()->height, height);
    QCOMPARE(document->getLevellingClass(), LevellingClass::III);
    QCOMPARE(int(document->getSections().size()), 19);
}

namespace {

/// A project of two points and a section as field files give them.
StoredProject makeFieldProject()
{
    StoredProject project;
    project.name = QStringLiteral("Линия");
    Document::Content& content = project.content;
    content.parameters.confidence = 0.99;
    content.sources = QStringList{QStringLiteral("a.gsi"), QStringLiteral("b.dat")};
    levelling::Point point;
    point.id = QStringLiteral("A");
    content.points.push_back(std::make_unique<LevellingPoint>(1000001, point));
    point.id = QStringLiteral("B");
    point.source = 1;
    content.points.push_back(std::make_unique<LevellingPoint>(1000002, point));
    levelling::Section section;
    section.to = 1;
    section.sigma = 1.0;
    section.stations = 12;
    section.readingDifference = -0.25;
    section.date = QStringLiteral("01.05.2026");
    section.note = QStringLiteral("ветер");
    section.source = 1;
    section.line = 40;
    content.sections.push_back(std::make_unique<LevellingSection>(1000003, section, QStringLiteral("A – B")));
    content.nextId = 1000004;
    return project;
}

/// Writes the project as a file, gives its content to the change, and reads that as a file of the version.
StoredProject rewrite(const StoredProject& project, quint32 version,
                      const std::function<void(QByteArray&)>& change)
{
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    storedproject::write(project, file);
    file.seek(0);
    CQtArchive archive(&file, CQtArchive::Load);
    quint32 signature = 0;
    quint32 writtenVersion = 0;
    QByteArray content;
    archive >> signature >> writtenVersion >> content;
    change(content);
    QBuffer changed;
    changed.open(QIODevice::ReadWrite);
    CQtArchive(&changed, CQtArchive::Save)
        << signature << version << content << QCryptographicHash::hash(content, QCryptographicHash::Sha256);
    changed.seek(0);
    return storedproject::read(changed);
}

} // namespace

void TestDocument::fieldDataComesBackFromTheProjectFile()
{
    QVERIFY(document->setContent(rewrite(makeFieldProject(), 3, [](QByteArray&) {}).content));
    const levelling::Network& network = document->getSnapshot().network;
    QCOMPARE(network.sources, QStringList({QStringLiteral("a.gsi"), QStringLiteral("b.dat")}));
    QCOMPARE(network.points[0].source, 0);
    QCOMPARE(network.points[1].source, 1);
    QCOMPARE(*network.sections[0].stations, 12);
    QCOMPARE(*network.sections[0].readingDifference, -0.25);
    QCOMPARE(network.sections[0].date, QStringLiteral("01.05.2026"));
    QCOMPARE(network.sections[0].note, QStringLiteral("ветер"));
    QCOMPARE(network.sections[0].source, 1);
    QCOMPARE(document->copyContent().sources, network.sources);
}

void TestDocument::tacheometryComesBackFromTheProjectFile()
{
    StoredProject project = makeFieldProject();
    levelling::Point station;
    station.id = QStringLiteral("S");
    station.x = 100.5;
    station.y = -20.25;
    station.surveyed = true;
    project.content.points.push_back(std::make_unique<LevellingPoint>(1000004, station));
    project.content.points.back()->setPolarResult({1.0, 2.0, 3.0});
    project.content.nextId = 1000005;
    tacheometry::Setup setup;
    setup.station = QStringLiteral("S");
    setup.instrumentHeight = 1.5;
    setup.orientation = 0.25;
    setup.scale = 1.0001;
    setup.source = 1;
    setup.line = 7;
    tacheometry::Sight sight;
    sight.point = QStringLiteral("101");
    sight.code = QStringLiteral("14");
    sight.direction = 1.25;
    sight.zenith = 1.5;
    sight.slopeDistance = 24.622;
    sight.targetHeight = 0.1;
    sight.beyond = 0.05;
    sight.right = -0.3;
    sight.recorded = {1.0, 2.0, std::nullopt};
    sight.line = 9;
    setup.sights = {sight, sight};
    setup.sights[1].slopeDistance.reset();
    setup.sights[1].horizontalDistance = 24.5;
    tacheometry::FieldBook book;
    book.setups = {setup};
    project.content.fieldBook = std::make_shared<const tacheometry::FieldBook>(book);

    QVERIFY(document->setContent(rewrite(project, 3, [](QByteArray&) {}).content));
    const LevellingPoint& point = *document->getPoints()[2];
    QCOMPARE(*point.getPoint().x, 100.5);
    QCOMPARE(*point.getPoint().y, -20.25);
    QVERIFY(point.getPoint().surveyed);
    QCOMPARE(*point.getPolarResult().height, 3.0);
    QVERIFY(document->hasCoordinates());
    QCOMPARE(document->copyContent().fieldBook, document->getSnapshot().fieldBook);
    const tacheometry::FieldBook& read = *document->getSnapshot().fieldBook;
    QCOMPARE(read.countSights(), std::size_t(2));
    QCOMPARE(read.setups[0].station, QStringLiteral("S"));
    QCOMPARE(*read.setups[0].instrumentHeight, 1.5);
    QCOMPARE(*read.setups[0].orientation, 0.25);
    QCOMPARE(read.setups[0].scale, 1.0001);
    QCOMPARE(read.setups[0].source, 1);
    QCOMPARE(read.setups[0].line, qint64(7));
    const tacheometry::Sight& first = read.setups[0].sights[0];
    QCOMPARE(first.point, QStringLiteral("101"));
    QCOMPARE(first.code, QStringLiteral("14"));
    QCOMPARE(*first.direction, 1.25);
    QCOMPARE(*first.zenith, 1.5);
    QCOMPARE(*first.slopeDistance, 24.622);
    QVERIFY(!first.horizontalDistance);
    QCOMPARE(first.targetHeight, 0.1);
    QCOMPARE(first.beyond, 0.05);
    QCOMPARE(first.right, -0.3);
    QCOMPARE(*first.recorded.y, 2.0);
    QVERIFY(!first.recorded.height);
    QCOMPARE(first.line, qint64(9));
    QCOMPARE(*read.setups[0].sights[1].horizontalDistance, 24.5);
}

void TestDocument::earlierProjectFilesAreRead()
{
    // What each version added stands behind all that the version before has.
    constexpr int pointSize = 4 + 1 + 1 + 1 + 3 * 1;
    constexpr int sectionSize = (1 + 4) + (1 + 8) + 4 + (4 + 20) + (4 + 10);
    constexpr int ruleSize = 4 + 8;
    constexpr int handSize = 3 * 4 + 3 * 8 + 2 * 8 + 4;
    constexpr int fourthVersionSize = 5 * 2 * ruleSize + 8 + 1 + 4 + 4 + handSize;
    constexpr int thirdVersionSize = 4 + (4 + 10) + (4 + 10) + 2 * pointSize + sectionSize + 4;
    constexpr int secondVersionSize = 8 + 2 * (1 + 1 + 1) + (1 + 1 + 1) + 4;
    const StoredProject third =
        rewrite(makeFieldProject(), 3, [](QByteArray& content) { content.chop(fourthVersionSize); });
    QCOMPARE(third.content.sections[0]->getSection().source, 1);
    QVERIFY(third.content.toleranceRules == ToleranceRules());
    const StoredProject second = rewrite(makeFieldProject(), 2, [](QByteArray& content) {
        content.chop(fourthVersionSize + thirdVersionSize);
    });
    QVERIFY(second.content.sources.isEmpty());
    QVERIFY(!second.content.sections[0]->getSection().stations);
    QCOMPARE(second.content.sections[0]->getSection().source, 0);
    QCOMPARE(second.content.sections[0]->getSection().line, qint64(40));
    QCOMPARE(second.content.parameters.confidence, 0.99);
    const StoredProject first = rewrite(makeFieldProject(), 1, [](QByteArray& content) {
        content.chop(fourthVersionSize + thirdVersionSize + secondVersionSize);
    });
    QCOMPARE(first.content.parameters.confidence, 0.95);
    QCOMPARE(first.content.points[1]->getPoint().id, QStringLiteral("B"));
}

void TestDocument::projectWithTooManyItemsIsRefused()
{
    StoredProject project;
    project.content.nextId = 0x1122334455667788;
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    storedproject::write(project, file);

    // The count of points follows the next id; the file is given one that no memory could hold, and its sum.
    file.seek(0);
    CQtArchive archive(&file, CQtArchive::Load);
    quint32 signature = 0;
    quint32 version = 0;
    QByteArray content;
    archive >> signature >> version >> content;
    QByteArray id = QByteArray::fromHex("1122334455667788");
    if (!content.contains(id))
        std::reverse(id.begin(), id.end());
    content.replace(content.indexOf(id) + id.size(), 4, QByteArray(4, '\x7f'));
    QBuffer changed;
    changed.open(QIODevice::ReadWrite);
    CQtArchive(&changed, CQtArchive::Save)
        << signature << version << content << QCryptographicHash::hash(content, QCryptographicHash::Sha256);
    changed.seek(0);
    QString refusal;
    try {
        storedproject::read(changed);
    } catch (const qor::CFileException& error) {
        refusal = QString::fromStdWString(error.getDescription());
    }
    QCOMPARE(refusal, QStringLiteral("в проекте больше 3000000 пунктов или секций, он не открыт"));
}

QTEST_MAIN(TestDocument)
#include "tst_document.moc"

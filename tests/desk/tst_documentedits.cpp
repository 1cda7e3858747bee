#include "Orvel/store/COrvel.h"
#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/runs/NumberTexts.h"
#include "levelling/GkfReader.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/DeskProcess.h"
#include "tests/support/TestFiles.h"

#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

#include <functional>
#include <limits>
#include <random>

using namespace orvel::desk;
using namespace orvel::test;

/// What is changed by hand, undone and made again.
class TestDocumentEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sectionThatIsOffIsNoPartOfTheNetwork();
    void switchingOnAgainIsAsBefore();
    void valuesAreChangedAndKnownAsImported();
    void valueThatComesBackIsNotChanged();
    void sigmaOfALengthFollowsIt();
    void sigmaOfStationsFollowsThem();
    void pointIsFixedAndFreed();
    void measurementIsAdded();
    void measurementIsDeletedWithThePointsThatItBrought();
    void deletingAndUndoingKeepsPlaces();
    void handChangesAreLines();
    void smallChangesAreSeen();
    void resultsGoByIds();
    void resultsAreOutdatedUntilUndone();
    void protocolsAreOutdatedByWhatTheyComputeWith();
    void equalNetworkIsTheSameState();
    void savedProjectKnowsItsStates();
    void countedStatesAreUnderstood();
    void editsAreRefusedDuringRuns();
    void undoneProjectIsNotModified();
    void anotherNetworkForgetsTheCommands();
    void handStateComesBackFromTheProjectFile();
    void damagedHandStateIsRefused();
    void additionKeepsWhatWasDoneByHand();
    void exportsGoWithoutWhatIsOff();
    void exportsSayThatHeightsAreOutdated();
    void savedProjectIsAdjustedWithoutWhatIsOff();
    void adjustmentTellsWhatWasDoneByHand();
    void randomEditsAreUndone();

private:
    LONGID sectionId(const QString& name) const;
    LONGID pointId(const QString& name) const;
    const LevellingSection& section(const QString& name) const;
    QStringList listHandChanges() const;
    QString describe() const;
    bool isWhole() const;
    void changeAll();

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<Document> document;
};

void TestDocumentEdits::init()
{
    qRegisterMetaType<LONGID>("LONGID");
    qRegisterMetaType<std::vector<LONGID>>("std::vector<LONGID>");
    desk = std::make_unique<DeskFixture>();
    document = std::make_unique<Document>(desk->plugins, QStringLiteral("Проект"));
    document->setNetwork(levelling::GkfReader::readFile(samplePath(QStringLiteral("blunder.gkf"))).network);
    document->setModified(false);
}

void TestDocumentEdits::cleanup()
{
    document.reset();
    desk.reset();
}

LONGID TestDocumentEdits::sectionId(const QString& name) const
{
    for (const LevellingSection* item : document->getSections()) {
        if (item->getName() == name)
            return item->getId();
    }
    return 0;
}

LONGID TestDocumentEdits::pointId(const QString& name) const
{
    for (const LevellingPoint* item : document->getPoints()) {
        if (item->getName() == name)
            return item->getId();
    }
    return 0;
}

const LevellingSection& TestDocumentEdits::section(const QString& name) const
{
    return *document->findSection(sectionId(name));
}

QStringList TestDocumentEdits::listHandChanges() const
{
    QStringList lines;
    for (const HandChange& change : document->getHandChanges())
        lines.append(handchanges::describe(change));
    return lines;
}

namespace {

QString describe(const std::optional<double>& number)
{
    return number ? QString::number(*number, 'g', 17) : QStringLiteral("-");
}

QString describe(const levelling::Section& section)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9")
        .arg(QString::number(section.from), QString::number(section.to),
             QString::number(section.difference, 'g', 17), describe(section.distance),
             describe(section.stdev), QString::number(section.sigma, 'g', 17),
             QString::number(section.stations.value_or(0)), section.note, QString::number(section.line));
}

QString describe(const levelling::Point& point)
{
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(point.id, describe(point.height), QString::number(point.fixed), QString::number(point.observed),
             QString::number(point.line));
}

} // namespace

/// All that can be changed by hand.
QString TestDocumentEdits::describe() const
{
    QStringList lines;
    for (const LevellingPoint* item : document->getPoints()) {
        lines.append(QStringLiteral("%1 %2 | %3")
                         .arg(QString::number(item->getId()), ::describe(item->getPoint()),
                              QString::number(item->isAddedByHand())));
        if (item->getOriginal())
            lines.append(::describe(*item->getOriginal()));
        if (item->getResult())
            lines.append(QString::number(item->getResult()->height, 'g', 17));
    }
    for (const LevellingSection* item : document->getSections()) {
        lines.append(QStringLiteral("%1 %2 %3 | %4 %5 %6")
                         .arg(QString::number(item->getId()), item->getName(), ::describe(item->getSection()),
                              QString::number(item->isOff()), item->getOffReason(),
                              QString::number(item->isAddedByHand())));
        if (item->getOriginal())
            lines.append(::describe(*item->getOriginal()));
        if (item->getResult())
            lines.append(QString::number(item->getResult()->residual, 'g', 17));
    }
    lines += listHandChanges();
    lines.append(QString::number(document->getState().network));
    lines.append(QString::number(document->getState().settings));
    lines.append(getClassName(document->getLevellingClass()));
    return lines.join(QLatin1Char('\n'));
}

void TestDocumentEdits::sectionThatIsOffIsNoPartOfTheNetwork()
{
    const LONGID id = sectionId(QStringLiteral("М5 – М3 (2)"));
    const LONGID next = document->getSections()[12]->getId();
    const QSignalSpy edited(document.get(), &Document::itemsEdited);
    const QSignalSpy replaced(document.get(), &Document::networkReplaced);
    QVERIFY(document->applyChange(
        QStringLiteral("Отключить"),
        networkchange::switchOff(*document, {id, pointId(QStringLiteral("М3"))}, QStringLiteral("повтор"))));
    QCOMPARE(edited.size(), 1);
    QCOMPARE(edited[0][0].value<std::vector<LONGID>>(), std::vector<LONGID>{id});
    QCOMPARE(replaced.size(), 0);
    QVERIFY(document->findSection(id)->isOff());
    QCOMPARE(document->findSection(id)->getOffReason(), QStringLiteral("повтор"));
    QCOMPARE(int(document->getSections().size()), 19);
    QCOMPARE(int(document->getSnapshot().network.sections.size()), 18);
    QCOMPARE(document->getSnapshot().sectionIds[11], next);
    QCOMPARE(document->getSnapshot().sectionNames.size(), 18);
    QCOMPARE(int(document->shareWholeSnapshot()->network.sections.size()), 19);
    // What has that state already needs no command.
    QVERIFY(!document->applyChange(QString(),
                                   networkchange::switchOff(*document, {id}, QStringLiteral("повтор"))));
    QCOMPARE(document->getUndoStack().count(), 1);
}

void TestDocumentEdits::switchingOnAgainIsAsBefore()
{
    const QString before = describe();
    const LONGID id = sectionId(QStringLiteral("М5 – М3"));
    document->applyChange(QStringLiteral("Отключить"), networkchange::switchOff(*document, {id}, QString()));
    QVERIFY(describe() != before);
    QVERIFY(document->applyChange(QStringLiteral("Включить"), networkchange::switchOn(*document, {id})));
    QVERIFY(!document->findSection(id)->isOff());
    QVERIFY(!document->findSection(id)->getHand());
    document->getUndoStack().undo();
    QVERIFY(document->findSection(id)->isOff());
    document->getUndoStack().undo();
    QCOMPARE(describe(), before);
    QCOMPARE(document->getUndoStack().redoText(), QStringLiteral("Отключить"));
}

void TestDocumentEdits::valuesAreChangedAndKnownAsImported()
{
    const LONGID id = sectionId(QStringLiteral("М3 – М1"));
    const double before = document->findSection(id)->getSection().difference;
    QVERIFY(document->applyChange(
        QString(), networkchange::changeSections(*document, {id}, [](levelling::Section& changed) {
            changed.difference = 1.5;
            networkchange::setSigma(changed, 2.5);
        })));
    const LevellingSection& item = *document->findSection(id);
    QCOMPARE(item.getSection().difference, 1.5);
    QCOMPARE(item.getSection().sigma, 2.5);
    QCOMPARE(*item.getSection().stdev, 2.5);
    QCOMPARE(item.getOriginal()->difference, before);
    QCOMPARE(document->getSnapshot().network.sections[4].difference, 1.5);
    QVERIFY(document->isModified());
}

void TestDocumentEdits::valueThatComesBackIsNotChanged()
{
    const LONGID id = sectionId(QStringLiteral("М3 – М1"));
    const double before = document->findSection(id)->getSection().difference;
    for (const double value : {1.0, 2.0, before}) {
        document->applyChange(
            QString(), networkchange::changeSections(*document, {id}, [value](levelling::Section& changed) {
                changed.difference = value;
            }));
    }
    QVERIFY(!document->findSection(id)->getOriginal());
    QVERIFY(document->getHandChanges().empty());
    document->getUndoStack().undo();
    QCOMPARE(document->findSection(id)->getOriginal()->difference, before);
    QCOMPARE(document->findSection(id)->getSection().difference, 2.0);
}

void TestDocumentEdits::sigmaOfALengthFollowsIt()
{
    levelling::Section byLength;
    byLength.distance = 1.0;
    byLength.sigma = 3.0;
    networkchange::setDistance(byLength, 4.0);
    QCOMPARE(byLength.sigma, 6.0);
    QCOMPARE(*byLength.distance, 4.0);
    levelling::Section stated = byLength;
    stated.stdev = 6.0;
    networkchange::setDistance(stated, 1.0);
    QCOMPARE(stated.sigma, 6.0);
    levelling::Section withoutLength;
    withoutLength.sigma = 5.0;
    networkchange::setDistance(withoutLength, 2.0);
    QCOMPARE(withoutLength.sigma, 5.0);
}

void TestDocumentEdits::sigmaOfStationsFollowsThem()
{
    levelling::Section byStations;
    byStations.stations = 4;
    byStations.sigma = 3.0;
    networkchange::setStations(byStations, 16);
    QCOMPARE(byStations.sigma, 6.0);
    QCOMPARE(*byStations.stations, 16);
    levelling::Section byLength = byStations;
    byLength.distance = 1.0;
    networkchange::setStations(byLength, 4);
    QCOMPARE(byLength.sigma, 6.0);
    QCOMPARE(*byLength.stations, 4);
    levelling::Section stated = byStations;
    stated.stdev = 6.0;
    networkchange::setStations(stated, 1);
    QCOMPARE(stated.sigma, 6.0);
    levelling::Section withoutStations;
    withoutStations.sigma = 5.0;
    networkchange::setStations(withoutStations, 2);
    QCOMPARE(withoutStations.sigma, 5.0);
    QCOMPARE(*withoutStations.stations, 2);
}

void TestDocumentEdits::pointIsFixedAndFreed()
{
    const QString before = describe();
    const LONGID id = pointId(QStringLiteral("М3"));
    const QSignalSpy changed(&document->getModel(), &CProjectModel::itemChanged);
    QVERIFY(document->applyChange(QString(),
                                  networkchange::changePoints(*document, {id}, [](levelling::Point& point) {
                                      point.fixed = true;
                                      point.height = 150.25;
                                  })));
    QCOMPARE(changed.size(), 1);
    QVERIFY(document->findPoint(id)->getPoint().fixed);
    QVERIFY(!document->findPoint(id)->getOriginal()->fixed);
    QVERIFY(document->getSnapshot().network.points[4].fixed);
    const LONGID benchmark = pointId(QStringLiteral("Рп102"));
    QVERIFY(document->applyChange(
        QString(), networkchange::changePoints(*document, {benchmark},
                                               [](levelling::Point& point) { point.fixed = false; })));
    QVERIFY(!document->getSnapshot().network.points[1].fixed);
    QCOMPARE(*document->getSnapshot().network.points[1].height, 151.846);
    document->getUndoStack().undo();
    document->getUndoStack().undo();
    QCOMPARE(describe(), before);
}

void TestDocumentEdits::measurementIsAdded()
{
    const QString before = describe();
    QVERIFY(document->applyChange(
        QString(), networkchange::addSection(*document, {QStringLiteral("М5"), QStringLiteral("М3"), 0.75,
                                                         1.2, std::nullopt, 4.0})));
    const LevellingSection& known = *document->getSections()[19];
    QCOMPARE(known.getName(), QStringLiteral("М5 – М3 (3)"));
    QVERIFY(known.isAddedByHand());
    QCOMPARE(int(document->getPoints().size()), 12);
    QVERIFY(document->applyChange(
        QString(), networkchange::addSection(*document, {QStringLiteral("Новый"), QStringLiteral("М3"), -0.5,
                                                         std::nullopt, 12, 4.0})));
    QCOMPARE(int(document->getPoints().size()), 13);
    QVERIFY(document->getPoints()[12]->isAddedByHand());
    QCOMPARE(document->getSections()[20]->getSection().from, 12);
    QCOMPARE(document->getSections()[20]->getSection().to, 4);
    QCOMPARE(document->getSnapshot().network.points[12].id, QStringLiteral("Новый"));
    QCOMPARE(*document->getSnapshot().network.sections[20].stations, 12);
    const QString after = describe();
    document->getUndoStack().undo();
    document->getUndoStack().undo();
    QCOMPARE(describe(), before);
    document->getUndoStack().redo();
    document->getUndoStack().redo();
    QCOMPARE(describe(), after);
}

void TestDocumentEdits::measurementIsDeletedWithThePointsThatItBrought()
{
    const auto add = [this](const char* from, const char* to) {
        document->applyChange(
            QString(), networkchange::addSection(*document, {QString::fromUtf8(from), QString::fromUtf8(to),
                                                             1.0, std::nullopt, std::nullopt, 4.0}));
    };
    add("А", "М3");
    add("Б", "М3");
    add("В", "Б");
    const QString before = describe();
    // Б has another measurement still.
    document->applyChange(QString(),
                          networkchange::deleteSections(*document, {sectionId(QStringLiteral("А – М3")),
                                                                    sectionId(QStringLiteral("Б – М3")),
                                                                    sectionId(QStringLiteral("М3 – М1"))}));
    QCOMPARE(int(document->getPoints().size()), 14);
    QCOMPARE(pointId(QStringLiteral("А")), LONGID(0));
    QCOMPARE(document->getPoints()[12]->getName(), QStringLiteral("Б"));
    QCOMPARE(section(QStringLiteral("В – Б")).getSection().from, 13);
    QCOMPARE(section(QStringLiteral("В – Б")).getSection().to, 12);
    QCOMPARE(int(document->getSections().size()), 19);
    document->getUndoStack().undo();
    QCOMPARE(describe(), before);
}

void TestDocumentEdits::deletingAndUndoingKeepsPlaces()
{
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    const QString before = describe();
    std::vector<LONGID> ids;
    for (const int place : {0, 3, 4, 18})
        ids.push_back(document->getSections()[static_cast<std::size_t>(place)]->getId());
    QVERIFY(document->applyChange(QString(), networkchange::deleteSections(*document, ids)));
    QCOMPARE(int(document->getSections().size()), 15);
    QCOMPARE(int(document->getHandChanges().size()), 4);
    QCOMPARE(document->getHandChanges()[1].kind, HandChange::Kind::SectionDeleted);
    QCOMPARE(document->getHandChanges()[1].id, ids[1]);
    document->getUndoStack().undo();
    QCOMPARE(describe(), before);
    document->getUndoStack().redo();
    QCOMPARE(int(document->getSections().size()), 15);
}

void TestDocumentEdits::handChangesAreLines()
{
    const auto change = [this](const NetworkChange& made) {
        QVERIFY(document->applyChange(QString(), made));
    };
    change(
        networkchange::switchOff(*document, {sectionId(QStringLiteral("М5 – М3"))}, QStringLiteral("ветер")));
    change(networkchange::switchOff(*document, {sectionId(QStringLiteral("М3 – М1"))}, QString()));
    change(networkchange::changeSections(*document, {sectionId(QStringLiteral("М5 – М3"))},
                                         [](levelling::Section& changed) {
                                             changed.difference = 0.5;
                                             networkchange::setDistance(changed, 2.0);
                                             networkchange::setStations(changed, 8);
                                             networkchange::setSigma(changed, 1.0);
                                         }));
    change(networkchange::changePoints(*document, {pointId(QStringLiteral("Рп102"))},
                                       [](levelling::Point& point) { point.fixed = false; }));
    change(networkchange::addSection(
        *document, {QStringLiteral("Х"), QStringLiteral("М3"), -0.5, std::nullopt, 12, 4.0}));
    change(networkchange::deleteSections(*document, {document->getSections()[0]->getId()}));
    const QStringList expected = toList(
        "Пункт Рп102 изменён вручную: определяемый пункт, приближённая высота 151,84600\u00A0м (было: "
        "исходный "
        "репер, отметка 151,84600\u00A0м)|Пункт Х добавлен вручную: определяемый пункт|"
        "Секция М3 – М1 отключена, причина не указана|"
        "Секция М5 – М3 изменена вручную: превышение 0,50000\u00A0м вместо 0,73770\u00A0м, длина "
        "2,000\u00A0км "
        "вместо 0,940\u00A0км, станций 8 вместо не задано, СКО 1,00\u00A0мм вместо 2,91\u00A0мм|"
        "Секция М5 – М3 отключена: ветер|"
        "Секция Х – М3 добавлена вручную: превышение \u22120,50000\u00A0м, станций 12, СКО 4,00\u00A0мм|"
        "Секция Рп101 – М1 удалена: превышение 5,58610\u00A0м, длина 1,420\u00A0км, СКО 3,57\u00A0мм");
    QCOMPARE(listHandChanges().join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
}

void TestDocumentEdits::smallChangesAreSeen()
{
    const auto change = [this](const QString& name, const std::function<void(levelling::Section&)>& made) {
        QVERIFY(document->applyChange(QString(),
                                      networkchange::changeSections(*document, {sectionId(name)}, made)));
    };
    change(QStringLiteral("М5 – М3"), [](levelling::Section& section) {
        section.difference = 0.737702;
        section.distance = 0.9401;
    });
    change(QStringLiteral("М3 – М1"), [](levelling::Section& section) { section.sigma = 3.3809; });
    QCOMPARE(
        listHandChanges().join(QLatin1Char('|')),
        QStringLiteral("Секция М3 – М1 изменена вручную: СКО 3,3809\u00A0мм вместо %1\u00A0мм|"
                       "Секция М5 – М3 изменена вручную: превышение 0,737702\u00A0м вместо 0,7377\u00A0м, "
                       "длина 0,9401\u00A0км вместо 0,94\u00A0км")
            .arg(numbers::exact(3.0 * std::sqrt(1.27))));
}

void TestDocumentEdits::resultsGoByIds()
{
    const LONGID off = document->getSections()[3]->getId();
    const LONGID last = document->getSections()[18]->getId();
    document->applyChange(QString(), networkchange::switchOff(*document, {off}, QString()));
    const levelling::Adjustment adjustment = levelling::adjust(document->getSnapshot().network);
    document->setAdjustment(adjustment);
    QVERIFY(!document->findSection(off)->getResult());
    QCOMPARE(document->findSection(last)->getResult().has_value(), adjustment.sections[17].has_value());
    QCOMPARE(document->getSections()[9]->getResult()->residual, adjustment.sections[8]->residual);
}

void TestDocumentEdits::resultsAreOutdatedUntilUndone()
{
    QVERIFY(!document->areResultsOutdated());
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    const QSignalSpy told(document.get(), &Document::outdatedChanged);
    document->applyChange(
        QString(), networkchange::switchOff(*document, {document->getSections()[3]->getId()}, QString()));
    QVERIFY(document->areResultsOutdated());
    QVERIFY(document->getSections()[9]->getResult());
    QCOMPARE(told.size(), 1);
    document->getUndoStack().undo();
    QVERIFY(!document->areResultsOutdated());
    document->getUndoStack().redo();
    QVERIFY(document->areResultsOutdated());
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    QVERIFY(!document->areResultsOutdated());
    document->getUndoStack().undo();
    QVERIFY(document->areResultsOutdated());
    // The class has nothing to do with heights.
    document->getUndoStack().redo();
    document->setLevellingClass(LevellingClass::II);
    QVERIFY(!document->areResultsOutdated());
    QCOMPARE(told.size(), 6);
}

void TestDocumentEdits::protocolsAreOutdatedByWhatTheyComputeWith()
{
    const auto window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    Document& project = window->getDocument();
    for (const char* run : {"Предобработка", "Уравнивание"}) {
        QVERIFY(triggerAction(*window, QString::fromUtf8(run)));
        window->getMonitor().waitForFinished();
    }
    QCOMPARE(project.getOutdatedTypes(), std::vector<int>{});
    project.setLevellingClass(LevellingClass::II);
    QCOMPARE(project.getOutdatedTypes(), std::vector<int>{enums::Compile});
    project.applyChange(QString(),
                        networkchange::switchOff(project, {project.getSections()[3]->getId()}, QString()));
    QCOMPARE(project.getOutdatedTypes(), (std::vector<int>{enums::Compile, enums::Adjust}));
    QVERIFY(!project.isProtocolOutdated(enums::Import));
    QVERIFY(!project.isProtocolOutdated(enums::L1Analysis));
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    QCOMPARE(project.getOutdatedTypes(), std::vector<int>{enums::Compile});
    project.getUndoStack().undo();
    QCOMPARE(project.getOutdatedTypes(), (std::vector<int>{enums::Compile, enums::Adjust}));
    project.getUndoStack().undo();
    QCOMPARE(project.getOutdatedTypes(), std::vector<int>{enums::Adjust});
    QCOMPARE(project.getLevellingClass(), LevellingClass::IV);
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    // Limits are no matter of the adjustment, the level of its tests is.
    ToleranceRules rules;
    rules.of(LevellingClass::IV).loops.factor = 15.0;
    project.setToleranceRules(rules);
    QCOMPARE(project.getOutdatedTypes(), std::vector<int>{enums::Compile});
    rules.confidence = 0.99;
    project.setToleranceRules(rules);
    QCOMPARE(project.getOutdatedTypes(), (std::vector<int>{enums::Compile, enums::Adjust}));
}

void TestDocumentEdits::equalNetworkIsTheSameState()
{
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    const LONGID id = document->getSections()[3]->getId();
    document->applyChange(QString(), networkchange::switchOff(*document, {id}, QStringLiteral("ветер")));
    QVERIFY(document->areResultsOutdated());
    // By hand, and not by undoing.
    document->applyChange(QString(), networkchange::switchOn(*document, {id}));
    QVERIFY(!document->areResultsOutdated());
    for (const double step : {0.25, -0.25})
        document->applyChange(
            QString(), networkchange::changeSections(*document, {id}, [step](levelling::Section& section) {
                section.difference += step;
            }));
    QVERIFY(!document->areResultsOutdated());
    document->applyChange(QString(), networkchange::deleteSections(*document, {id}));
    QVERIFY(document->areResultsOutdated());
    document->getUndoStack().undo();
    QVERIFY(!document->areResultsOutdated());
}

void TestDocumentEdits::savedProjectKnowsItsStates()
{
    const auto window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    Document& project = window->getDocument();
    for (const char* run : {"Предобработка", "Уравнивание"}) {
        QVERIFY(triggerAction(*window, QString::fromUtf8(run)));
        window->getMonitor().waitForFinished();
    }
    const LONGID id = project.getSections()[3]->getId();
    project.applyChange(QString(), networkchange::switchOff(project, {id}, QString()));
    project.setLevellingClass(LevellingClass::II);
    projectfile::save(project, desk->path(QStringLiteral("off.orvel")), nullptr);

    Document reopened(desk->plugins, QString());
    projectfile::load(reopened, desk->path(QStringLiteral("off.orvel")), nullptr);
    QVERIFY(reopened.areResultsOutdated());
    QCOMPARE(reopened.getOutdatedTypes(), (std::vector<int>{enums::Compile, enums::Adjust}));
    reopened.applyChange(QString(), networkchange::switchOn(reopened, {id}));
    QVERIFY(!reopened.areResultsOutdated());
    QCOMPARE(reopened.getOutdatedTypes(), std::vector<int>{enums::Compile});
    // Limits of a class that is not in use are none of what is judged by.
    ToleranceRules rules = reopened.getToleranceRules();
    rules.of(LevellingClass::III).loops.factor = 7.0;
    reopened.setToleranceRules(rules);
    reopened.setLevellingClass(LevellingClass::IV);
    QCOMPARE(reopened.getOutdatedTypes(), std::vector<int>{});
    for (int i = 0; i < 3; ++i)
        reopened.getUndoStack().undo();
    QCOMPARE(reopened.getOutdatedTypes(), (std::vector<int>{enums::Compile, enums::Adjust}));
    QVERIFY(reopened.areResultsOutdated());
}

void TestDocumentEdits::countedStatesAreUnderstood()
{
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    const auto areOutdated = [this](quint64 current, quint64 results) {
        Document::Content content = document->copyContent();
        content.states.current = {current, 1, 1};
        content.states.results = results;
        Document opened(desk->plugins, QString());
        return opened.setContent(std::move(content)) && opened.areResultsOutdated();
    };
    QVERIFY(!areOutdated(0, 0));
    QVERIFY(!areOutdated(7, 7));
    QVERIFY(areOutdated(7, 3));
}

void TestDocumentEdits::editsAreRefusedDuringRuns()
{
    document->refuseEdits(true);
    const LONGID id = document->getSections()[3]->getId();
    QVERIFY(!document->applyChange(QString(), networkchange::switchOff(*document, {id}, QString())));
    QVERIFY(!document->findSection(id)->isOff());
    document->refuseEdits(false);
    QVERIFY(document->applyChange(QString(), networkchange::switchOff(*document, {id}, QString())));
}

void TestDocumentEdits::undoneProjectIsNotModified()
{
    const QSignalSpy told(document.get(), &Document::modifiedChanged);
    const LONGID id = document->getSections()[3]->getId();
    document->applyChange(QString(), networkchange::switchOff(*document, {id}, QString()));
    QVERIFY(document->isModified());
    document->getUndoStack().undo();
    QVERIFY(!document->isModified());
    document->getUndoStack().redo();
    document->setModified(false);
    document->getUndoStack().undo();
    QVERIFY(document->isModified());
    QCOMPARE(told.size(), 5);
}

void TestDocumentEdits::anotherNetworkForgetsTheCommands()
{
    const LONGID id = document->getSections()[3]->getId();
    document->applyChange(QString(), networkchange::switchOff(*document, {id}, QString()));
    document->setNetwork(levelling::GkfReader::readFile(samplePath(QStringLiteral("blunder.gkf"))).network);
    QVERIFY(!document->getUndoStack().canUndo());
    QVERIFY(!document->getSections()[3]->isOff());
    document->applyChange(QString(), networkchange::switchOff(*document, {id}, QString()));
    Document::Content content = document->copyContent();
    QVERIFY(document->setContent(std::move(content)));
    QVERIFY(!document->getUndoStack().canUndo());
    QVERIFY(document->getSections()[3]->isOff());
}

void TestDocumentEdits::changeAll()
{
    const auto change = [this](const NetworkChange& made) {
        QVERIFY(document->applyChange(QString(), made));
    };
    change(
        networkchange::switchOff(*document, {sectionId(QStringLiteral("М5 – М3"))}, QStringLiteral("ветер")));
    change(networkchange::changeSections(*document, {sectionId(QStringLiteral("М5 – М3"))},
                                         [](levelling::Section& changed) { changed.difference = 0.5; }));
    change(networkchange::changePoints(*document, {pointId(QStringLiteral("Рп102"))},
                                       [](levelling::Point& point) { point.fixed = false; }));
    change(networkchange::addSection(
        *document, {QStringLiteral("Х"), QStringLiteral("М3"), -0.5, std::nullopt, 12, 4.0}));
    change(networkchange::deleteSections(*document, {document->getSections()[0]->getId()}));
}

void TestDocumentEdits::handStateComesBackFromTheProjectFile()
{
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    changeAll();
    document->setLevellingClass(LevellingClass::III);
    const QString before = describe();
    projectfile::save(*document, desk->path(QStringLiteral("hand.orvel")), nullptr);
    QVERIFY(!document->isModified());
    Document reopened(desk->plugins, QStringLiteral("Другой"));
    projectfile::load(reopened, desk->path(QStringLiteral("hand.orvel")), nullptr);
    QVERIFY(reopened.areResultsOutdated());
    QVERIFY(!reopened.isModified());
    QVERIFY(!reopened.getUndoStack().canUndo());
    document = std::make_unique<Document>(desk->plugins, QStringLiteral("Проект"));
    QVERIFY(document->setContent(reopened.copyContent()));
    QCOMPARE(describe(), before);
    QCOMPARE(int(document->getSnapshot().network.sections.size()), 18);
}

void TestDocumentEdits::damagedHandStateIsRefused()
{
    changeAll();
    const auto isRefused = [this](const std::function<void(Document::Content&)>& damage) {
        Document::Content content = document->copyContent();
        damage(content);
        return !document->setContent(std::move(content));
    };
    QVERIFY(isRefused([](Document::Content& content) { content.deletedSections[0].section.sigma = 0.0; }));
    QVERIFY(isRefused([](Document::Content& content) { content.deletedSections[0].id = content.nextId; }));
    QVERIFY(isRefused([](Document::Content& content) {
        SectionHand hand;
        hand.original = content.sections[0]->getSection();
        hand.original->difference = std::numeric_limits<double>::quiet_NaN();
        content.sections[0]->setSection(content.sections[0]->getSection(),
                                        SectionHandPointer(new SectionHand(hand)));
    }));
    QVERIFY(!isRefused([](Document::Content&) {}));
}

void TestDocumentEdits::additionKeepsWhatWasDoneByHand()
{
    const auto window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    Document& project = window->getDocument();
    const LONGID repeated = project.getSections()[11]->getId();
    const LONGID benchmark = project.getPoints()[1]->getId();
    QVERIFY(project.applyChange(
        QString(), networkchange::deleteSections(project, {project.getSections()[10]->getId()})));
    QVERIFY(project.applyChange(QString(),
                                networkchange::switchOff(project, {repeated}, QStringLiteral("повтор"))));
    QVERIFY(project.applyChange(
        QString(), networkchange::changePoints(project, {benchmark},
                                               [](levelling::Point& point) { point.fixed = false; })));
    Answer answer(QStringLiteral("Добавить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    window->getMonitor().waitForFinished();
    QVERIFY(project.findSection(repeated)->isOff());
    QCOMPARE(project.findSection(repeated)->getName(), QStringLiteral("М5 – М3 (2)"));
    QCOMPARE(project.findSection(repeated)->getOffReason(), QStringLiteral("повтор"));
    QVERIFY(project.findPoint(benchmark)->getOriginal()->fixed);
    QCOMPARE(int(project.getHandChanges().size()), 3);
    QVERIFY(project.getSections().size() > 18);
    QVERIFY(!project.getUndoStack().canUndo());
}

void TestDocumentEdits::exportsGoWithoutWhatIsOff()
{
    const auto window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    Document& project = window->getDocument();
    project.applyChange(QString(),
                        networkchange::switchOff(project, {project.getSections()[11]->getId()}, QString()));
    const QString path = desk->path(QStringLiteral("out.gkf"));
    window->exportFile(path);
    window->getMonitor().waitForFinished();
    QCOMPARE(int(levelling::GkfReader::readFile(path).network.sections.size()), 18);
    QVERIFY(QString::fromUtf8(project.getProtocolData())
                .contains(QStringLiteral("Отключённые секции в файл не вошли, их 1: ")));
}

void TestDocumentEdits::exportsSayThatHeightsAreOutdated()
{
    const auto window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    Document& project = window->getDocument();
    const auto exportTo = [&](const QString& name) {
        window->exportFile(desk->path(name));
        window->getMonitor().waitForFinished();
        return project.getSummary().types.at(enums::Export).warnings;
    };
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    const int before = exportTo(QStringLiteral("heights.csv"));
    project.applyChange(QString(),
                        networkchange::switchOff(project, {project.getSections()[11]->getId()}, QString()));
    QCOMPARE(exportTo(QStringLiteral("heights.csv")), before + 1);
    QVERIFY(QString::fromUtf8(project.getProtocolData())
                .contains(QStringLiteral(
                    "Результаты устарели: сеть изменена после уравнивания. Уравняйте её заново.")));
    // The network itself is as it is.
    QCOMPARE(exportTo(QStringLiteral("network.gkf")), 0);
    project.getUndoStack().undo();
    QCOMPARE(exportTo(QStringLiteral("heights.csv")), before);
}

void TestDocumentEdits::savedProjectIsAdjustedWithoutWhatIsOff()
{
    levelling::Network network =
        levelling::GkfReader::readFile(samplePath(QStringLiteral("blunder.gkf"))).network;
    const auto makeCsv = [&network] {
        const levelling::Adjustment adjustment = levelling::adjust(network);
        QString csv = QStringLiteral("point,height_m,sigma_mm\n");
        for (std::size_t i = 0; i < network.points.size(); ++i) {
            if (!adjustment.points[i])
                continue;
            csv += QStringLiteral("%1,%2,%3\n")
                       .arg(network.points[i].id, QString::number(adjustment.points[i]->height, 'f', 5),
                            QString::number(adjustment.points[i]->sigma, 'f', 3));
        }
        return csv;
    };
    const auto adjustSaved = [this] {
        projectfile::save(*document, desk->path(QStringLiteral("hand.orvel")), nullptr);
        const DeskProcess process = DeskProcess::run(
            desk->folder.path(), QStringLiteral("--language ru --open hand.orvel --run adjust --export h.csv")
                                     .split(QLatin1Char(' ')));
        return process.errors + QString::fromUtf8(readFile(desk->path(QStringLiteral("h.csv"))));
    };
    const QString all = makeCsv();
    QCOMPARE(adjustSaved(), all);
    document->applyChange(QString(), networkchange::switchOff(*document,
                                                              {document->getSections()[3]->getId(),
                                                               document->getSections()[7]->getId()},
                                                              QStringLiteral("ветер")));
    network.sections.erase(network.sections.begin() + 7);
    network.sections.erase(network.sections.begin() + 3);
    const QString without = makeCsv();
    QVERIFY(without != all);
    QCOMPARE(adjustSaved(), without);
}

void TestDocumentEdits::adjustmentTellsWhatWasDoneByHand()
{
    const auto window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    Document& project = window->getDocument();
    const LevellingSection& off = *project.getSections()[11];
    project.applyChange(QString(),
                        networkchange::switchOff(project, {off.getId()}, QStringLiteral("ветер <5>")));
    project.applyChange(QString(),
                        networkchange::deleteSections(project, {project.getSections()[0]->getId()}));
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    const LONGID id = project.getSections()[10]->getId();
    const QString path = desk->path(QStringLiteral("Adjust.html"));
    QVERIFY(project.getProtocol().CreateProtocolFile(enums::Adjust, path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(file.readAll());
    QVERIFY(html.contains(QStringLiteral("Изменено вручную")));
    QVERIFY(html.contains(QStringLiteral("id=%1").arg(id)));
    QVERIFY(html.contains(QStringLiteral("отключена: ветер &lt;5&gt;")));
    QVERIFY(html.contains(QStringLiteral("Секция Рп101 – М1 удалена: превышение")));
}

namespace {

/// Chooses among what somebody may do to a network.
class RandomEditor
{
public:
    explicit RandomEditor(Document& openDocument) : document(openDocument) {}

    void step()
    {
        switch (choose(12)) {
        case 0:
        case 1:
        case 2:
            document.getUndoStack().undo();
            break;
        case 3:
            document.getUndoStack().redo();
            break;
        case 4:
            apply(networkchange::switchOff(document, chooseSections(), QString::number(choose(3))));
            break;
        case 5:
            apply(networkchange::switchOn(document, chooseSections()));
            break;
        case 6:
            apply(networkchange::changeSections(document, chooseSections(),
                                                [this](levelling::Section& section) { change(section); }));
            break;
        case 7:
            apply(networkchange::changePoints(document, {choosePoint()->getId()},
                                              [this](levelling::Point& point) {
                                                  point.fixed = choose(2) == 0;
                                                  if (point.fixed)
                                                      point.height = 100.0 + choose(5);
                                              }));
            break;
        case 8:
        case 9:
            add();
            break;
        case 10:
            apply(networkchange::deleteSections(document, chooseSections()));
            break;
        default:
            document.setLevellingClass(static_cast<LevellingClass>(1 + choose(5)));
        }
    }

private:
    int choose(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }

    void apply(NetworkChange change) { document.applyChange(QStringLiteral("шаг"), std::move(change)); }

    LevellingPoint* choosePoint()
    {
        const std::vector<LevellingPoint*> points = document.getPoints();
        return points[static_cast<std::size_t>(choose(static_cast<int>(points.size())))];
    }

    std::vector<LONGID> chooseSections()
    {
        const std::vector<LevellingSection*> sections = document.getSections();
        std::vector<LONGID> ids;
        for (int count = choose(3); count >= 0 && !sections.empty(); --count)
            ids.push_back(
                sections[static_cast<std::size_t>(choose(static_cast<int>(sections.size())))]->getId());
        return ids;
    }

    void change(levelling::Section& section)
    {
        section.difference += choose(3) - 1;
        if (choose(2) == 0)
            networkchange::setDistance(section, 1.0 + choose(3));
        if (choose(2) == 0)
            networkchange::setStations(section, 1 + choose(3));
        if (choose(2) == 0)
            networkchange::setSigma(section, 1.0 + choose(3));
    }

    void add()
    {
        const QString from = choosePoint()->getName();
        const QString to = choose(2) == 0 ? QStringLiteral("Н%1").arg(choose(6)) : choosePoint()->getName();
        if (from != to)
            apply(networkchange::addSection(document, {from, to, 0.5 * choose(9), 1.0, std::nullopt, 2.0}));
    }

    Document& document;
    std::mt19937 random{19}; // the same steps every time
};

} // namespace

/// Whether the network can be computed with, and its state is told as if it had just been read.
bool TestDocumentEdits::isWhole() const
{
    Document read(desk->plugins, QString());
    return levelling::adjust(document->getSnapshot().network).points.size() == document->countPoints() &&
           read.setContent(document->copyContent()) &&
           read.getState().network == document->getState().network;
}

void TestDocumentEdits::randomEditsAreUndone()
{
    constexpr int steps = 10000;
    document->setAdjustment(levelling::adjust(document->getSnapshot().network));
    const QString before = describe();
    std::map<int, QString> states; // by the count of commands that have been done
    RandomEditor editor(*document);
    for (int step = 0; step < steps; ++step) {
        editor.step();
        if (step % 100 == 0)
            QVERIFY(isWhole());
    }
    QUndoStack& stack = document->getUndoStack();
    while (stack.canRedo())
        stack.redo();
    const int count = stack.count();
    QVERIFY(count > 100);
    while (stack.canUndo()) {
        states[stack.index()] = describe();
        stack.undo();
    }
    QCOMPARE(describe(), before);
    while (stack.canRedo()) {
        stack.redo();
        QCOMPARE(describe(), states[stack.index()]);
    }
}

QTEST_MAIN(TestDocumentEdits)
#include "tst_documentedits.moc"

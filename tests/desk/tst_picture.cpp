#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/picture/ItemText.h"
#include "apps/desk/picture/PictureDock.h"
#include "apps/desk/picture/PictureFile.h"
#include "apps/desk/picture/PicturePanel.h"
#include "apps/desk/picture/PictureView.h"
#include "apps/desk/print/ReportPicture.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/ExpectedFile.h"
#include "tests/support/TestFiles.h"

#include <QAction>
#include <QLineEdit>
#include <QLineF>
#include <QSignalSpy>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

using namespace orvel::desk;
using namespace orvel::desk::picture;
using namespace orvel::test;

/// The picture of the network.
class TestPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void coordinatesStay();
    void edgesAreOneUnitLong();
    void sameGraphHasSamePlaces();
    void drawingCanBeStopped();
    void pointsBetweenKnownOnesStandBetweenThem();
    void pointsBesideAKnownOneKeepTheirDistance();
    void partsStandApart();
    void severityIsThatOfTheWorstLine();
    void severalSectionsGoSideBySide();
    void loopsAreThoseOfPreprocessing();
    void svgIsExact();
    void reportHasThePicture();
    void dockIsShownByItsKey();
    void clickSelectsInTheTable();
    void clickFindsWhatTheSearchHides();
    void tableSelectsInThePicture();
    void selectedItemComesIntoSight();
    void keysAndWheelMoveThePicture();
    void draggingSelectsNothing();
    void loopsAreShownOnDemand();
    void pictureIsSaved();
    void pictureFollowsTheNetwork();
    void hiddenPanelSeeksNothing();
    void itemIsToldOf();
    void itemIsToldOfByWhatItIsNow();

private:
    /// A window with a shown picture of a sample's network.
    void openWindow(const QString& file);
    void waitForPicture() const;
    PicturePanel& getPanel() const { return window->getPictureDock().getPanel(); }
    PictureView& getView() const { return getPanel().getView(); }
    LONGID findPoint(const QString& name) const;
    void click(const QPointF& place) const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

namespace {

bool goOn()
{
    return false;
}

/// A line of so many points in a row.
PlanGraph makeLine(int pointCount)
{
    PlanGraph graph;
    graph.known.resize(static_cast<std::size_t>(pointCount));
    for (int point = 0; point + 1 < pointCount; ++point)
        graph.edges.push_back({point, point + 1});
    return graph;
}

/// A square grid.
PlanGraph makeGrid(int side)
{
    PlanGraph graph;
    const int pointCount = side * side;
    graph.known.resize(static_cast<std::size_t>(pointCount));
    for (int point = 0; point < pointCount; ++point) {
        if (point % side + 1 < side)
            graph.edges.push_back({point, point + 1});
        if (point + side < side * side)
            graph.edges.push_back({point, point + side});
    }
    return graph;
}

/// Two benchmarks and a new point with coordinates, and three sections, one of them measured twice.
levelling::Network makeNetwork()
{
    levelling::Network network;
    for (const auto& [name, x, y] : {std::tuple{"A", 0.0, 0.0}, {"B", 0.0, 400.0}, {"C", 300.0, 200.0}}) {
        levelling::Point point;
        point.id = QString::fromLatin1(name);
        point.x = x;
        point.y = y;
        point.declared = true;
        network.points.push_back(point);
    }
    network.points[0].fixed = true;
    network.points[0].height = 100.0;
    network.points[1].observed = true;
    network.points[1].height = 101.0;
    network.observedHeights.push_back({{1}, {4.0}});
    for (const auto& [from, to, difference] :
         {std::tuple{0, 1, 1.0}, {1, 2, 1.0}, {2, 0, -2.0}, {0, 2, 2.001}}) {
        levelling::Section section;
        section.from = from;
        section.to = to;
        section.difference = difference;
        section.distance = 0.5;
        section.sigma = 2.0;
        network.sections.push_back(section);
    }
    return network;
}

} // namespace

void TestPicture::cleanup()
{
    window.reset();
    desk.reset();
}

void TestPicture::openWindow(const QString& file)
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(file);
    window->getPictureDock().show();
    waitForPicture();
}

void TestPicture::waitForPicture() const
{
    QTRY_VERIFY(!getPanel().isWorking());
}

LONGID TestPicture::findPoint(const QString& name) const
{
    const auto points = window->getDocument().getPoints();
    const auto place = std::find_if(points.begin(), points.end(), [&name](const LevellingPoint* point) {
        return point->getPoint().id == name;
    });
    return place == points.end() ? 0 : (*place)->getId();
}

void TestPicture::click(const QPointF& place) const
{
    QTest::mouseClick(&getView(), Qt::LeftButton, {}, place.toPoint());
}

void TestPicture::coordinatesStay()
{
    PlanGraph graph = makeLine(3);
    graph.known = {QPointF(1, 2), QPointF(30, -4), QPointF(5, 60)};
    const auto layout = layOut(graph, goOn);
    QVERIFY(layout->source == PlaceSource::Coordinates);
    QCOMPARE(layout->places, (std::vector<QPointF>{{1, 2}, {30, -4}, {5, 60}}));
    QVERIFY(layOut({}, goOn)->places.empty());
}

void TestPicture::edgesAreOneUnitLong()
{
    for (const PlanGraph& graph : {makeLine(40), makeGrid(12)}) {
        const auto layout = layOut(graph, goOn);
        QVERIFY(layout->source == PlaceSource::Drawn);
        for (const Edge& edge : graph.edges) {
            const double length = QLineF(layout->places[static_cast<std::size_t>(edge.from)],
                                         layout->places[static_cast<std::size_t>(edge.to)])
                                      .length();
            QVERIFY2(length > 0.5 && length < 1.7, qPrintable(QString::number(length)));
        }
    }
    // A line is as long as it can be.
    const std::vector<QPointF> places = layOut(makeLine(40), goOn)->places;
    QVERIFY(QLineF(places.front(), places.back()).length() > 38.0);
}

void TestPicture::sameGraphHasSamePlaces()
{
    const PlanGraph graph = makeGrid(20);
    QCOMPARE(layOut(graph, goOn)->places, layOut(graph, goOn)->places);
}

void TestPicture::drawingCanBeStopped()
{
    QVERIFY(!layOut(makeGrid(20), [] { return true; }));
    int asked = 0;
    QVERIFY(!layOut(makeGrid(20), [&asked] { return ++asked == 60; }));
    QCOMPARE(asked, 60);
    // Several times in each of the rounds in which all points move.
    asked = 0;
    QVERIFY(layOut(makeGrid(40), [&asked] { return ++asked < 0; }));
    QVERIFY2(asked > 200, qPrintable(QString::number(asked)));
}

void TestPicture::pointsBetweenKnownOnesStandBetweenThem()
{
    PlanGraph graph = makeLine(5);
    graph.known[0] = QPointF(1000, 0);
    graph.known[4] = QPointF(1000, 400);
    const auto layout = layOut(graph, goOn);
    QVERIFY(layout->source == PlaceSource::Mixed);
    QCOMPARE(layout->places[0], QPointF(1000, 0));
    QCOMPARE(layout->places[4], QPointF(1000, 400));
    for (std::size_t point = 1; point < 4; ++point) {
        const QPointF expected(1000, 100.0 * static_cast<double>(point));
        QVERIFY(QLineF(layout->places[point], expected).length() < 20.0);
    }
}

void TestPicture::pointsBesideAKnownOneKeepTheirDistance()
{
    // A hanging line at the end of a known section of 250 m.
    PlanGraph graph = makeLine(5);
    graph.known[0] = QPointF(0, 0);
    graph.known[1] = QPointF(250, 0);
    const auto layout = layOut(graph, goOn);
    QCOMPARE(layout->places[1], QPointF(250, 0));
    for (std::size_t point = 1; point + 1 < 5; ++point) {
        const double length = QLineF(layout->places[point], layout->places[point + 1]).length();
        QVERIFY(length > 150.0 && length < 350.0);
    }
}

void TestPicture::partsStandApart()
{
    PlanGraph graph = makeLine(6);
    graph.edges.erase(graph.edges.begin() + 2); // two parts of three points
    graph.known.resize(7);                      // and a point alone
    graph.known[0] = QPointF(0, 0);
    const auto layout = layOut(graph, goOn);
    for (std::size_t one = 0; one < 7; ++one) {
        for (std::size_t other = one + 1; other < 7; ++other)
            QVERIFY(QLineF(layout->places[one], layout->places[other]).length() > 0.3);
    }
    for (std::size_t point = 3; point < 7; ++point)
        QVERIFY(layout->places[point].y() > layout->places[2].y());
}

void TestPicture::severityIsThatOfTheWorstLine()
{
    openWindow(samplePath(QStringLiteral("blunder.gkf")));
    const auto count = [this](Severity severity) {
        const auto& sections = getView().getPicture().sections;
        return std::count_if(sections.begin(), sections.end(), [severity](const PictureSection& section) {
            return section.severity == severity;
        });
    };
    QCOMPARE(count(Severity::Error), 0);
    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    window->getMonitor().waitForFinished();
    waitForPicture();
    const auto sections = window->getDocument().getSections();
    const auto expected =
        std::count_if(sections.begin(), sections.end(), [this](const LevellingSection* section) {
            return window->getDocument().getSummary().worstOfItem.value(section->getId()) ==
                   COVMessage::Error;
        });
    QVERIFY(expected > 0);
    QCOMPARE(count(Severity::Error), expected);
}

void TestPicture::severalSectionsGoSideBySide()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow();
    window->getDocument().setNetwork(makeNetwork());
    const auto layout = layOut(PlanGraph::of(window->getDocument()), goOn);
    const NetworkPicture shown = NetworkPicture::make(window->getDocument(), *layout);
    Camera camera;
    camera.scale = 1.0;
    QCOMPARE(getSectionWay(shown, shown.sections[2], camera),
             QPolygonF(QVector<QPointF>{{200, -300}, {0, 0}}));
    const QPolygonF beside = getSectionWay(shown, shown.sections[3], camera);
    QCOMPARE(beside.size(), 4);
    QCOMPARE(beside.first(), QPointF(0, 0));
    QCOMPARE(beside.last(), QPointF(200, -300));
    QVERIFY(QLineF(beside[1], beside[2]).intersects(QLineF(0, 0, 200, -300), nullptr) !=
            QLineF::BoundedIntersection);
}

void TestPicture::loopsAreThoseOfPreprocessing()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow();
    levelling::Network network = makeNetwork();
    network.sections[0].difference = 1.050;
    window->getDocument().setNetwork(network);
    const Document& document = window->getDocument();
    const auto loops = findOverLimitLoops(document.getSnapshot(), document.getSurveyRules());
    QCOMPARE(loops.size(), std::size_t(1));
    QCOMPARE(loops.front().points.size(), std::size_t(2));
    QVERIFY(std::abs(loops.front().misclosure - 50.0) < 1e-6);
    // Class IV: 20 mm over the root of half a kilometre.
    QVERIFY(std::abs(loops.front().limit - 20.0 * std::sqrt(0.5)) < 1e-9);
}

void TestPicture::svgIsExact()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow();
    window->getDocument().setNetwork(makeNetwork());
    window->getDocument().setProjectName(QStringLiteral("Net <1>"));
    const auto layout = layOut(PlanGraph::of(window->getDocument()), goOn);
    const QByteArray svg = renderSvgFile(NetworkPicture::make(window->getDocument(), *layout));
    const QString difference =
        compareWithFile(QString::fromUtf8(svg), QStringLiteral(DESK_EXPECTED "/network.svg"));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void TestPicture::reportHasThePicture()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    ReportPicture picture(window->getDocument());
    const QString svg = QString::fromUtf8(picture.draw());
    QVERIFY(svg.trimmed().endsWith(QLatin1String("</svg>")));
    for (const LevellingPoint* point : window->getDocument().getPoints())
        QVERIFY(svg.contains(QLatin1Char('>') + point->getPoint().id + QLatin1Char('<')));
    // Places are sought once for each network.
    QCOMPARE(QString::fromUtf8(picture.draw()), svg);
    QCOMPARE(picture.getLayoutCount(), 1);
    // The page that the menu opens has it, too.
    window->getPages().showReport(kLineList);
    const QString page = QString::fromUtf8(readFile(desk->opened.getPaths().last()));
    QVERIFY(page.contains(QStringLiteral("src=\"data:image/svg+xml;base64,%1\"")
                              .arg(QString::fromLatin1(svg.toUtf8().toBase64()))));
    QVERIFY(page.contains(QStringLiteral("; img-src data:")));
    window->getPages().showReport(kSectionBook);
    QVERIFY(!QString::fromUtf8(readFile(desk->opened.getPaths().last())).contains(QStringLiteral("<img")));
    window->getDocument().setNetwork(makeNetwork());
    QVERIFY(QString::fromUtf8(picture.draw()) != svg);
    QCOMPARE(picture.getLayoutCount(), 2);
    window->getDocument().setNetwork({});
    QVERIFY(picture.draw().isEmpty());
    window = desk->makeWindow();
    QVERIFY(ReportPicture(window->getDocument()).draw().isEmpty());
}

void TestPicture::dockIsShownByItsKey()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(!window->getPictureDock().isVisible());
    QCOMPARE(window->getPictureDock().toggleViewAction()->shortcut(),
             QKeySequence(QStringLiteral("Ctrl+Shift+N")));
    QVERIFY(triggerAction(*window, QStringLiteral("Схема сети")));
    QVERIFY(window->getPictureDock().isVisible());
    waitForPicture();
    QCOMPARE(getView().getPicture().points.size(), window->getDocument().getPoints().size());
    QVERIFY(triggerAction(*window, QStringLiteral("Схема сети")));
    QVERIFY(!window->getPictureDock().isVisible());
}

void TestPicture::clickSelectsInTheTable()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    for (const PicturePoint& point : getView().getPicture().points) {
        click(*getView().findPlaceOf(point.id));
        QCOMPARE(window->getTable().getCurrentItem(), point.id);
        QCOMPARE(getView().getCurrentItem(), point.id);
    }
    for (const PictureSection& section : getView().getPicture().sections) {
        const QPointF place = getView().findPlaceOf(section.id)->toPoint();
        const LONGID hit = getView().findItemAt(place);
        QVERIFY(hit != 0);
        click(place);
        QCOMPARE(window->getTable().getCurrentItem(), hit);
    }
    const LONGID before = window->getTable().getCurrentItem();
    click(QPointF(2, 2));
    QCOMPARE(window->getTable().getCurrentItem(), before);
}

void TestPicture::clickFindsWhatTheSearchHides()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    auto* search = window->findChild<QLineEdit*>();
    search->setText(QStringLiteral("nothing has this name"));
    const LONGID id = getView().getPicture().points.back().id;
    click(*getView().findPlaceOf(id));
    QTRY_COMPARE(window->getTable().getCurrentItem(), id);
    QVERIFY(search->text().isEmpty());
}

void TestPicture::tableSelectsInThePicture()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    const LONGID id = window->getDocument().getSections().back()->getId();
    const QImage before = getView().grab().toImage();
    QVERIFY(window->getTable().selectItem(id));
    QCOMPARE(getView().getCurrentItem(), id);
    QVERIFY(getView().grab().toImage() != before);
    QVERIFY(getView().accessibleDescription().contains(QStringLiteral("Превышение")));
}

void TestPicture::selectedItemComesIntoSight()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    PictureView& view = getView();
    const LONGID id = view.getPicture().points.back().id;
    for (int i = 0; i < 40; ++i)
        QTest::keyClick(&view, Qt::Key_Left);
    QVERIFY(!QRectF(view.rect()).contains(*view.findPlaceOf(id)));
    window->getTable().selectItem(id);
    QVERIFY(QLineF(*view.findPlaceOf(id), QRectF(view.rect()).center()).length() < 1.0);
}

void TestPicture::keysAndWheelMoveThePicture()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    PictureView& view = getView();
    const Camera whole = view.getCamera();
    QTest::keyClick(&view, Qt::Key_Plus);
    QCOMPARE(view.getCamera().scale, whole.scale * 1.25);
    QTest::keyClick(&view, Qt::Key_Minus);
    QCOMPARE(view.getCamera().scale, whole.scale);
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.getCamera().shift, whole.shift - QPointF(60, 0));
    QTest::keyClick(&view, Qt::Key_Down);
    QCOMPARE(view.getCamera().shift, whole.shift - QPointF(60, 60));
    QTest::keyClick(&view, Qt::Key_Home);
    QCOMPARE(view.getCamera().shift, whole.shift);

    const QPointF fixed(30, 40);
    const QPointF under = whole.fromMedium(fixed);
    QWheelEvent wheel(fixed, view.mapToGlobal(fixed.toPoint()), {}, QPoint(0, 240), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &wheel);
    QCOMPARE(view.getCamera().scale, whole.scale * 1.25 * 1.25);
    QVERIFY(QLineF(view.getCamera().toMedium(under), fixed).length() < 1e-6);
    // There is an end to it.
    for (int i = 0; i < 200; ++i)
        QTest::keyClick(&view, Qt::Key_Plus);
    const double nearest = view.getCamera().scale;
    QTest::keyClick(&view, Qt::Key_Plus);
    QCOMPARE(view.getCamera().scale, nearest);
}

void TestPicture::draggingSelectsNothing()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    PictureView& view = getView();
    const LONGID id = view.getPicture().points.front().id;
    const QSignalSpy chosen(&view, &PictureView::itemChosen);
    const QPoint start = view.findPlaceOf(id)->toPoint();
    const QPointF shift = view.getCamera().shift;
    QTest::mousePress(&view, Qt::LeftButton, {}, start);
    QMouseEvent move(QEvent::MouseMove, start + QPoint(50, 30), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&view, &move);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, start + QPoint(50, 30));
    QCOMPARE(view.getCamera().shift, shift + QPointF(50, 30));
    QCOMPARE(chosen.size(), 0);
}

void TestPicture::loopsAreShownOnDemand()
{
    openWindow(samplePath(QStringLiteral("blunder.gkf")));
    QVERIFY(getView().getPicture().loops.empty());
    const auto actions = getPanel().findChild<QToolBar*>()->actions();
    const auto loops = std::find_if(actions.begin(), actions.end(),
                                    [](const QAction* action) { return action->isCheckable(); });
    (*loops)->trigger();
    waitForPicture();
    const Document& document = window->getDocument();
    QCOMPARE(getView().getPicture().loops.size(),
             findOverLimitLoops(document.getSnapshot(), document.getSurveyRules()).size());
    QVERIFY(!getView().getPicture().loops.empty());
    (*loops)->trigger();
    QVERIFY(getView().getPicture().loops.empty());
}

void TestPicture::pictureIsSaved()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    getPanel().save(desk->path(QStringLiteral("net.svg")));
    QCOMPARE(readFile(desk->path(QStringLiteral("net.svg"))), renderSvgFile(getView().getPicture()));
    getPanel().save(desk->path(QStringLiteral("net.PDF")));
    QVERIFY(readFile(desk->path(QStringLiteral("net.PDF"))).startsWith("%PDF-1."));
}

void TestPicture::pictureFollowsTheNetwork()
{
    openWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    const QSignalSpy laidOut(&getPanel(), &PicturePanel::laidOut);
    QTest::keyClick(&getView(), Qt::Key_Plus);
    const Camera before = getView().getCamera();
    // Results move nothing.
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    waitForPicture();
    QCOMPARE(laidOut.size(), 0);
    QCOMPARE(getView().getCamera().shift, before.shift);
    window->getDocument().setNetwork(makeNetwork());
    waitForPicture();
    QCOMPARE(getView().getPicture().points.size(), std::size_t(3));
    QVERIFY(getView().getPicture().source == PlaceSource::Coordinates);
    window->getDocument().setNetwork({});
    waitForPicture();
    QVERIFY(getView().getPicture().points.empty());
    getView().grab();
}

void TestPicture::hiddenPanelSeeksNothing()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("one-benchmark.gkf")));
    const QSignalSpy laidOut(&getPanel(), &PicturePanel::laidOut);
    QTest::qWait(50);
    QCOMPARE(laidOut.size(), 0);
    QVERIFY(getView().getPicture().points.empty());
}

void TestPicture::itemIsToldOf()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow();
    levelling::Network network = makeNetwork();
    network.points[0].id = QStringLiteral("A&B");
    window->getDocument().setNetwork(network);
    const Document& document = window->getDocument();
    QCOMPARE(describeItem(document, findPoint(QStringLiteral("A&B"))),
             QStringLiteral("<b>A&amp;B</b><br>исходный репер<br>Заданная высота 100,00000\u00A0м<br>X "
                            "0,000\u00A0м, Y 0,000\u00A0м"));
    QCOMPARE(describeItem(document, document.getSections()[1]->getId()),
             QStringLiteral("<b>B – C</b><br>Превышение +1,00000\u00A0м<br>Длина 0,500\u00A0км"));
    QVERIFY(describeItem(document, 999999).isEmpty());
}

void TestPicture::itemIsToldOfByWhatItIsNow()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    Document& document = window->getDocument();
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    const LevellingPoint& benchmark = *document.getPoints().front();
    QVERIFY(benchmark.getPoint().fixed);
    const LONGID section = document.getSections().front()->getId();
    const QString outdated = QStringLiteral("<br>Результат устарел: сеть изменена после уравнивания");
    QVERIFY(!describeItem(document, section).contains(outdated));
    const auto raise = [](levelling::Point& point) { point.height = 12.5; };
    document.applyChange(QString(), networkchange::changePoints(document, {benchmark.getId()}, raise));
    QVERIFY(describeItem(document, section).contains(outdated));
    QVERIFY(describeItem(document, benchmark.getId())
                .startsWith(QStringLiteral("<b>%1</b><br>исходный репер<br>Заданная высота 12,50000\u00A0м")
                                .arg(benchmark.getName())));
}

QTEST_MAIN(TestPicture)
#include "tst_picture.moc"

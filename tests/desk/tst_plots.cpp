#include "apps/desk/document/Document.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/plots/PlotPanel.h"
#include "apps/desk/plots/PlotView.h"
#include "tests/desk/DeskFixture.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/support/TestFiles.h"

#include <QDockWidget>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <qwt_plot_canvas.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_map.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using namespace orvel::desk;
using namespace orvel::test;

/// Plots of residuals and misclosures.
class TestPlots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barsCountNormalisedResiduals();
    void curveIsTheNormalDistribution();
    void residualsStandByLength();
    void misclosuresStandBesideTheirLimits();
    void stationsTakeThePlaceOfLengths();
    void countsAreWhole();
    void emptyPlotsSayWhatToDo();
    void windowShowsThePlots();
    void clickSelectsTheItem();
    void keyboardGoesFromMarkToMark();
    void plotsFollowTheTolerances();
    void plotsAreSaved();
    void makingCanBeStopped();
    void residualsDoNotWaitForLoops();
    void newNetworkDoesNotWaitForLoops();
    void manyMarksAreDots();
    void manySectionsAreFluid();

private:
    static PlotPanel& open(DeskWindow& window);
};

namespace {

/// A network of a benchmark A and points B and C: twice from A to B, and round.
std::shared_ptr<NetworkSnapshot> makeSnapshot()
{
    auto snapshot = std::make_shared<NetworkSnapshot>();
    for (const char* name : {"A", "B", "C"}) {
        levelling::Point point;
        point.id = QString::fromLatin1(name);
        point.fixed = snapshot->network.points.empty();
        if (point.fixed)
            point.height = 10.0;
        snapshot->network.points.push_back(point);
        snapshot->pointIds.push_back(10 + static_cast<LONGID>(snapshot->pointIds.size()));
    }
    const auto add = [&](int from, int to, double difference, double length, int stations) {
        levelling::Section section;
        section.from = from;
        section.to = to;
        section.difference = difference;
        section.distance = length;
        section.stations = stations;
        section.sigma = 2.0;
        snapshot->network.sections.push_back(section);
        snapshot->sectionIds.push_back(50 + static_cast<LONGID>(snapshot->sectionIds.size()));
        snapshot->sectionNames.append(QStringLiteral("s%1").arg(snapshot->sectionNames.size()));
    };
    add(0, 1, 1.000, 1.0, 9);
    add(1, 0, -1.030, 1.0, 9);
    add(1, 2, 2.000, 1.0, 10);
    add(2, 0, -3.000, 2.0, 17);
    return snapshot;
}

plots::Source makeSource()
{
    plots::Source source;
    source.snapshot = makeSnapshot();
    source.residuals = {{50, QStringLiteral("s0"), 1.0, 0.5, 0.2},
                        {51, QStringLiteral("s1"), 1.0, -7.25, -9.0},
                        {52, QStringLiteral("s2"), 0.5, 1.5, 0.49},
                        {53, QStringLiteral("s3"), std::nullopt, 2.0, std::nullopt}};
    source.worstOfItem = {{51, COVMessage::Error}, {52, COVMessage::Warning}};
    return source;
}

PlotContent make(plots::Kind kind, const plots::Source& source)
{
    return plots::make(kind, std::make_shared<const plots::Source>(source));
}

QString describe(const PlotContent& content, std::size_t mark)
{
    return content.describe(content.marks[mark].number);
}

} // namespace

void TestPlots::barsCountNormalisedResiduals()
{
    const PlotContent content = make(plots::NormalisedResiduals, makeSource());
    QCOMPARE(content.marks.size(), std::size_t(20));
    QCOMPARE(content.barWidth, 0.5);
    // What lies beyond is in the outermost bars.
    QCOMPARE(content.marks.front().place, QPointF(-4.75, 1.0));
    QCOMPARE(content.marks.front().item, LONGID(51));
    QVERIFY(content.marks.front().isBad);
    QCOMPARE(describe(content, 0),
             QStringLiteral(
                 "Нормированная поправка меньше \u22124,5: секций 1; наибольшая \u22129,00 у секции s1"));
    QCOMPARE(content.marks[10].place, QPointF(0.25, 2.0));
    QCOMPARE(describe(content, 10),
             QStringLiteral("Нормированная поправка от 0,0 до 0,5: секций 2; наибольшая 0,49 у секции s2"));
    QCOMPARE(content.marks.back().place, QPointF(4.75, 0.0));
    QCOMPARE(content.marks.back().item, LONGID(0));
    QCOMPARE(describe(content, 19), QStringLiteral("Нормированная поправка от 4,5: секций 0"));
}

void TestPlots::curveIsTheNormalDistribution()
{
    const PlotContent content = make(plots::NormalisedResiduals, makeSource());
    QCOMPARE(content.curves.size(), std::size_t(1));
    const PlotCurve& curve = content.curves.front();
    QCOMPARE(curve.front().x(), -5.0);
    QCOMPARE(curve.back().x(), 5.0);
    QCOMPARE(curve[50].x(), 0.0);
    // Three residuals, bars of 0.5: 3 * 0.5 / sqrt(2 pi).
    QCOMPARE(QString::number(curve[50].y(), 'f', 6), QStringLiteral("0.598413"));
    QCOMPARE(QString::number(curve[60].y(), 'f', 6), QStringLiteral("0.362956"));
}

void TestPlots::residualsStandByLength()
{
    const PlotContent content = make(plots::ResidualsByLength, makeSource());
    QCOMPARE(content.marks.size(), std::size_t(3));
    QCOMPARE(content.marks[0].place, QPointF(0.5, 1.5));
    QCOMPARE(content.marks[1].item, LONGID(50));
    QCOMPARE(content.marks[2].place, QPointF(1.0, -7.25));
    QCOMPARE(describe(content, 2),
             QStringLiteral("Секция s1: длина 1,000\u00A0км, v = \u22127,25\u00A0мм; ошибка в протоколе"));
}

void TestPlots::misclosuresStandBesideTheirLimits()
{
    const PlotContent loops = make(plots::Misclosures, makeSource());
    QCOMPARE(loops.marks.size(), std::size_t(1));
    // The mean of 1.000 and 1.030, and the rest of the way.
    QCOMPARE(loops.marks[0].place.x(), 4.0);
    QCOMPARE(QString::number(loops.marks[0].place.y(), 'f', 6), QStringLiteral("15.000000"));
    QVERIFY(!loops.marks[0].isBad);
    // The section with the largest normalised residual of them.
    QCOMPARE(loops.marks[0].item, LONGID(51));
    QCOMPARE(describe(loops, 0),
             QStringLiteral("Полигон от A, секций 3: невязка +15,00\u00A0мм, допуск ±40,00\u00A0мм"));
    QCOMPARE(loops.curves.size(), std::size_t(2));
    QCOMPARE(loops.curves[0].back(), QPointF(4.0, 40.0));
    QCOMPARE(loops.curves[0][25], QPointF(1.0, 20.0));
    QCOMPARE(loops.curves[1].back(), QPointF(4.0, -40.0));

    const PlotContent repeated = make(plots::Discrepancies, makeSource());
    QCOMPARE(repeated.marks.size(), std::size_t(1));
    QCOMPARE(repeated.marks[0].place.x(), 1.0);
    QCOMPARE(QString::number(repeated.marks[0].place.y(), 'f', 6), QStringLiteral("30.000000"));
    QVERIFY(repeated.marks[0].isBad);
    QCOMPARE(
        describe(repeated, 0),
        QStringLiteral("Секция s0, измерений 2: расхождение 30,00\u00A0мм, больше допуска 20,00\u00A0мм"));
    QCOMPARE(repeated.curves.size(), std::size_t(1));
    QCOMPARE(repeated.curves[0].back(), QPointF(1.0, 20.0));
}

void TestPlots::stationsTakeThePlaceOfLengths()
{
    plots::Source source = makeSource();
    source.rules.tolerances.of(LevellingClass::IV).loops = {ToleranceMeasure::Stations, 2.0};
    const PlotContent loops = make(plots::Misclosures, source);
    QCOMPARE(loops.xTitle, QStringLiteral("Число станций"));
    QCOMPARE(loops.marks[0].place.x(), 36.0);
    QVERIFY(loops.marks[0].isBad);
    QCOMPARE(loops.curves[0].back(), QPointF(36.0, 12.0));
    QCOMPARE(make(plots::Discrepancies, source).xTitle, QStringLiteral("Длина, км"));
}

void TestPlots::countsAreWhole()
{
    PlotContent content;
    PlotView view;
    view.setContent(std::make_shared<const PlotContent>(content));
    QCOMPARE(view.axisScaleDraw(QwtPlot::yLeft)->label(0.5).text(), QStringLiteral("0,5"));
    content.barWidth = 0.5;
    view.setContent(std::make_shared<const PlotContent>(content));
    QCOMPARE(view.axisScaleDraw(QwtPlot::yLeft)->label(0.5).text(), QString());
    QCOMPARE(view.axisScaleDraw(QwtPlot::yLeft)->label(2.0).text(), QStringLiteral("2"));
    QCOMPARE(view.axisScaleDraw(QwtPlot::xBottom)->label(0.5).text(), QStringLiteral("0,5"));
}

void TestPlots::emptyPlotsSayWhatToDo()
{
    plots::Source source;
    source.snapshot = std::make_shared<NetworkSnapshot>();
    for (const plots::Kind kind : plots::kKinds)
        QVERIFY(make(kind, source).marks.empty());
    QCOMPARE(make(plots::NormalisedResiduals, source).emptyText,
             QStringLiteral("Поправок ещё нет: сначала выполните уравнивание (F6)"));
    QCOMPARE(make(plots::Misclosures, source).emptyText,
             QStringLiteral("Сначала импортируйте нивелирную сеть (Ctrl+I)"));
    auto snapshot = makeSnapshot();
    const std::vector<levelling::Section> sections = std::exchange(snapshot->network.sections, {});
    source.snapshot = snapshot;
    QCOMPARE(make(plots::Misclosures, source).emptyText,
             QStringLiteral("В проекте нет ни одной секции, или все они отключены."));
    snapshot->network.sections = sections;
    for (levelling::Section& section : snapshot->network.sections)
        section.distance.reset();
    source.snapshot = snapshot;
    QCOMPARE(
        make(plots::Discrepancies, source).emptyText,
        QStringLiteral("Секций, измеренных прямо и обратно или повторно, нет, или у их секций нет длин"));
}

PlotPanel& TestPlots::open(DeskWindow& window)
{
    auto* panel = window.findChild<PlotPanel*>();
    if (!panel->isVisible())
        triggerAction(window, QStringLiteral("Графики"));
    return *panel;
}

namespace {

const QMenu* findMenu(const QWidget& window, const QString& title)
{
    for (const QMenu* menu : window.findChildren<QMenu*>()) {
        if (menu->title() == title)
            return menu;
    }
    return nullptr;
}

} // namespace

void TestPlots::windowShowsThePlots()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    auto* panel = window->findChild<PlotPanel*>();
    QVERIFY(!panel->isVisible());
    QVERIFY(panel->isWorking());
    open(*window);
    QVERIFY(panel->isVisible());
    // Beside the other panels.
    const QMenu* menu = findMenu(*window, QStringLiteral("&Вид"));
    QVERIFY(menu &&
            menu->actions().contains(qobject_cast<QDockWidget*>(panel->parentWidget())->toggleViewAction()));
    QTRY_VERIFY(!panel->isWorking());
    const auto isShown = [&](plots::Kind kind) {
        panel->showPlot(kind);
        return panel->getView(kind).isVisible();
    };
    QVERIFY(!isShown(plots::NormalisedResiduals));
    QVERIFY(isShown(plots::Misclosures));
    QCOMPARE(panel->getView(plots::Misclosures).getContent().marks.size(), std::size_t(4));
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().waitForFinished();
    QTRY_VERIFY(!panel->isWorking());
    QVERIFY(isShown(plots::NormalisedResiduals));
    QVERIFY(isShown(plots::ResidualsByLength));
    QCOMPARE(panel->getView(plots::ResidualsByLength).getContent().marks.size(), std::size_t(7));
    QVERIFY(!isShown(plots::Discrepancies));
}

void TestPlots::clickSelectsTheItem()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    PlotPanel& panel = open(*window);
    panel.showPlot(plots::Misclosures);
    QTRY_VERIFY(!panel.isWorking());
    PlotView& view = panel.getView(plots::Misclosures);
    QTRY_VERIFY(view.canvas()->width() > 50);
    const PlotMark& mark = view.getContent().marks[0];
    const QPoint place(qRound(view.canvasMap(QwtPlot::xBottom).transform(mark.place.x())),
                       qRound(view.canvasMap(QwtPlot::yLeft).transform(mark.place.y())));
    QCOMPARE(view.findMark(place), 0);
    QTest::mouseClick(view.canvas(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(window->getTable().getCurrentItem(), mark.item);
    bool isTold = false;
    for (const QLabel* label : panel.findChildren<QLabel*>())
        isTold = isTold || label->text() == view.describeMark(0);
    QVERIFY(isTold);
}

void TestPlots::keyboardGoesFromMarkToMark()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    PlotPanel& panel = open(*window);
    panel.showPlot(plots::Misclosures);
    QTRY_VERIFY(!panel.isWorking());
    PlotView& view = panel.getView(plots::Misclosures);
    QCOMPARE(view.accessibleName(), QStringLiteral("Невязки ходов и полигонов"));
    QTest::keyClick(&view, Qt::Key_Return);
    QCOMPARE(view.getCurrent(), -1);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Right);
    QCOMPARE(view.getCurrent(), 1);
    QCOMPARE(view.accessibleDescription(), view.describeMark(1));
    QTest::keyClick(&view, Qt::Key_End);
    QCOMPARE(view.getCurrent(), 3);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Left);
    QCOMPARE(view.getCurrent(), 2);
    QTest::keyClick(&view, Qt::Key_Enter);
    QCOMPARE(window->getTable().getCurrentItem(), view.getContent().marks[2].item);
}

void TestPlots::plotsFollowTheTolerances()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    PlotPanel& panel = open(*window);
    QTRY_VERIFY(!panel.isWorking());
    const auto countBad = [&] {
        const auto& marks = panel.getView(plots::Misclosures).getContent().marks;
        return std::count_if(marks.begin(), marks.end(), [](const PlotMark& mark) { return mark.isBad; });
    };
    QCOMPARE(countBad(), 3);
    window->getDocument().setLevellingClass(LevellingClass::Technical);
    QTRY_VERIFY(!panel.isWorking());
    QCOMPARE(countBad(), 1);
}

void TestPlots::plotsAreSaved()
{
    DeskFixture desk;
    const auto window = desk.makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    PlotPanel& panel = open(*window);
    panel.showPlot(plots::Misclosures);
    QTRY_VERIFY(!panel.isWorking());
    panel.save(desk.path(QStringLiteral("plot.svg")));
    panel.save(desk.path(QStringLiteral("plot.pdf")));
    const QByteArray svg = readFile(desk.path(QStringLiteral("plot.svg")));
    QVERIFY(svg.contains("<svg"));
    QVERIFY(svg.contains("<title>Невязки ходов и полигонов</title>"));
    QVERIFY(readFile(desk.path(QStringLiteral("plot.pdf"))).startsWith("%PDF-"));
}

void TestPlots::makingCanBeStopped()
{
    plots::Source source;
    auto snapshot = std::make_shared<NetworkSnapshot>();
    snapshot->network = networks::synthetic(400, 1000);
    for (std::size_t section = 0; section < snapshot->network.sections.size(); ++section) {
        snapshot->sectionIds.push_back(static_cast<LONGID>(1000 + section));
        snapshot->sectionNames.append(QString::number(section));
    }
    source.snapshot = snapshot;
    const auto given = std::make_shared<const plots::Source>(source);
    int asked = 0;
    int stopAt = std::numeric_limits<int>::max();
    const auto isStopped = [&] { return ++asked >= stopAt; };
    const std::size_t loopCount = plots::make(plots::Misclosures, given, isStopped).marks.size();
    QVERIFY(loopCount > 500);
    const int all = asked;
    for (stopAt = 1; stopAt < all; stopAt += all / 10) {
        asked = 0;
        QVERIFY(plots::make(plots::Misclosures, given, isStopped).marks.size() < loopCount);
        QVERIFY(asked <= stopAt + 2);
    }
}

namespace {

/// So many points that the search of the loops takes its time.
constexpr int kManyPoints = 20000;

} // namespace

void TestPlots::residualsDoNotWaitForLoops()
{
    DeskFixture desk;
    const auto window = desk.makeWindow();
    const levelling::Network network = networks::synthetic(kManyPoints, 2 * kManyPoints);
    window->getDocument().setNetwork(network);
    levelling::Adjustment adjustment;
    adjustment.points.assign(network.points.size(), levelling::AdjustedPoint());
    adjustment.sections.assign(network.sections.size(), levelling::AdjustedSection());
    window->getDocument().setAdjustment(adjustment);
    PlotPanel& panel = open(*window);
    QTRY_VERIFY(!panel.isWorking(plots::ResidualsByLength));
    QCOMPARE(panel.getView(plots::ResidualsByLength).getContent().marks.size(), network.sections.size());
    QVERIFY(panel.isWorking(plots::Misclosures));
    // And the window does not wait for them either.
}

void TestPlots::newNetworkDoesNotWaitForLoops()
{
    DeskFixture desk;
    const auto window = desk.makeWindow();
    window->getDocument().setNetwork(networks::synthetic(kManyPoints, 2 * kManyPoints));
    PlotPanel& panel = open(*window);
    QTRY_VERIFY(!panel.isWorking(plots::Discrepancies));
    QVERIFY(panel.isWorking(plots::Misclosures));
    window->getDocument().setNetwork(networks::synthetic(100, 150));
    QVERIFY(panel.isWorking(plots::Discrepancies));
    QTRY_VERIFY(!panel.isWorking());
    QCOMPARE(panel.getView(plots::Misclosures).getContent().marks.size(), std::size_t(51));
}

void TestPlots::manyMarksAreDots()
{
    auto content = std::make_shared<PlotContent>();
    for (int i = 0; i < 6000; ++i)
        content->marks.push_back({QPointF(i % 2, i % 2), i + 1, i % 2 == 1, 0});
    // Keeps the others away from the edges.
    content->marks.push_back({QPointF(-1, -1), 0, false, 0});
    content->marks.push_back({QPointF(2, 2), 0, false, 0});
    PlotView view;
    view.resize(600, 400);
    view.setContent(content);
    view.show();
    const QImage image = view.canvas()->grab().toImage();
    const auto getColour = [&](double value, const QPoint& beside) {
        const QPoint place(qRound(view.canvasMap(QwtPlot::xBottom).transform(value)),
                           qRound(view.canvasMap(QwtPlot::yLeft).transform(value)));
        return image.pixelColor(place + beside).name();
    };
    for (const QPoint& inside : {QPoint(0, 0), QPoint(1, 1), QPoint(-1, -1), QPoint(1, -1)}) {
        QCOMPARE(getColour(0.0, inside), QColor(30, 90, 180).name());
        QCOMPARE(getColour(1.0, inside), QColor(190, 30, 30).name());
    }
    for (const QPoint& outside : {QPoint(2, 2), QPoint(-2, 1)})
        QVERIFY(getColour(0.0, outside) != QColor(30, 90, 180).name());
    // Files have no image of dots.
    QVERIFY(!view.toSvg().contains("<image"));
}

void TestPlots::manySectionsAreFluid()
{
    constexpr int count = 100000;
    PlotContent content;
    for (int i = 0; i < count; ++i)
        content.marks.push_back({QPointF(i, std::sin(i)), i + 1, i % 100 == 0, 0});
    content.describe = [](std::size_t /*number*/) { return QString(); };
    PlotView view;
    view.resize(800, 500);
    view.show();
    QElapsedTimer timer;
    timer.start();
    view.setContent(std::make_shared<const PlotContent>(content));
    view.grab();
    const qint64 drawn = timer.restart();
    QTest::keyClick(&view, Qt::Key_Right);
    view.grab();
    const qint64 moved = timer.restart();
    view.findMark(QPoint(10, 10));
    qInfo("drawn in %lld ms, moved in %lld ms, found in %lld ms", drawn, moved, timer.elapsed());
    QVERIFY(drawn < 5000);
    QVERIFY(moved < 5000);
}

QTEST_MAIN(TestPlots)
#include "tst_plots.moc"

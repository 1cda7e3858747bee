#include "apps/desk/runs/RunLines.h"
#include "tests/desk/LineCollector.h"

#include <QTest>

#include <numeric>

using namespace orvel::desk;
using namespace orvel::test;

/// Lines of runs: links, escaped names, long lists.
class TestRunLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void namesBecomeLinks();
    void markUpInNamesIsShown();
    void nameThatLooksLikeAnIdIsNone();
    void longListsAreCutOff();
    void kindsOfLines();
    void worstLineIsKept();

private:
    NetworkSnapshot snapshot;
    LineCollector monitor;
};

void TestRunLines::init()
{
    monitor = LineCollector();
    snapshot = NetworkSnapshot();
    for (int i = 0; i < 60; ++i) {
        levelling::Point point;
        point.id = QStringLiteral("P%1").arg(i);
        snapshot.network.points.push_back(point);
        snapshot.pointIds.push_back(100 + i);
    }
    snapshot.network.sections.emplace_back();
    snapshot.sectionIds.push_back(500);
    snapshot.sectionNames.append(QStringLiteral("P0 – P1"));
}

void TestRunLines::namesBecomeLinks()
{
    RunLines lines(monitor, snapshot);
    QCOMPARE(lines.point(2), QStringLiteral("[102:P2]"));
    QCOMPARE(lines.section(0), QStringLiteral("[500:P0 – P1]"));
    QCOMPARE(lines.listWay({0, 1, 0}), QStringLiteral("[100:P0] → [101:P1] → [100:P0]"));
}

void TestRunLines::markUpInNamesIsShown()
{
    snapshot.network.points[0].id = QStringLiteral("<img src=x onerror=\"alert(1)\">&");
    RunLines lines(monitor, snapshot);
    QCOMPARE(lines.point(0), QStringLiteral("[100:&lt;img src=x onerror=&quot;alert(1)&quot;&gt;&amp;]"));
}

void TestRunLines::nameThatLooksLikeAnIdIsNone()
{
    QCOMPARE(RunLines::escape(QStringLiteral("id=7")), QStringLiteral("id&#61;7"));
}

void TestRunLines::longListsAreCutOff()
{
    std::vector<int> points(60);
    std::iota(points.begin(), points.end(), 0);
    RunLines lines(monitor, snapshot);
    const QString list = lines.listPoints(points);
    QVERIFY(list.startsWith(QStringLiteral("[100:P0], [101:P1], ")));
    QVERIFY(list.endsWith(QStringLiteral("[149:P49] … и ещё 10")));
}

void TestRunLines::kindsOfLines()
{
    RunLines lines(monitor, snapshot);
    lines.error(QStringLiteral("a"));
    lines.warning(QStringLiteral("b"));
    lines.message(QStringLiteral("c"));
    lines.service(QStringLiteral("d"));
    lines.setProgress(1, 4);
    lines.setProgress(0, 0);
    QCOMPARE(monitor.lines.join(QLatin1Char(' ')),
             QStringLiteral("error:a warning:b message:c service:d 25% 100%"));
}

void TestRunLines::worstLineIsKept()
{
    WorstLine worst;
    RunLines lines(monitor, snapshot, &worst);
    lines.error(QStringLiteral("without a limit"));
    QCOMPARE(worst.getText(), QString());
    lines.warning(QStringLiteral("warning"), 9.0);
    QCOMPARE(worst.getText(), QStringLiteral("warning"));
    lines.error(QStringLiteral("first"), 1.5);
    QCOMPARE(worst.getText(), QStringLiteral("first"));
    lines.error(QStringLiteral("worst"), 3.0);
    lines.error(QStringLiteral("as bad"), 3.0);
    lines.error(QStringLiteral("less"), 2.0);
    lines.warning(QStringLiteral("warning"), 9.0);
    QCOMPARE(worst.getText(), QStringLiteral("worst"));
    QCOMPARE(monitor.lines.size(), 7);
}

QTEST_GUILESS_MAIN(TestRunLines)
#include "tst_runlines.moc"

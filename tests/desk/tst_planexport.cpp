#include "apps/desk/runs/PlanExport.h"
#include "apps/desk/runs/PlanExportRun.h"
#include "tests/desk/LineCollector.h"
#include "tests/support/TestFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// Plans as GeoJSON and DXF.
class TestPlanExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void geoJsonHasPointsAndSections();
    void geoJsonOfHostileNamesIsJson();
    void dxfIsExact();
    void dxfOfHostileNamesGivesNoOrders();
    void anotherProgramReadsTheDrawing();
    void runTellsWhatItWrote();
    void runWithoutCoordinatesIsRefused();
    void runToMissingFolderIsRefused();

private:
    Plan plan;
    NetworkSnapshot snapshot;
    LineCollector monitor;
};

void TestPlanExport::init()
{
    plan = Plan();
    plan.points.push_back({QStringLiteral("A"), true, {1000.25, 2000.5, 150.125}, std::nullopt});
    plan.points.push_back({QStringLiteral("B"), false, {1100.25, 2000.5, std::nullopt}, 1.25});
    plan.sections.push_back({QStringLiteral("A – B"), 0, 1, 0.125, 0.1});
    snapshot = NetworkSnapshot();
    monitor = LineCollector();
}

void TestPlanExport::geoJsonHasPointsAndSections()
{
    QCOMPARE(planexport::toGeoJson(plan),
             QByteArray(
                 "{\"type\":\"FeatureCollection\",\n"
                 "\"coordinateReferenceSystem\":{\"type\":\"local\",\"axes\":[\"east\",\"north\",\"up\"],"
                 "\"unit\":\"m\",\"note\":\"not longitude and latitude on WGS 84\"},\n"
                 "\"features\":[\n"
                 "{\"geometry\":{\"coordinates\":[2000.5,1000.25,150.125],\"type\":\"Point\"},\"properties\":"
                 "{\"given\":true,\"height_m\":150.125,\"name\":\"A\",\"sigma_mm\":null,\"x_m\":1000.25,"
                 "\"y_m\":2000.5},\"type\":\"Feature\"},\n"
                 "{\"geometry\":{\"coordinates\":[2000.5,1100.25],\"type\":\"Point\"},\"properties\":"
                 "{\"given\":false,\"height_m\":null,\"name\":\"B\",\"sigma_mm\":1.25,\"x_m\":1100.25,"
                 "\"y_m\":2000.5},\"type\":\"Feature\"},\n"
                 "{\"geometry\":{\"coordinates\":[[2000.5,1000.25,150.125],[2000.5,1100.25]],\"type\":"
                 "\"LineString\"},\"properties\":{\"from\":\"A\",\"height_difference_m\":0.125,"
                 "\"length_km\":0.1,\"name\":\"A – B\",\"to\":\"B\"},\"type\":\"Feature\"}\n"
                 "]}\n"));
}

void TestPlanExport::geoJsonOfHostileNamesIsJson()
{
    const QString name = QStringLiteral("\"}],\\<b>%1\u2028\nЖ");
    plan.points[0].name = name;
    const QJsonDocument document = QJsonDocument::fromJson(planexport::toGeoJson(plan));
    const QJsonArray features = document.object().value(QStringLiteral("features")).toArray();
    QCOMPARE(features.size(), 3);
    QCOMPARE(features[0]
                 .toObject()
                 .value(QStringLiteral("properties"))
                 .toObject()
                 .value(QStringLiteral("name"))
                 .toString(),
             name);
}

void TestPlanExport::dxfIsExact()
{
    plan.sections.clear();
    plan.points.pop_back();
    QByteArray text = planexport::toDxf(plan);
    text.replace("\n", " ");
    QCOMPARE(
        text.simplified(),
        QByteArray("0 SECTION 2 HEADER 9 $ACADVER 1 AC1009 9 $EXTMIN 10 2000.5000 20 1000.2500 30 0.0000 "
                   "9 $EXTMAX 10 2000.5000 20 1000.2500 30 0.0000 0 ENDSEC "
                   "0 SECTION 2 TABLES 0 TABLE 2 LAYER 70 4 0 LAYER 2 POINTS 70 0 62 1 6 CONTINUOUS "
                   "0 LAYER 2 NAMES 70 0 62 7 6 CONTINUOUS 0 LAYER 2 HEIGHTS 70 0 62 3 6 CONTINUOUS "
                   "0 LAYER 2 SECTIONS 70 0 62 5 6 CONTINUOUS 0 ENDTAB 0 ENDSEC 0 SECTION 2 ENTITIES "
                   "0 POINT 8 POINTS 10 2000.5000 20 1000.2500 30 150.1250 "
                   "0 TEXT 8 NAMES 10 2000.5500 20 1000.3000 30 150.1250 40 0.1000 1 A "
                   "0 TEXT 8 HEIGHTS 10 2000.5500 20 1000.1000 30 150.1250 40 0.1000 1 150.125 "
                   "0 ENDSEC 0 EOF"));
}

void TestPlanExport::dxfOfHostileNamesGivesNoOrders()
{
    plan.points[0].name = QStringLiteral("a\n  0\nEOF%%d\\U+0041^JЖ 5% %");
    const QByteArray text = planexport::toDxf(plan);
    QVERIFY(text.contains(
        "\n  1\na\\U+000A  0\\U+000AEOF\\U+0025\\U+0025d\\U+005CU+0041\\U+005EJ\\U+0416 5% %\n"));
    QCOMPARE(text.count("EOF\n"), 1);
}

void TestPlanExport::anotherProgramReadsTheDrawing()
{
    const QString python = QStringLiteral(PYTHON_WITH_EZDXF);
    if (python.isEmpty())
        QSKIP("python3-ezdxf is not installed", 0);
    plan.points[0].name = QStringLiteral("Репер %%u\\1");
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plan.dxf"));
    writeFile(path, planexport::toDxf(plan));
    const QString script =
        QStringLiteral("import sys, ezdxf\n"
                       "from ezdxf.lldxf.encoding import decode_dxf_unicode\n"
                       "drawing = ezdxf.readfile(sys.argv[1])\n"
                       "print(drawing.dxfversion, len(drawing.audit().errors))\n"
                       "for e in drawing.modelspace():\n"
                       "    d = e.dxf\n"
                       "    if e.dxftype() == 'POINT': print(d.layer, *d.location)\n"
                       "    if e.dxftype() == 'LINE': print(d.layer, *d.start, *d.end)\n"
                       "    if e.dxftype() == 'TEXT': print(d.layer, ascii(decode_dxf_unicode(d.text)))\n");
    QProcess process;
    process.start(python, {QStringLiteral("-c"), script, path});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QCOMPARE(process.readAllStandardOutput(),
             QByteArray("AC1009 0\n"
                        "POINTS 2000.5 1000.25 150.125\n"
                        "NAMES '\\u0420\\u0435\\u043f\\u0435\\u0440 %%u\\\\1'\n"
                        "HEIGHTS '150.125'\n"
                        "POINTS 2000.5 1100.25 0.0\n"
                        "NAMES 'B'\n"
                        "SECTIONS 2000.5 1000.25 150.125 2000.5 1100.25 0.0\n"));
}

void TestPlanExport::runTellsWhatItWrote()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plan.geojson"));
    levelling::Point point;
    point.id = QStringLiteral("C<i>");
    snapshot.network.points.push_back(point);
    snapshot.pointIds.push_back(7);
    QCOMPARE(runPlanExport(monitor, snapshot, plan, planexport::toGeoJson, {0}, path), QString());
    QCOMPARE(readFile(path), planexport::toGeoJson(plan));
    QCOMPARE(monitor.lines,
             (QStringList{
                 QStringLiteral("warning:Не экспортировано пунктов без координат: 1 ([7:C&lt;i&gt;])"),
                 QStringLiteral("message:Записано пунктов: 2, секций: 1, файл: ") + path,
                 QStringLiteral("message:Координаты — в системе проекта, X на север, Y на восток, м; это не "
                                "WGS-84"),
                 QStringLiteral("100%")}));
}

void TestPlanExport::runWithoutCoordinatesIsRefused()
{
    const QString failure =
        runPlanExport(monitor, snapshot, Plan(), planexport::toDxf, {}, QStringLiteral("-"));
    QCOMPARE(failure, QStringLiteral(
                          "Экспортировать нечего: ни у одного пункта нет координат. Импортируйте координаты "
                          "или выполните расчёт тахеометрии."));
    QCOMPARE(monitor.lines, QStringList(QStringLiteral("error:") + failure));
}

void TestPlanExport::runToMissingFolderIsRefused()
{
    const QString failure =
        runPlanExport(monitor, snapshot, plan, planexport::toDxf, {}, QStringLiteral("/no/such/folder.dxf"));
    QVERIFY(failure.contains(QStringLiteral("/no/such/folder.dxf")));
    QCOMPARE(monitor.lines, QStringList(QStringLiteral("error:") + failure));
}

QTEST_APPLESS_MAIN(TestPlanExport)
#include "tst_planexport.moc"

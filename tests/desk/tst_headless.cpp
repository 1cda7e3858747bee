#include "apps/common/Version.h"
#include "tests/desk/DeskProcess.h"
#include "tests/support/ExpectedFile.h"
#include "tests/support/MessageText.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <csignal>

using namespace orvel::test;

/// The desk without a display, end to end: files in, pages and files out.
class TestHeadless : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void twoBenchmarksGivePublishedFigures();
    void oneBenchmarkGivesPublishedFigures();
    void equalLengthsGivePublishedFigures();
    void grossErrorsAreIsolatedByL1();
    void wholePagesOfSmallNetwork_data();
    void wholePagesOfSmallNetwork();
    void csvOfSmallNetwork();
    void exportedNetworkGivesTheSameHeights();
    void dataFileIsCopied();
    void eachRunHasOneLine();
    void runsKeepTheirOrder();
    void savedProjectKeepsProtocol();
    void fieldFilesOfATotalStationGiveCoordinates();
    void tacheometryWithoutCoordinatesHasNoResult();
    void savedProjectIsSavedTheSameAgain();
    void badUsageIsRefused_data();
    void badUsageIsRefused();
    void badInputIsRefused_data();
    void badInputIsRefused();
    void missingFileIsRefused();
    void englishTextsOnDemand();
    void damagedProjectIsRefused_data();
    void damagedProjectIsRefused();
    void helpAndVersion();
    void optionsTakeEveryForm_data();
    void optionsTakeEveryForm();
    void exitCodeTellsHowItWent_data();
    void exitCodeTellsHowItWent();
    void failedExportKeepsTheRest_data();
    void failedExportKeepsTheRest();
    void failedOutputsAreEachTold();
    void unwritableOutputIsAFailure_data();
    void unwritableOutputIsAFailure();
    void streamsAreReadAndWritten();
    void fieldFileOfALevelIsAdjusted();
    void textFilesAreImportedByTemplates();
    void brokenTemplateStartsNothing();
    void ownTolerancesAreKept();
    void brokenTolerancesStartNothing();
    void logIsNotEmptied();
    void fileUrlsAreTaken();
    void pagesWithoutTheirLookAreToldOf();
    void pipeWithoutWriterIsGivenUp();
    void pipeWithAWriterIsRead();
    void namesOnStderrShowControlCharacters();
    void formulasAreGuarded();
    void reportsAreWritten();
    void reportWithoutResultsIsAFailure();
    void projectNameHasNoMarkUp();
    void systemDecidesOnTheLanguage_data();
    void systemDecidesOnTheLanguage();

private:
    QString path(const QString& name) const { return folder->filePath(name); }
    QString text(const QString& name) const { return QString::fromUtf8(readFile(path(name))); }
    /// The text of a page without its mark-up, one line per element.
    QString plainText(const QString& name) const;
    DeskProcess run(const QStringList& arguments) const
    {
        return DeskProcess::run(folder->path(), arguments);
    }

    QScopedPointer<QTemporaryDir> folder;
};

namespace {

const QString kData = QStringLiteral(DESK_TEST_DATA);
const QString kSamples = QStringLiteral(DESK_SAMPLES);

/// Those of the texts that do not stand in the page.
QStringList findMissing(const QString& page, const std::vector<const char*>& texts)
{
    QStringList missing;
    for (const char* text : texts) {
        if (!page.contains(QString::fromUtf8(text)))
            missing.append(QString::fromUtf8(text));
    }
    return missing;
}

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

} // namespace

void TestHeadless::init()
{
    folder.reset(new QTemporaryDir);
    QVERIFY(folder->isValid());
    for (const char* sample : {"two-benchmarks.gkf", "one-benchmark.gkf", "blunder.gkf"}) {
        const QString name = QLatin1String(sample);
        QVERIFY(QFile::copy(kSamples + QLatin1Char('/') + name, path(name)));
    }
    QVERIFY(QFile::copy(kData + QStringLiteral("/small.gkf"), path(QStringLiteral("small.gkf"))));
}

QString TestHeadless::plainText(const QString& name) const
{
    QString plain = text(name);
    return plain.remove(QRegularExpression(QStringLiteral("<[^>]*>")));
}

void TestHeadless::twoBenchmarksGivePublishedFigures()
{
    const DeskProcess desk =
        run(words("--import two-benchmarks.gkf --run compile --run adjust --export out.csv --pages pages"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.exitCode, 0);
    QCOMPARE(text(QStringLiteral("out.csv")), QStringLiteral("point,height_m,sigma_mm\n"
                                                             "BMX,100.00000,0.000\n"
                                                             "BMY,107.50000,0.000\n"
                                                             "A,105.15040,32.756\n"
                                                             "B,104.48920,29.759\n"
                                                             "C,106.19720,29.035\n"));
    const QString adjust = plainText(QStringLiteral("pages/Adjust.html"));
    QCOMPARE(findMissing(
                 adjust,
                 {"избыточных измерений 4, [pvv] = 3832,00000 ", "апостериорная 30,952\u00A0мм",
                  "Пункт A: H = 105,15040\u00A0м, СКО априорная 1,06\u00A0мм, апостериорная 32,76\u00A0мм\n",
                  "Пункт B: H = 104,48920\u00A0м, СКО априорная 0,96\u00A0мм, апостериорная 29,76\u00A0мм\n",
                  "Пункт C: H = 106,19720\u00A0м, СКО априорная 0,94\u00A0мм, апостериорная 29,04\u00A0мм\n",
                  "BMX – A: h = 5,10000\u00A0м, v = +50,40\u00A0мм",
                  "A – BMY: h = 2,34000\u00A0м, v = +9,60\u00A0мм",
                  "BMY – C: h = \u22121,25000\u00A0м, v = \u221252,80\u00A0мм",
                  "C – BMX: h = \u22126,13000\u00A0м, v = \u221267,20\u00A0мм",
                  "A – B: h = \u22120,68000\u00A0м, v = +18,80\u00A0мм",
                  "BMY – B: h = \u22123,00000\u00A0м, v = \u221210,80\u00A0мм",
                  "B – C: h = 1,70000\u00A0м, v = +8,00\u00A0мм"}),
             QStringList());
    const QString compile = plainText(QStringLiteral("pages/Compile.html"));
    QCOMPARE(
        findMissing(
            compile,
            {"избыточных измерений: 4\n",
             "Ход BMX → A → BMY: невязка \u221260,00\u00A0мм, больше допуска ±52,92\u00A0мм, длина "
             "7,000\u00A0км",
             "Ход BMY → C → BMX: невязка +120,00\u00A0мм, больше допуска ±44,72\u00A0мм, длина 5,000\u00A0км",
             "Полигон BMY → C → B → BMY: невязка +50,00\u00A0мм, больше допуска ±48,99\u00A0мм, длина "
             "6,000\u00A0км",
             "Полигон BMY → B → A → BMY: невязка +20,00\u00A0мм, допуск ±52,92\u00A0мм, длина "
             "7,000\u00A0км"}),
        QStringList());
}

void TestHeadless::oneBenchmarkGivesPublishedFigures()
{
    const DeskProcess desk =
        run(words("--import one-benchmark.gkf --run compile --run adjust --export out.csv --pages pages"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.exitCode, 0);
    QCOMPARE(text(QStringLiteral("out.csv")), QStringLiteral("point,height_m,sigma_mm\n"
                                                             "51,234.31450,0.000\n"
                                                             "11,249.81063,2.095\n"
                                                             "38,268.29263,2.049\n"
                                                             "1,250.69624,2.102\n"
                                                             "17,244.77698,1.734\n"
                                                             "34,267.91993,2.038\n"
                                                             "32,253.63176,1.968\n"
                                                             "43,236.31859,1.933\n"));
    const QString adjust = plainText(QStringLiteral("pages/Adjust.html"));
    QCOMPARE(findMissing(adjust, {"избыточных измерений 8, [pvv] = 3,74232 ",
                                  "апостериорная 2,052\u00A0мм, отношение 0,684, пределы 0,522 и 1,480 ",
                                  "Наибольшая нормированная поправка 1,56, предел 2,93: секция 51 – 1\n"}),
             QStringList());
    const QString compile = plainText(QStringLiteral("pages/Compile.html"));
    QCOMPARE(compile.count(QString::fromUtf8("Полигон ")), 8);
    QVERIFY(compile.contains(QString::fromUtf8("Полигон 51 → 1 → 17 → 51: невязка \u22128,60\u00A0мм")));
}

void TestHeadless::equalLengthsGivePublishedFigures()
{
    const QString network =
        text(QStringLiteral("two-benchmarks.gkf"))
            .replace(QRegularExpression(QStringLiteral("dist *= *\"[0-9]\"")), QStringLiteral("dist=\"1\""));
    writeFile(path(QStringLiteral("equal.gkf")), network.toUtf8());
    const DeskProcess desk = run(words("--import equal.gkf --run adjust --pages pages"));
    QCOMPARE(desk.exitCode, 0);
    const QString adjust = plainText(QStringLiteral("pages/Adjust.html"));
    QCOMPARE(findMissing(adjust, {"A: H = 105,14095\u00A0м", "B: H = 104,48286\u00A0м",
                                  "C: H = 106,18762\u00A0м", "апостериорная 50,119\u00A0мм"}),
             QStringList());
}

void TestHeadless::grossErrorsAreIsolatedByL1()
{
    const DeskProcess desk = run(words("--import two-benchmarks.gkf --run l1 --pages pages"));
    QCOMPARE(desk.errors, QString());
    const QString page = plainText(QStringLiteral("pages/L1Analysis.html"));
    QCOMPARE(
        findMissing(page, {"вес измерения 1/σ", "Решение единственное\n", "Пункт A: H = 105,16000\u00A0м\n",
                           "Пункт B: H = 104,50000\u00A0м\n", "Пункт C: H = 106,20000\u00A0м\n",
                           "Секция C – BMX: v = \u221270,00\u00A0мм, |v|/σ = 40,41\n",
                           "Секция BMX – A: v = +60,00\u00A0мм, |v|/σ = 30,00\n",
                           "Секция BMY – C: v = \u221250,00\u00A0мм, |v|/σ = 35,36\n",
                           "Грубых ошибок не обнаружено, доверительная вероятность 0,95\n",
                           "секций с ненулевой поправкой: 4, с нулевой: 3\n"}),
        QStringList());
}

void TestHeadless::wholePagesOfSmallNetwork_data()
{
    QTest::addColumn<QString>("page");
    for (const char* page : {"Import", "Compile", "Adjust", "L1Analysis", "FixedPointsAnalysis",
                             "AutoChainTracingAnalysis", "Export"})
        QTest::newRow(page) << QString::fromLatin1(page);
}

void TestHeadless::wholePagesOfSmallNetwork()
{
    QFETCH(QString, page);
    const DeskProcess desk =
        run(words("--import small.gkf --run compile --run adjust --run l1 --run fixed-points --run chains "
                  "--export heights.csv --pages pages"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(compareWithFile(withoutDates(text(QStringLiteral("pages/%1.html").arg(page))),
                             QStringLiteral(DESK_EXPECTED "/%1.html").arg(page)),
             QString());
}

void TestHeadless::csvOfSmallNetwork()
{
    QCOMPARE(run(words("--import small.gkf --run adjust --export heights.csv")).exitCode, 0);
    QCOMPARE(text(QStringLiteral("heights.csv")), QStringLiteral("point,height_m,sigma_mm\n"
                                                                 "R1,100.00000,0.000\n"
                                                                 "R2,103.00000,0.000\n"
                                                                 "<img src=x>id=7,101.00140,1.265\n"
                                                                 "%1,103.50000,1.000\n"));
}

void TestHeadless::exportedNetworkGivesTheSameHeights()
{
    QCOMPARE(run(words("--import small.gkf --run adjust --export heights.csv")).exitCode, 0);
    const DeskProcess exporting = run(words("--import small.gkf --export network.GKF"));
    QCOMPARE(exporting.errors, QString());
    QCOMPARE(exporting.output, QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3\n"
                                              "Экспорт: ошибок 0, предупреждений 0, сообщений 1\n"));
    QCOMPARE(run(words("--import network.GKF --run adjust --export again.csv")).exitCode, 0);
    QCOMPARE(text(QStringLiteral("again.csv")), text(QStringLiteral("heights.csv")));
}

void TestHeadless::dataFileIsCopied()
{
    QCOMPARE(run(words("--import small.gkf --data data.xml")).exitCode, 0);
    QCOMPARE(compareWithFile(withoutDates(text(QStringLiteral("data.xml"))),
                             QStringLiteral(DESK_EXPECTED "/data.xml")),
             QString());
}

void TestHeadless::eachRunHasOneLine()
{
    const DeskProcess desk =
        run(words("--import blunder.gkf --run compile --run adjust --export heights.csv --pages pages"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.output,
             QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3; pages/Import.html\n"
                            "Предобработка: ошибок 3, предупреждений 0, сообщений 10; "
                            "pages/Compile.html\n"
                            "Уравнивание: ошибок 9, предупреждений 3, сообщений 30; "
                            "pages/Adjust.html\n"
                            "Экспорт: ошибок 0, предупреждений 3, сообщений 1; pages/Export.html\n"));
}

void TestHeadless::runsKeepTheirOrder()
{
    const DeskProcess desk = run(words("--import two-benchmarks.gkf --run adjust --run compile"));
    QCOMPARE(desk.output, QStringLiteral("Импорт: ошибок 0, предупреждений 0, сообщений 3\n"
                                         "Уравнивание: ошибок 0, предупреждений 1, сообщений 20\n"
                                         "Предобработка: ошибок 3, предупреждений 0, сообщений 2\n"));
}

void TestHeadless::savedProjectKeepsProtocol()
{
    QCOMPARE(run(words("--import small.gkf --run adjust --data first.xml --save a.orvel")).exitCode, 0);
    const DeskProcess desk =
        run(words("--open a.orvel --export heights.csv --data second.xml --pages pages"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.output,
             QStringLiteral("Экспорт: ошибок 0, предупреждений 1, сообщений 1; pages/Export.html\n"));
    const QString second = text(QStringLiteral("second.xml"));
    // What the adjustment wrote still stands before the lines of the export.
    const QString first = text(QStringLiteral("first.xml")).remove(QStringLiteral("</messagelist>\n"));
    QVERIFY(first.contains(QStringLiteral("[pvv] = ")));
    QVERIFY(second.startsWith(first));
    QVERIFY(text(QStringLiteral("heights.csv")).contains(QStringLiteral("R2,103.00000,0.000\n")));
}

void TestHeadless::fieldFilesOfATotalStationGiveCoordinates()
{
    for (const char* sample : {"given-points.gsi", "tacheometry.gsi", "tacheometry.m5"}) {
        const QString name = QLatin1String(sample);
        QVERIFY(QFile::copy(kSamples + QLatin1Char('/') + name, path(name)));
    }
    const DeskProcess desk = run(words("--import given-points.gsi --import tacheometry.gsi --run tacheometry "
                                       "--export points.csv --pages pages --save survey.orvel"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.exitCode, 0);
    QCOMPARE(desk.output,
             QStringLiteral("Импорт: ошибок 0, предупреждений 0, сообщений 4; pages/Import.html\n"
                            "Расчет тахеометрии: ошибок 1, предупреждений 0, сообщений 13; "
                            "pages/CalcTacheometry.html\n"
                            "Экспорт: ошибок 0, предупреждений 0, сообщений 1; pages/Export.html\n"));
    const QString points = text(QStringLiteral("points.csv"));
    QVERIFY(points.startsWith(QStringLiteral("point,x_m,y_m,height_m,sigma_mm\n"
                                             "G1,500.0000,800.0000,98.21500,\n")));
    QCOMPARE(points.count(QLatin1Char('\n')), 14);
    QCOMPARE(findMissing(plainText(QStringLiteral("pages/CalcTacheometry.html")),
                         {"Станций: 1, из них не вычислено: 0; наведений: 16; вычислено пунктов: 9",
                          "Пункт 201: X = 522,724, Y = 832,109, H = 95,237\u00A0м; станция G1"}),
             QStringList());

    // Results and field book come back with the project.
    QCOMPARE(run(words("--open survey.orvel --export again.csv")).exitCode, 0);
    QCOMPARE(text(QStringLiteral("again.csv")), points);
    QCOMPARE(
        run(words("--open survey.orvel --run tacheometry --export plan.geojson --save b.orvel")).exitCode, 0);
    QCOMPARE(text(QStringLiteral("plan.geojson")).count(QStringLiteral("\"type\":\"Point\"")), 13);
    // Another file of the same project; its set-ups are those of that file.
    QCOMPARE(run(words("--import tacheometry.m5 --run tacheometry --export - --fail-on error")).exitCode, 1);
}

void TestHeadless::tacheometryWithoutCoordinatesHasNoResult()
{
    QVERIFY(QFile::copy(kSamples + QStringLiteral("/tacheometry.gsi"), path(QStringLiteral("a.gsi"))));
    const DeskProcess desk = run(words("--import two-benchmarks.gkf --run tacheometry --export plan.dxf"));
    QCOMPARE(desk.exitCode, 2);
    QVERIFY(desk.errors.contains(QStringLiteral("В проекте нет тахеометрии. Импортируйте файл тахеометра.")));
    QVERIFY(desk.errors.contains(QStringLiteral("Экспортировать нечего: ни у одного пункта нет координат.")));
    QVERIFY(!QFile::exists(path(QStringLiteral("plan.dxf"))));
    QCOMPARE(run(words("--import a.gsi --run tacheometry")).exitCode, 1);
}

void TestHeadless::savedProjectIsSavedTheSameAgain()
{
    QCOMPARE(run(words("--import blunder.gkf --run adjust --save a.orvel")).exitCode, 0);
    QCOMPARE(run(words("--open a.orvel --save b.orvel")).exitCode, 0);
    QCOMPARE(readFile(path(QStringLiteral("b.orvel"))), readFile(path(QStringLiteral("a.orvel"))));
}

void TestHeadless::badUsageIsRefused_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing to read") << ""
                                     << "с --headless нужен --import FILE или --open FILE";
    QTest::newRow("unknown option") << "--import small.gkf --quick"
                                    << "непонятный параметр --quick";
    QTest::newRow("unknown export")
        << "--import small.gkf --run adjust --export heights.txt"
        << "неизвестный вид файла «heights.txt», экспорт пишет .csv, .gkf, .geojson, .dxf";
    QTest::newRow("unknown report")
        << "--import small.gkf --report heights=a.pdf"
        << "неизвестная ведомость «heights»: --report KIND=FILE, где KIND — catalogue, residuals, lines, "
           "sections";
    QTest::newRow("unknown form of a report")
        << "--import small.gkf --report lines=lines.txt"
        << "непонятно, чем записать ведомость «lines.txt»: окончание имени файла — .html, .pdf";
    QTest::newRow("report over another") << "--import small.gkf --report lines=a.pdf --report sections=a.pdf"
                                         << "--report и --report называют один и тот же файл";
    QTest::newRow("unknown run")
        << "--import small.gkf --run solve"
        << "неизвестная обработка «solve»: --run compile, adjust, l1, fixed-points, chains, tacheometry";
    QTest::newRow("no value") << "--import small.gkf --run"
                              << "для --run не указано значение";
    QTest::newRow("empty value") << "--import= --run adjust"
                                 << "для --import не указано значение";
    QTest::newRow("value of a switch") << "--import small.gkf --version=2"
                                       << "параметр --version не принимает значения";
    QTest::newRow("surplus file") << "--import small.gkf -- --export"
                                  << "лишний аргумент --export";
    QTest::newRow("network and project") << "--import small.gkf --open a.orvel"
                                         << "--import и --open вместе не действуют";
    QTest::newRow("twice") << "--open a.orvel --open a.orvel"
                           << "--open указан дважды";
    QTest::newRow("two streams") << "--import - --import -"
                                 << "стандартный ввод читается один раз: --import - указан дважды";
    QTest::newRow("template of nothing") << "--template t.json --import small.csv"
                                         << "--template относится к --import перед ним, по одному на файл";
    QTest::newRow("two templates of one file")
        << "--import small.csv --template t.json --template t.json"
        << "--template относится к --import перед ним, по одному на файл";
    QTest::newRow("template from a stream") << "--import small.csv --template -"
                                            << "--template не принимает «-»";
    QTest::newRow("kinds by turns")
        << "--import small.gkf --import a.csv --template t.json --import small.gkf"
        << "--import с --template и без него чередуются: поставьте файлы с шаблоном подряд";
    QTest::newRow("template written over") << "--import small.csv --template t.json --data t.json"
                                           << "--template и --data называют один и тот же файл";
    QTest::newRow("class") << "--import small.gkf --class V"
                           << "неизвестный класс нивелирования «V»: --class I, II, III, IV или technical";
    for (const char* sigma : {"1", "1,", "0.2,0", "-1,2", "0.2,1.5,3", "0,1001", "nan,1"})
        QTest::addRow("sigma %s", sigma)
            << QStringLiteral("--import small.gkf --sigma %1").arg(QLatin1String(sigma))
            << QStringLiteral("непригодные СКО «%1»: --sigma C,A, два числа в миллиметрах, как 0.2,1.5")
                   .arg(QLatin1String(sigma));
    QTest::newRow("language") << "--import small.gkf --language de"
                              << "неизвестный язык «de»: --language ru или en";
    QTest::newRow("level") << "--import small.gkf --fail-on message"
                           << "неизвестный уровень «message»: --fail-on error или warning";
    QTest::newRow("project from a stream") << "--open -"
                                           << "--open не принимает «-»";
    QTest::newRow("recording to a stream") << "--import small.gkf --record /dev//stdout"
                                           << "--record не принимает «/dev//stdout»";
    QTest::newRow("recording to a descriptor") << "--import small.gkf --record /proc/self/fd/1"
                                               << "--record не принимает «/proc/self/fd/1»";
    QTest::newRow("two files to one stream")
        << "--import small.gkf --export - --data -"
        << "стандартный вывод принимает что-то одно: --export или --data";
    QTest::newRow("two files to one stream by two names")
        << "--import small.gkf --export - --data /dev/stdout"
        << "стандартный вывод принимает что-то одно: --export или --data";
    QTest::newRow("two files to one") << "--import small.gkf --export out.csv --data ./out.csv"
                                      << "--export и --data называют один и тот же файл";
    QTest::newRow("over the network") << "--import small.gkf --run adjust --export small.gkf"
                                      << "--import и --export называют один и тот же файл";
    QTest::newRow("recording over the open project") << "--open a.orvel --record ./a.orvel"
                                                     << "--open и --record называют один и тот же файл";
    QTest::newRow("over the open project") << "--open a.orvel --data a.orvel"
                                           << "--open и --data называют один и тот же файл";
}

void TestHeadless::badUsageIsRefused()
{
    QFETCH(QString, arguments);
    QFETCH(QString, error);
    const DeskProcess desk = run(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QCOMPARE(desk.errors, QStringLiteral("orvel-desk: %1\n").arg(error));
    QCOMPARE(desk.exitCode, 2);
    QCOMPARE(desk.output, QString());
    QVERIFY(!QFile::exists(path(QStringLiteral("out.csv"))));
}

void TestHeadless::badInputIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("warnings");
    const char* const unknown =
        "bad.gkf: the format is not known: gama-local XML (.gkf) or the file of an instrument is wanted, of "
        "a level (GSI, M5, REC_E) or a total station (GSI, M5); text in columns is read by a template";
    QTest::newRow("empty") << QByteArray() << unknown << 0;
    QTest::newRow("truncated") << QByteArray("<gama-local>\n<network>\n")
                               << "bad.gkf, line 3: XML error: Premature end of document." << 0;
    QTest::newRow("table") << QByteArray("point;height\n") << unknown << 0;
    QTest::newRow("other root") << QByteArray("<?xml version=\"1.0\"?>\n<survey/>\n")
                                << "bad.gkf, line 2: this is not a file of a levelling network: the root "
                                   "element is <survey>, but should be <gama-local>"
                                << 0;
    QTest::newRow("no point") << QByteArray("<gama-local/>\n")
                              << "bad.gkf: there is no point in the file, nothing to be imported" << 1;
}

void TestHeadless::badInputIsRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QFETCH(int, warnings);
    writeFile(path(QStringLiteral("bad.gkf")), content);
    // In English, since Qt's own words for some of the reasons are not there in Russian.
    const DeskProcess desk = run(words("--language en --import bad.gkf --run adjust --save a.orvel"));
    QCOMPARE(desk.errors, QStringLiteral("orvel-desk: %1\n").arg(error));
    QCOMPARE(desk.exitCode, 2);
    QCOMPARE(desk.output, QStringLiteral("Import: errors 1, warnings %1, messages 0\n").arg(warnings));
    QVERIFY(!QFile::exists(path(QStringLiteral("a.orvel"))));
}

void TestHeadless::missingFileIsRefused()
{
    const DeskProcess desk = run(words("--import nowhere.gkf"));
    QCOMPARE(desk.errors,
             QStringLiteral("orvel-desk: nowhere.gkf: файл не читается: такого файла или папки нет\n"));
    QCOMPARE(desk.exitCode, 2);
}

void TestHeadless::englishTextsOnDemand()
{
    const DeskProcess desk = run(words("--language en --import small.gkf --run adjust --pages pages"));
    QCOMPARE(desk.output,
             QStringLiteral("Import: errors 1, warnings 1, messages 3; pages/Import.html\n"
                            "Adjustment: errors 1, warnings 1, messages 15; pages/Adjust.html\n"));
    const QString page = plainText(QStringLiteral("pages/Adjust.html"));
    QCOMPARE(findMissing(page, {"Adjustment\n", "Project: small\n", "Reports:", "Catalogue of heights",
                                "Results of the adjustment (7)", "Errors and warnings (1)", "Points (1)",
                                "Messages (5)", "redundant measurements 2, "}),
             QStringList());
    QVERIFY(!page.contains(QRegularExpression(QStringLiteral("[а-яА-ЯёЁ]"))));
}

void TestHeadless::damagedProjectIsRefused_data()
{
    QTest::addColumn<int>("kept");
    QTest::addColumn<int>("changed");
    QTest::addColumn<QString>("reason");
    const QString damaged = QStringLiteral("файл проекта повреждён или обрезан");
    QTest::newRow("empty") << 0 << -1 << damaged;
    QTest::newRow("cut off in the header") << 6 << -1 << damaged;
    QTest::newRow("cut off") << 200 << -1 << damaged;
    QTest::newRow("one byte changed") << -1 << 100 << damaged;
    QTest::newRow("another kind of file") << -1 << 0 << QStringLiteral("это не файл проекта");
    QTest::newRow("newer") << -1 << 7
                           << QStringLiteral(
                                  "файл записан более новой версией программы (формат 251, эта версия "
                                  "понимает формат 4)");
}

void TestHeadless::damagedProjectIsRefused()
{
    QFETCH(int, kept);
    QFETCH(int, changed);
    QFETCH(QString, reason);
    QCOMPARE(run(words("--import small.gkf --save a.orvel")).exitCode, 0);
    QByteArray bytes = readFile(path(QStringLiteral("a.orvel")));
    if (kept >= 0)
        bytes.truncate(kept);
    if (changed >= 0)
        bytes[changed] = static_cast<char>(~bytes[changed]);
    writeFile(path(QStringLiteral("a.orvel")), bytes);
    const DeskProcess desk = run(words("--open a.orvel --save b.orvel"));
    QCOMPARE(desk.errors, QStringLiteral("orvel-desk: a.orvel: %1\n").arg(reason));
    QCOMPARE(desk.exitCode, 2);
    QVERIFY(!QFile::exists(path(QStringLiteral("b.orvel"))));
}

void TestHeadless::helpAndVersion()
{
    const DeskProcess version = DeskProcess::runPlain(folder->path(), words("--version"));
    QCOMPARE(version.output, QStringLiteral("orvel-desk %1\n").arg(orvel::apps::getVersion()));
    QCOMPARE(version.errors, QString());
    QCOMPARE(version.exitCode, 0);
    const DeskProcess help = DeskProcess::runPlain(folder->path(), words("--help"));
    QVERIFY(help.output.startsWith(QStringLiteral("Использование:\n")));
    QVERIFY(help.output.contains(QStringLiteral(
        "\n  --import FILE          прочитать файл измерений: нивелирную сеть (.gkf) или файл прибора\n")));
    QVERIFY(help.output.contains(QStringLiteral("\n  -h, --help             эта справка\n")));
    QCOMPARE(help.errors, QString());
    QCOMPARE(help.exitCode, 0);
    QCOMPARE(DeskProcess::runPlain(folder->path(), words("-v")).output, version.output);
    QCOMPARE(DeskProcess::runPlain(folder->path(), words("-h")).output, help.output);
}

void TestHeadless::optionsTakeEveryForm_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::newRow("value behind a sign") << "--headless --import=small.gkf --run=adjust";
    QTest::newRow("end of the options") << "--headless --import small.gkf --run adjust --";
    QTest::newRow("Qt's own options") << "-platform offscreen --headless --import small.gkf -style fusion "
                                         "--run adjust";
}

void TestHeadless::optionsTakeEveryForm()
{
    QFETCH(QString, arguments);
    const DeskProcess desk = DeskProcess::runPlain(folder->path(), arguments.split(QLatin1Char(' ')));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.output, QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3\n"
                                         "Уравнивание: ошибок 1, предупреждений 1, сообщений 15\n"));
    QCOMPARE(desk.exitCode, 0);
}

namespace {

/// A network without a benchmark.
QByteArray makeFreeNetwork()
{
    return "<gama-local><network><points-observations><point id=\"A\" adj=\"z\"/><point id=\"B\" adj=\"z\"/>"
           "<height-differences><dh from=\"A\" to=\"B\" val=\"1\" dist=\"1\"/></height-differences>"
           "</points-observations></network></gama-local>";
}

/// Two benchmarks, and a point of that name between them.
QByteArray makeNetwork(const char* name)
{
    return QByteArray("<gama-local><network><points-observations><point id=\"R1\" z=\"1\" fix=\"z\"/>"
                      "<point id=\"R2\" z=\"3\" fix=\"z\"/><point id=\"NAME\" adj=\"z\"/><height-differences>"
                      "<dh from=\"R1\" to=\"NAME\" val=\"1\" dist=\"1\"/>"
                      "<dh from=\"NAME\" to=\"R2\" val=\"1\" dist=\"1\"/>"
                      "</height-differences></points-observations></network></gama-local>")
        .replace("NAME", name);
}

/// Runs a shell command in which "$DESK" is the program. Its exit code.
int runShell(const QString& folder, const QString& command)
{
    QProcess shell;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DESK"), QStringLiteral(DESK_PROGRAM " --headless"));
    environment.insert(QStringLiteral("ORVEL_DATA_DIR"), QStringLiteral(DESK_TEST_DATA));
    shell.setProcessEnvironment(environment);
    shell.setWorkingDirectory(folder);
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    return shell.waitForFinished(120000) && shell.exitStatus() == QProcess::NormalExit ? shell.exitCode()
                                                                                       : -1;
}

} // namespace

void TestHeadless::exitCodeTellsHowItWent_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("error");
    const QString nothing =
        QStringLiteral("ни одна секция не ведёт от исходного репера к определяемому пункту");
    QTest::newRow("errors in a protocol") << "--import blunder.gkf --run adjust" << 0 << QString();
    QTest::newRow("errors are a failure") << "--import blunder.gkf --run adjust --fail-on error" << 1
                                          << "достигнут уровень --fail-on: ошибок 10, предупреждений 4";
    QTest::newRow("no errors") << "--import two-benchmarks.gkf --fail-on warning" << 0 << QString();
    QTest::newRow("only of the runs at hand") << "--open adjusted.orvel --run compile --fail-on error" << 1
                                              << "достигнут уровень --fail-on: ошибок 3, предупреждений 0";
    QTest::newRow("warnings are no errors")
        << "--open adjusted.orvel --export a.csv --fail-on error" << 0 << QString();
    QTest::newRow("no datum") << "--import free.gkf --run adjust" << 1
                              << QStringLiteral("Уравнивать нечего: ") + nothing;
    QTest::newRow("no datum for L1") << "--import free.gkf --run l1" << 1
                                     << QStringLiteral("Анализировать нечего: ") + nothing;
    QTest::newRow("no benchmark to compare")
        << "--import free.gkf --run fixed-points" << 1 << "Анализировать нечего: в сети нет исходных реперов";
    QTest::newRow("lines without a benchmark") << "--import free.gkf --run chains" << 0 << QString();
    QTest::newRow("wrong order") << "--import free.gkf --export a.csv" << 2
                                 << "Экспортировать нечего: сеть не уравнена. Сначала выполните уравнивание.";
}

void TestHeadless::exitCodeTellsHowItWent()
{
    QFETCH(QString, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, error);
    writeFile(path(QStringLiteral("free.gkf")), makeFreeNetwork());
    QCOMPARE(run(words("--import blunder.gkf --run adjust --save adjusted.orvel")).exitCode, 0);
    const DeskProcess desk = run(arguments.split(QLatin1Char(' ')));
    QCOMPARE(desk.errors, error.isEmpty() ? QString() : QStringLiteral("orvel-desk: %1\n").arg(error));
    QCOMPARE(desk.exitCode, exitCode);
}

void TestHeadless::failedExportKeepsTheRest_data()
{
    QTest::addColumn<QString>("network");
    QTest::addColumn<QString>("exportFile");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("file cannot be written")
        << "two-benchmarks.gkf"
        << "/no/such/folder.csv"
        << "Импорт: ошибок 0, предупреждений 0, сообщений 3; pages/Import.html\n"
           "Уравнивание: ошибок 0, предупреждений 1, сообщений 20; pages/Adjust.html\n"
           "Экспорт: ошибок 1, предупреждений 0, сообщений 0; pages/Export.html\n"
        << "orvel-desk: Не удалось открыть файл «/no/such/folder.csv»: такого файла или папки нет.\n"
        << 2;
    QTest::newRow("nothing to export")
        << "free.gkf"
        << "out.csv"
        << "Импорт: ошибок 0, предупреждений 0, сообщений 2; pages/Import.html\n"
           "Уравнивание: ошибок 3, предупреждений 0, сообщений 1; pages/Adjust.html\n"
           "Экспорт: ошибок 1, предупреждений 0, сообщений 0; pages/Export.html\n"
        << "orvel-desk: Уравнивать нечего: ни одна секция не ведёт от исходного репера к определяемому "
           "пункту\n"
           "orvel-desk: Экспортировать нечего: уравнивание не дало высот, причина в его протоколе.\n"
        << 1;
}

void TestHeadless::failedExportKeepsTheRest()
{
    QFETCH(QString, network);
    QFETCH(QString, exportFile);
    QFETCH(QString, output);
    QFETCH(QString, errors);
    QFETCH(int, exitCode);
    writeFile(path(QStringLiteral("free.gkf")), makeFreeNetwork());
    const DeskProcess desk = run(words("--run adjust --pages pages --data data.xml --save a.orvel --import") +
                                 QStringList{network, QStringLiteral("--export"), exportFile});
    QCOMPARE(desk.output, output);
    QCOMPARE(desk.errors, errors);
    QCOMPARE(desk.exitCode, exitCode);
    QVERIFY(text(QStringLiteral("pages/Adjust.html")).contains(QStringLiteral("<h1>Уравнивание</h1>")));
    QVERIFY(text(QStringLiteral("data.xml")).contains(QStringLiteral("</messagelist>")));
    QCOMPARE(run(words("--open a.orvel --run compile")).exitCode, 0);
    QVERIFY(!QFile::exists(path(QStringLiteral("out.csv"))));
}

void TestHeadless::failedOutputsAreEachTold()
{
    writeFile(path(QStringLiteral("file")), "");
    const DeskProcess desk =
        run(words("--import small.gkf --pages file/pages --data file/data.xml --save file/a.orvel"));
    // No page was written, and none is named.
    QCOMPARE(desk.output, QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3\n"));
    QCOMPARE(desk.errors,
             QStringLiteral(
                 "orvel-desk: не удалось создать папку «file/pages»: часть пути — файл, а не папка\n"
                 "orvel-desk: Не удалось открыть файл «file/data.xml»: часть пути — файл, а не папка.\n"
                 "orvel-desk: Не удалось открыть файл «file/a.orvel»: часть пути — файл, а не папка.\n"));
    QCOMPARE(desk.exitCode, 2);
}

void TestHeadless::unwritableOutputIsAFailure_data()
{
    QTest::addColumn<QString>("redirection");
    QTest::newRow("full") << ">/dev/full";
    QTest::newRow("closed") << ">&-";
    QTest::newRow("nobody reads") << "| true";
}

void TestHeadless::unwritableOutputIsAFailure()
{
    QFETCH(QString, redirection);
    const QString command = QStringLiteral("( sleep 0.3; $DESK --import small.gkf --save a.orvel 2>errors; "
                                           "echo $? >code ) %1");
    QCOMPARE(runShell(folder->path(), command.arg(redirection)), 0);
    QTRY_COMPARE(text(QStringLiteral("code")), QStringLiteral("2\n"));
    QVERIFY(
        text(QStringLiteral("errors")).startsWith(QStringLiteral("orvel-desk: Не удалось записать файл ")));
    QCOMPARE(text(QStringLiteral("errors")).count(QLatin1Char('\n')), 1);
    QVERIFY(QFile::exists(path(QStringLiteral("a.orvel"))));
    // So is that of the help.
    QCOMPARE(runShell(folder->path(), QStringLiteral(DESK_PROGRAM " --help 2>errors >/dev/full")), 2);
}

void TestHeadless::streamsAreReadAndWritten()
{
    QCOMPARE(
        runShell(folder->path(), QStringLiteral("cat small.gkf | $DESK --import - --run adjust --export - "
                                                ">out.csv 2>errors")),
        0);
    QCOMPARE(run(words("--import small.gkf --run adjust --export expected.csv --data expected.xml")).exitCode,
             0);
    QCOMPARE(text(QStringLiteral("out.csv")), text(QStringLiteral("expected.csv")));
    QCOMPARE(text(QStringLiteral("errors")),
             QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3\n"
                            "Уравнивание: ошибок 1, предупреждений 1, сообщений 15\n"
                            "Экспорт: ошибок 0, предупреждений 1, сообщений 1\n"));
    QCOMPARE(runShell(folder->path(), QStringLiteral("$DESK --import small.gkf --data - >data.xml 2>errors")),
             0);
    QCOMPARE(withoutDates(text(QStringLiteral("data.xml"))),
             QString::fromUtf8(readFile(QStringLiteral(DESK_EXPECTED "/data.xml"))));
    QVERIFY(!QFile::exists(path(QStringLiteral("-"))));
    QCOMPARE(
        runShell(folder->path(), QStringLiteral("$DESK --language en --import - </dev/null 2>errors >out")),
        2);
    QCOMPARE(text(QStringLiteral("errors")),
             QStringLiteral("orvel-desk: standard input: the format is not known: gama-local XML (.gkf) or "
                            "the file of an instrument is wanted, of a level (GSI, M5, REC_E) or a total "
                            "station (GSI, M5); text in columns is read by a "
                            "template\n"));
}

void TestHeadless::fieldFileOfALevelIsAdjusted()
{
    QVERIFY(QFile::copy(QStringLiteral(DESK_SAMPLES "/level-loop.gsi"), path(QStringLiteral("day.1"))));
    QCOMPARE(run(words("--import day.1 --run compile --run adjust --export day.csv")).output,
             QStringLiteral("Импорт: ошибок 2, предупреждений 0, сообщений 11\n"
                            "Предобработка: ошибок 1, предупреждений 0, сообщений 3\n"
                            "Уравнивание: ошибок 0, предупреждений 4, сообщений 16\n"
                            "Экспорт: ошибок 0, предупреждений 0, сообщений 1\n"));
    QCOMPARE(runShell(folder->path(), QStringLiteral("cat day.1 | $DESK --import - --run adjust --export - "
                                                     ">pipe.csv 2>errors")),
             0);
    QCOMPARE(text(QStringLiteral("pipe.csv")), text(QStringLiteral("day.csv")));
    // The constant part of the deviations stands in the exported network with each section.
    QCOMPARE(run(words("--import day.1 --class II --sigma 0.2,1.5 --export day.gkf")).exitCode, 0);
    QCOMPARE(text(QStringLiteral("day.gkf")).count(QLatin1String(" stdev=\"")), 6);
}

void TestHeadless::textFilesAreImportedByTemplates()
{
    for (const char* sample : {"line.csv", "line-template.json", "line-heights.txt", "heights-template.json"})
        QVERIFY(
            QFile::copy(kSamples + QLatin1Char('/') + QLatin1String(sample), path(QLatin1String(sample))));
    const DeskProcess desk =
        run(words("--import line.csv --template line-template.json --import line-heights.txt "
                  "--template heights-template.json --run adjust --export out.csv --save a.orvel"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.exitCode, 0);
    QVERIFY(desk.output.startsWith(
        QStringLiteral("Импорт по шаблону: ошибок 0, предупреждений 0, сообщений 10\n")));
    QCOMPARE(text(QStringLiteral("out.csv")), QStringLiteral("point,height_m,sigma_mm\n"
                                                             "Рп 17,102.34100,0.000\n"
                                                             "М1,103.57582,0.755\n"
                                                             "М2,103.16406,0.889\n"
                                                             "М3,105.17188,0.789\n"
                                                             "Рп 21,104.34244,0.251\n"));
    // Each kind of file has a protocol of its own, and they are kept in one project.
    const DeskProcess both =
        run(words("--import small.gkf --import line.csv --template line-template.json --pages pages"));
    QCOMPARE(both.exitCode, 0);
    QVERIFY(QFile::exists(path(QStringLiteral("pages/Import.html"))));
    QVERIFY(plainText(QStringLiteral("pages/ImportTemplate.html"))
                .contains(QStringLiteral(
                    "Добавлено к сети пунктов: 5, секций: 8; совпало с имевшимися пунктов: 0")));
}

void TestHeadless::brokenTemplateStartsNothing()
{
    writeFile(path(QStringLiteral("t.json")), "{\"separator\": \";\", \"columns\": [\"from\", \"to\"]}");
    const DeskProcess desk = run(words("--import small.gkf --import a.csv --template t.json --save a.orvel"));
    QCOMPARE(desk.errors,
             QStringLiteral("orvel-desk: Шаблон «t.json»: в columns нет столбца dh (превышение); для таблицы "
                            "секций нужны from, to и dh\n"));
    QCOMPARE(desk.exitCode, 2);
    QVERIFY(!QFile::exists(path(QStringLiteral("a.orvel"))));
}

void TestHeadless::ownTolerancesAreKept()
{
    writeFile(path(QStringLiteral("own.json")),
              R"({"classes": {"IV": {"loops": {"k": 15}}}, "confidence": 0.99, "heightDecimals": 3,
                  "millimetreDecimals": 1})");
    QCOMPARE(run(words("--import two-benchmarks.gkf --tolerances own.json --save a.orvel")).exitCode, 0);
    const DeskProcess desk =
        run(words("--open a.orvel --run compile --run adjust --run l1 --run fixed-points "
                  "--run chains --pages pages"));
    QCOMPARE(desk.errors, QString());
    const char* const own = "±15\u00A0мм·√L (IV класс, свои допуски), L — длина, км; без длины — 3 СКО";
    const char* const level = "Доверительная вероятность критериев задана в допусках проекта: 0,99";
    const auto missing = [this](const char* page, const std::vector<const char*>& texts) {
        return findMissing(plainText(QStringLiteral("pages/%1.html").arg(QLatin1String(page))), texts);
    };
    QCOMPARE(
        missing("Compile", {"Допуск невязок ходов и полигонов: ", own,
                            "Допуск расхождений измерений секции: ±20\u00A0мм·√L (IV класс, свои допуски)",
                            "Ход BMX → A → BMY: невязка \u221260,0\u00A0мм, больше допуска ±39,7\u00A0мм"}),
        QStringList());
    QCOMPARE(missing("Adjust", {level, "Пункт A: H = 105,150\u00A0м, СКО априорная 1,1\u00A0мм",
                                "BMX – A: h = 5,100\u00A0м, v = +50,4\u00A0мм",
                                "критерий χ², доверительная вероятность 0,99"}),
             QStringList());
    QCOMPARE(
        missing("L1Analysis", {level, "Секция BMX – A: v = +60,0\u00A0мм", "Пункт A: H = 105,160\u00A0м"}),
        QStringList());
    QCOMPARE(missing("FixedPointsAnalysis", {level, own, "Доверительная вероятность 0,99", "±33,5\u00A0мм"}),
             QStringList());
    QCOMPARE(missing("AutoChainTracingAnalysis", {"Допуск невязок ходов: ", own}), QStringList());
    // The network itself keeps the level of its file.
    QCOMPARE(run(words("--open a.orvel --export out.gkf")).exitCode, 0);
    QVERIFY(text(QStringLiteral("out.gkf")).contains(QStringLiteral("conf-pr=\"0.95\"")));
}

void TestHeadless::brokenTolerancesStartNothing()
{
    writeFile(path(QStringLiteral("own.json")), R"({"confidence": 2})");
    const DeskProcess desk = run(words("--import small.gkf --tolerances own.json --save a.orvel"));
    QCOMPARE(
        desk.errors,
        QStringLiteral("orvel-desk: Допуски «own.json»: непригодное значение ключа «confidence»: допустимо "
                       "число от 0,5 до 0,9999\n"));
    QCOMPARE(desk.exitCode, 2);
    QVERIFY(!QFile::exists(path(QStringLiteral("a.orvel"))));
}

void TestHeadless::logIsNotEmptied()
{
    writeFile(path(QStringLiteral("log")), "before\n");
    QCOMPARE(runShell(folder->path(), QStringLiteral("$DESK --import two-benchmarks.gkf --run adjust "
                                                     "--export /dev/stdout >>log 2>errors")),
             0);
    QVERIFY(text(QStringLiteral("log")).startsWith(QStringLiteral("before\npoint,height_m,sigma_mm\n")));
    // The output has the stream for itself, as by its other name.
    QVERIFY(!text(QStringLiteral("log")).contains(QStringLiteral("ошибок")));
    QVERIFY(text(QStringLiteral("errors"))
                .endsWith(QStringLiteral("Экспорт: ошибок 0, предупреждений 0, сообщений 1\n")));
}

void TestHeadless::fileUrlsAreTaken()
{
    QVERIFY(QFile::rename(path(QStringLiteral("small.gkf")), path(QStringLiteral("a b.gkf"))));
    const auto url = [this](const char* name) {
        return QString::fromLatin1(QUrl::fromLocalFile(path(QString::fromUtf8(name))).toEncoded());
    };
    const DeskProcess desk =
        run({QStringLiteral("--import"), url("a b.gkf"), QStringLiteral("--run"), QStringLiteral("adjust"),
             QStringLiteral("--export"), url("é 1.csv"), QStringLiteral("--pages"), url("pages"),
             QStringLiteral("--data"), url("data.xml"), QStringLiteral("--save"),
             url("a.orvel").replace(QLatin1String("file://"), QLatin1String("file://localhost"))});
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.exitCode, 0);
    for (const char* name : {"é 1.csv", "pages/Import.html", "data.xml", "a.orvel"})
        QVERIFY2(QFile::exists(path(QString::fromUtf8(name))), name);
    QCOMPARE(
        run({QStringLiteral("--open"), url("a.orvel"), QStringLiteral("--run"), QStringLiteral("compile")})
            .exitCode,
        0);
}

void TestHeadless::pagesWithoutTheirLookAreToldOf()
{
    QVERIFY(QDir(folder->path()).mkpath(QStringLiteral("data/Protocol")));
    QCOMPARE(
        runShell(folder->path(), QStringLiteral("ORVEL_DATA_DIR=$PWD/data $DESK --import small.gkf --pages "
                                                "pages >out 2>errors")),
        2);
    QCOMPARE(text(QStringLiteral("out")),
             QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3; pages/Import.html\n"));
    QVERIFY(text(QStringLiteral("errors"))
                .contains(QRegularExpression(
                    QStringLiteral("(^|\n)orvel-desk: Страницы без оформления: шаблон из папки "
                                   "«%1» не скопирован в «.*»\\.\n")
                        .arg(path(QStringLiteral("data/Protocol"))))));
    QVERIFY(QFile::exists(path(QStringLiteral("pages/Import.html"))));
}

void TestHeadless::pipeWithoutWriterIsGivenUp()
{
    // As Ctrl+C at a terminal does.
    QCOMPARE(
        runShell(folder->path(), QStringLiteral("mkfifo pipe.gkf; $DESK --import pipe.gkf >out 2>errors & "
                                                "sleep 1; kill -TERM $!; wait $!")),
        128 + SIGTERM);
    QCOMPARE(text(QStringLiteral("out")), QString());
}

void TestHeadless::pipeWithAWriterIsRead()
{
    QCOMPARE(
        runShell(folder->path(), QStringLiteral("mkfifo pipe.gkf; (sleep 0.3; cat small.gkf >pipe.gkf) & "
                                                "$DESK --import pipe.gkf >out 2>errors")),
        0);
    QCOMPARE(text(QStringLiteral("out")),
             QStringLiteral("Импорт: ошибок 1, предупреждений 1, сообщений 3\n"));
}

void TestHeadless::namesOnStderrShowControlCharacters()
{
    const DeskProcess desk = run({QStringLiteral("--import"), QStringLiteral("a\x1b[31m\nb\u202e.gkf")});
    QCOMPARE(desk.errors, QStringLiteral("orvel-desk: a\\x1b[31m\\nb\\u202e.gkf: файл не читается: "
                                         "такого файла или папки нет\n"));
}

void TestHeadless::formulasAreGuarded()
{
    for (const char* name : {"=1+2", "+1+2", "-cmd", "@x"}) {
        writeFile(path(QStringLiteral("formula.gkf")), makeNetwork(name));
        QCOMPARE(run(words("--import formula.gkf --run adjust --export out.csv")).exitCode, 0);
        QCOMPARE(text(QStringLiteral("out.csv")), QStringLiteral("point,height_m,sigma_mm\nR1,1.00000,0.000\n"
                                                                 "R2,3.00000,0.000\n'%1,2.00000,0.000\n")
                                                      .arg(QLatin1String(name)));
    }
    // Numbers are none.
    writeFile(path(QStringLiteral("formula.gkf")), makeNetwork("-12"));
    QCOMPARE(run(words("--import formula.gkf --run adjust --export out.csv")).exitCode, 0);
    QVERIFY(text(QStringLiteral("out.csv")).endsWith(QStringLiteral("\n-12,2.00000,0.000\n")));
}

void TestHeadless::reportsAreWritten()
{
    const DeskProcess desk =
        run(words("--import small.gkf --run adjust --report catalogue=heights.html --report sections=s.pdf"));
    QCOMPARE(desk.errors, QString());
    QCOMPARE(desk.exitCode, 0);
    const QString page = text(QStringLiteral("heights.html"));
    QCOMPARE(findMissing(page, {"<h1>Каталог высот</h1>", "<p>Проект: small</p>", "<td>101,00140</td>"}),
             QStringList());
    QCOMPARE(page.count(QStringLiteral("<img alt=\"Схема сети\" src=\"data:image/svg+xml;base64,")), 1);
    QVERIFY(readFile(path(QStringLiteral("s.pdf"))).startsWith("%PDF-"));
}

void TestHeadless::reportWithoutResultsIsAFailure()
{
    const DeskProcess desk =
        run(words("--import small.gkf --report catalogue=heights.html --report lines=lines.html"));
    QCOMPARE(desk.errors, QStringLiteral("orvel-desk: ведомость «Каталог высот» составляется по результатам, "
                                         "а сеть не уравнена\n"));
    QCOMPARE(desk.exitCode, 1);
    QVERIFY(!QFile::exists(path(QStringLiteral("heights.html"))));
    QVERIFY(text(QStringLiteral("lines.html")).contains(QStringLiteral("<h1>Ведомость ходов</h1>")));
}

void TestHeadless::projectNameHasNoMarkUp()
{
    const QString name = QStringLiteral("<meta http-equiv=refresh>.gkf");
    QVERIFY(QFile::rename(path(QStringLiteral("small.gkf")), path(name)));
    QCOMPARE(
        run({QStringLiteral("--import"), name, QStringLiteral("--pages"), QStringLiteral("pages")}).exitCode,
        0);
    const QString page = text(QStringLiteral("pages/Import.html"));
    QVERIFY(!page.contains(QStringLiteral("<meta http-equiv=refresh")));
    QVERIFY(page.contains(QStringLiteral("‹meta http-equiv=refresh›")));
}

void TestHeadless::systemDecidesOnTheLanguage_data()
{
    QTest::addColumn<QString>("environment");
    QTest::addColumn<QString>("title");
    const QString russian = QStringLiteral("Импорт");
    const QString english = QStringLiteral("Import");
    QTest::newRow("nothing") << "" << english;
    QTest::newRow("C") << "LC_ALL=C" << english;
    QTest::newRow("C of today") << "LANG=C.UTF-8" << english;
    QTest::newRow("German") << "LC_ALL=de_DE.UTF-8" << english;
    QTest::newRow("British") << "LANG=en_GB.UTF-8" << english;
    QTest::newRow("Russian") << "LANG=ru_RU.UTF-8" << russian;
    QTest::newRow("Russian in Ukraine") << "LANG=ru_UA.UTF-8" << russian;
    QTest::newRow("Russian with points in numbers") << "LANG=ru_RU.UTF-8 LC_NUMERIC=en_US.UTF-8" << russian;
    QTest::newRow("English with commas in numbers") << "LANG=en_US.UTF-8 LC_NUMERIC=ru_RU.UTF-8" << english;
    QTest::newRow("Ukrainian, else Russian") << "LANG=uk_UA.UTF-8 LANGUAGE=uk:ru:en" << russian;
    QTest::newRow("German, else English") << "LANG=de_DE.UTF-8 LANGUAGE=de:en:ru" << english;
}

void TestHeadless::systemDecidesOnTheLanguage()
{
    QFETCH(QString, environment);
    QFETCH(QString, title);
    QCOMPARE(
        runShell(folder->path(), QStringLiteral("unset LC_ALL LANG LANGUAGE; %1 $DESK --import small.gkf "
                                                "--pages pages >out")
                                     .arg(environment)),
        0);
    QVERIFY(text(QStringLiteral("pages/Import.html")).contains(QStringLiteral("<h1>%1</h1>").arg(title)));
}

QTEST_GUILESS_MAIN(TestHeadless)
#include "tst_headless.moc"

#include "apps/desk/document/NetworkItems.h"
#include "apps/desk/runs/ImportRun.h"
#include "apps/desk/templates/TemplateFile.h"
#include "host/files/Error.h"
#include "tests/desk/LineCollector.h"
#include "tests/support/TestFiles.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// What the import writes of text files, and of several files; and which templates it takes.
class TestImportFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void protocolOfATable();
    void protocolOfPoints();
    void everyRowProblemHasItsSentence_data();
    void everyRowProblemHasItsSentence();
    void tableWithoutRowsIsRefused();
    void filesNameThemselves();
    void changesAreTold();
    void sameFileTwiceIsTold();
    void lostPointsAreTold();
    void failureOfOneFileTakesNothing();
    void namesAreShownAsText();
    void templatesAreRefusedInASentence_data();
    void templatesAreRefusedInASentence();
    void templateComesBackFromItsFile();
    void templateWithoutNameHasThatOfTheFile();
    void missingTemplateIsNamed();
    void sourcesAreGrouped();

private:
    QString write(const char* name, const QByteArray& text);
    static levelling::TableTemplate parse(const char* json)
    {
        return templatefile::parse(json, QStringLiteral("t"));
    }
    ImportSource source(const char* name, const char* json, const QByteArray& text)
    {
        return {write(name, text), parse(json)};
    }
    /// Imports the files; the lines are the collector's, without progress.
    QString import(const std::vector<ImportSource>& sources, const NetworkSnapshot& base = {});
    QStringList linesWith(const char* text) const { return monitor.lines.filter(QString::fromUtf8(text)); }

    std::unique_ptr<QTemporaryDir> folder;
    LineCollector monitor;
    std::shared_ptr<const NetworkSnapshot> taken;
};

namespace {

const char* const kSections = R"({"name": "line", "separator": ";", "decimal": ",", "skipRows": 1,
    "columns": ["from", "to", "dh", "length", "stations", "sigma"], "units": {"dh": "mm"}})";
const char* const kPoints = R"({"separator": " ", "columns": ["point", "height", "sigma"]})";
const char* const kPlain =
    R"({"separator": ";", "columns": ["from", "to", "dh", "length", "stations", "sigma"]})";

} // namespace

void TestImportFiles::init()
{
    folder = std::make_unique<QTemporaryDir>();
    monitor = LineCollector();
    taken.reset();
}

QString TestImportFiles::write(const char* name, const QByteArray& text)
{
    const QString path = folder->filePath(QString::fromUtf8(name));
    writeFile(path, text);
    return path;
}

QString TestImportFiles::import(const std::vector<ImportSource>& sources, const NetworkSnapshot& base)
{
    const QString failure = runImport(
        monitor, sources, base,
        [this](const levelling::Network& network, const std::shared_ptr<const tacheometry::FieldBook>& book) {
            auto snapshot = std::make_shared<NetworkSnapshot>();
            snapshot->network = network;
            snapshot->fieldBook = book;
            for (std::size_t i = 0; i < network.points.size(); ++i)
                snapshot->pointIds.push_back(static_cast<LONGID>(i) + 1);
            for (std::size_t i = 0; i < network.sections.size(); ++i) {
                snapshot->sectionIds.push_back(static_cast<LONGID>(i) + 101);
                snapshot->sectionNames.append(QStringLiteral("s%1").arg(i + 1));
            }
            taken = snapshot;
            return taken;
        });
    monitor.lines = monitor.lines.filter(QRegularExpression(QStringLiteral("^[a-z]+:")));
    monitor.lines.replaceInStrings(folder->path() + QLatin1Char('/'), QString());
    return failure;
}

void TestImportFiles::protocolOfATable()
{
    QCOMPARE(import({source("line.csv", kSections,
                            "от;до;мм\n"
                            "A;B;1234,5;0,5\n"
                            "\n"
                            "# note\n"
                            "B;C;-345,6;;7\n"
                            "C;D\n")}),
             QString());
    QCOMPARE(monitor.lines.join(QLatin1Char('\n')),
             QStringLiteral(
                 "service:Файл: line.csv\n"
                 "service:Шаблон: «line»; разделитель «;»; десятичный знак «,»; кодировка UTF-8; "
                 "столбцы: начальный пункт | конечный пункт | превышение | длина | число штативов | СКО, мм\n"
                 "message:Единицы: превышения — мм, длины — км, СКО — мм\n"
                 "error:Строка файла 6: в столбце dh пусто, строка пропущена\n"
                 "message:Прочитано строк: 6, из них с данными: 2, пропущено: 4\n"
                 "message:Пропущено строк шапки: 1 (от начала файла)\n"
                 "message:Пропущено пустых строк: 1 (строки файла 3)\n"
                 "message:Пропущено строк с комментарием: 1 (строки файла 4)\n"
                 "message:Секций без длины и СКО, вес которых взят по числу штативов (10 на "
                 "1\u00A0км): 1\n"
                 "message:Прочитано пунктов: 3, из них исходных реперов: 0; секций: 2\n"
                 "message:Пункты, известные только по секциям, считаются определяемыми: 3 ([1:A], "
                 "[2:B], [3:C])\n"
                 "message:Априорная СКО на 1\u00A0км хода: 10,000\u00A0мм; точность результатов "
                 "оценивается по апостериорной СКО"));
    QCOMPARE(taken->network.sections[0].difference, 1.2345);
    QCOMPARE(taken->network.sources, QStringList(QStringLiteral("line.csv")));
}

void TestImportFiles::protocolOfPoints()
{
    QCOMPARE(import({source("h.txt", kPoints, "A 100.5\nB 101.5 2\n")}), QString());
    QVERIFY(monitor.lines.contains(QStringLiteral("message:Единицы: высоты и координаты — м, СКО — мм")));
    QVERIFY(monitor.lines.contains(
        QStringLiteral("message:Прочитано пунктов: 2, из них исходных реперов: 2; секций: 0")));
    QCOMPARE(linesWith("В сети только пункты").size(), 1);
    QVERIFY(linesWith("не ведёт ни одна секция").isEmpty());
    QVERIFY(taken->network.points[1].observed);
}

void TestImportFiles::everyRowProblemHasItsSentence_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* name, const QByteArray& rows, const char* line) {
        QTest::newRow(name) << rows << QString::fromUtf8(line);
    };
    row("open quote", "A;B;1;1\n\"A;B",
        "error:Строка файла 2: кавычка открыта и не закрыта, строка пропущена");
    row("empty cell", "A;B;1;1\n;B;1", "error:Строка файла 2: в столбце from пусто, строка пропущена");
    row("no number", "A;B;1;1\nA;B;<b>",
        "error:Строка файла 2: столбец dh: «&lt;b&gt;» — непригодное число, строка пропущена");
    row("decimal sign", "A;B;1;1\nA;B;1,5",
        "error:Строка файла 2: столбец dh: «1,5» — число с другим десятичным знаком, в шаблоне «.»; строка "
        "пропущена");
    row("surplus", "A;B;1;1;1;1;x",
        "warning:Строка файла 1: здесь и дальше строк, в которых данные есть и правее последнего столбца "
        "шаблона: 1; лишнее не прочитано, столбцов в шаблоне 6");
    row("undecoded", "A\xFF;B;1;1",
        "warning:Строка файла 1: здесь и дальше строк со знаками, которых нет в кодировке UTF-8: 1; "
        "проверьте "
        "кодировку в шаблоне");
    row("repeated", "A;B;1;1\nA;B;1;1",
        "warning:Строка файла 2: секция [1:A] – [2:B] с тем же превышением уже есть в строке файла 1, учтены "
        "обе; лишнюю удалите");
    row("no weight", "A;B;1",
        "warning:Строка файла 1: секция [1:A] – [2:B]: нет ни длины, ни числа штативов, ни СКО; принята "
        "априорная СКО 1\u00A0км хода");
    row("stations", "A;B;1;1;0",
        "error:Строка файла 1: секция [1:A] – [2:B]: непригодное число штативов «0», считается не заданным");
    row("steep", "A;B;-1500.5;1.0005",
        "warning:Строка файла 1: секция [1:A] – [2:B]: превышение \u22121500,5\u00A0м больше правдоподобного "
        "для "
        "её длины 1000,5\u00A0м; проверьте единицы");
    row("unit", "A;B;1500;1\nB;C;-1600.5;1\nC;D;1700;1",
        "warning:столбец dh: среднее по величине значение 1600,5 неправдоподобно для единицы m; проверьте "
        "единицу "
        "в шаблоне");
    row("mark",
        QByteArray("\xFF\xFE"
                   "A\0;\0B\0;\0"
                   "1\0",
                   12),
        "warning:файл начинается меткой кодировки UTF-16LE, он прочитан в ней, а не в кодировке шаблона "
        "UTF-8");
}

void TestImportFiles::everyRowProblemHasItsSentence()
{
    QFETCH(QByteArray, rows);
    QFETCH(QString, line);
    QCOMPARE(import({source("t.csv", kPlain, rows)}), QString());
    QVERIFY2(monitor.lines.contains(line), qUtf8Printable(monitor.lines.join(QLatin1Char('\n'))));
}

void TestImportFiles::tableWithoutRowsIsRefused()
{
    const ImportSource nothing = source("t.csv", kPlain, ";B;<1>\n");
    const QString reason = QStringLiteral("t.csv: в файле нет ни одного пункта, импортировать нечего");
    QCOMPARE(import({source("a.csv", kPlain, "A;B;1;1\n"), nothing}), folder->filePath(reason));
    QCOMPARE(
        monitor.lines,
        QStringList({QStringLiteral("service:Файл: t.csv"),
                     QStringLiteral("warning:в файле нет ни одной пригодной строки; проверьте разделитель "
                                    "и столбцы шаблона"),
                     QStringLiteral("warning:Строка файла 1: в столбце from пусто, строка пропущена"),
                     QStringLiteral("error:") + reason}));
    QVERIFY(!taken);
}

void TestImportFiles::filesNameThemselves()
{
    QCOMPARE(import({source("a.csv", kPlain, "A;B;1;1\nx\n"), source("b.csv", kPlain, "B;C;1;1\n;;;\ny\n")}),
             QString());
    QVERIFY(monitor.lines.contains(
        QStringLiteral("error:a.csv: Строка файла 2: в столбце to пусто, строка пропущена")));
    QVERIFY(monitor.lines.contains(
        QStringLiteral("error:b.csv: Строка файла 3: в столбце to пусто, строка пропущена")));
    QVERIFY(monitor.lines.contains(QStringLiteral(
        "message:b.csv: Добавлено к сети пунктов: 1, секций: 1; совпало с имевшимися пунктов: 1")));
    QVERIFY(linesWith("a.csv: Добавлено").isEmpty());
    QCOMPARE(taken->network.sections[1].source, 1);
}

void TestImportFiles::changesAreTold()
{
    NetworkSnapshot base;
    levelling::Point point;
    point.id = QStringLiteral("A");
    point.height = 100.5;
    point.fixed = true;
    point.declared = true;
    base.network.points = {point};
    QCOMPARE(import({source("h.txt", kPoints, "# heights\nA 100.6 2\n")}, base), QString());
    QVERIFY(monitor.lines.contains(QStringLiteral(
        "warning:Строка файла 2: пункт [1:A]: отметка 100,60000\u00A0м вместо прежней 100,50000\u00A0м")));
    QVERIFY(monitor.lines.contains(QStringLiteral(
        "warning:Строка файла 2: отметка пункта [1:A] теперь измерена с СКО и не удерживается")));
    const NetworkSnapshot observed = *taken;
    QCOMPARE(import({source("h.txt", kPoints, "A 100.6\n")}, observed), QString());
    QVERIFY(
        monitor.lines.contains(QStringLiteral("warning:Строка файла 1: пункт [1:A] теперь исходный репер")));
}

void TestImportFiles::sameFileTwiceIsTold()
{
    const ImportSource file = source("a.csv", kPlain, "A;B;1;1\nB;C;1;1\n");
    QCOMPARE(import({file, file}), QString());
    QVERIFY(monitor.lines.contains(QStringLiteral(
        "warning:a.csv: Секции с теми же концами и превышением уже были в сети, учтены ещё раз: 2 ([103:s3], "
        "[104:s4]). Если файл импортирован дважды, замените сеть")));
    QCOMPARE(int(taken->network.sections.size()), 4);
}

void TestImportFiles::lostPointsAreTold()
{
    QCOMPARE(import({source("a.csv", kPlain, "A;B;1;1\n"), source("h.txt", kPoints, "A 1\nZ 2\n")}),
             QString());
    QVERIFY(monitor.lines.contains(
        QStringLiteral("warning:Пункты, к которым не ведёт ни одна секция: 1 ([3:Z]). Проверьте их имена")));
    QVERIFY(monitor.lines.contains(
        QStringLiteral("message:Пункты, известные только по секциям, считаются определяемыми: 1 ([2:B])")));
}

void TestImportFiles::failureOfOneFileTakesNothing()
{
    const ImportSource good = source("a.csv", kPlain, "A;B;1;1\n");
    const ImportSource bad = source("b.csv", kPlain, QByteArray(20000, 'x'));
    const QString failure = import({good, bad});
    QVERIFY2(
        failure.endsWith(QStringLiteral("b.csv, строка 1: строка длиннее 10000 знаков, файл не прочитан; "
                                        "проверьте, что это текст, и его кодировку")),
        qUtf8Printable(failure));
    QVERIFY(!taken);
    QCOMPARE(monitor.lines.size(), 2);
    QCOMPARE(import({good, {folder->filePath(QStringLiteral("missing.csv")), good.format}}).isEmpty(), false);
    QVERIFY(!taken);
}

void TestImportFiles::namesAreShownAsText()
{
    QCOMPARE(import({source("a<i>&%1.csv",
                            R"({"name": "<b>%1", "separator": ";", "columns": ["from", "to", "dh"]})",
                            "<b>%1;orvel://locate-item?id=1;1\n\"\"\"q\";<script>;x\n")}),
             QString());
    const QString all = monitor.lines.join(QLatin1Char('\n'));
    QVERIFY2(!all.contains(QLatin1Char('<')), qUtf8Printable(all));
    QVERIFY(all.contains(QStringLiteral("service:Шаблон: «&lt;b&gt;%1»;")));
    QVERIFY(all.contains(QStringLiteral("service:Файл: a&lt;i&gt;&amp;%1.csv")));
}

void TestImportFiles::templatesAreRefusedInASentence_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const char* json, const char* reason) {
        QTest::newRow(name) << QByteArray(json) << QString::fromUtf8(reason);
    };
    const char* const roles =
        "непригодное значение ключа «columns»: допустимо список из skip, from, to, dh, length, "
        "stations, sigma, date, note, point, height, x, y";
    const char* const signs = "непригодное значение ключа «separator»: допустимо один знак, например «;», "
                              "«,», «|», пробел или табуляция";
    row("no JSON", "{\n\"separator\" \";\"}", "это не JSON, ошибка в строке 2");
    row("nothing", "", "это не JSON, ошибка в строке 1");
    row("a list", "[1]",
        "шаблон — это объект JSON {…} с ключами name, separator, widths, decimal, skipRows, encoding, "
        "comment, "
        "columns, units");
    row("unknown key", R"({"separtor": ";"})",
        "неизвестный ключ «separtor»: допустимы name, separator, widths, decimal, skipRows, encoding, "
        "comment, "
        "columns, units");
    row("no division", R"({"columns": ["from"]})",
        "нужен один из ключей separator (знак между столбцами) и widths (ширины столбцов)");
    row("two divisions", R"({"separator": ";", "widths": [1]})",
        "нужен один из ключей separator (знак между столбцами) и widths (ширины столбцов)");
    row("long separator", R"({"separator": ";;"})", signs);
    row("separator is a number", R"({"separator": 1})", signs);
    row("widths are no list", R"({"widths": 4})",
        "непригодное значение ключа «widths»: допустимо список целых чисел");
    row("width of zero", R"({"widths": [4, 0]})",
        "непригодное значение ключа «widths»: допустимо целое число от 1 до 10000");
    row("decimal", R"({"separator": ";", "decimal": "'"})",
        "непригодное значение ключа «decimal»: допустимо «.», «,»");
    row("rows", R"({"separator": ";", "skipRows": 1.5})",
        "непригодное значение ключа «skipRows»: допустимо целое число от 0 до 1000000");
    row("encoding", R"({"separator": ";", "encoding": "klingon"})",
        "непригодное значение ключа «encoding»: допустимо UTF-8, windows-1251, UTF-16, system или другое "
        "известное имя кодировки");
    row("comment", R"({"separator": ";", "comment": "01234567890"})",
        "непригодное значение ключа «comment»: допустимо не больше 10 знаков");
    row("no columns", R"({"separator": ";"})", roles);
    row("unknown role", R"({"separator": ";", "columns": ["from", "tu"]})", roles);
    row("units", R"({"separator": ";", "columns": ["from"], "units": "m"})",
        "непригодное значение ключа «units»: допустимо {\"dh\": \"m|cm|mm\", \"length\": \"km|m\"}");
    row("unknown unit", R"({"separator": ";", "columns": ["from"], "units": {"dh": "ft"}})",
        "непригодное значение ключа «units.dh»: допустимо m, cm, mm");
    row("unit of nothing", R"({"separator": ";", "columns": ["from"], "units": {"sigma": "m"}})",
        "неизвестный ключ «units.sigma»: допустимы dh, length");
    row("length unit", R"({"separator": ";", "columns": ["from"], "units": {"length": "mm"}})",
        "непригодное значение ключа «units.length»: допустимо km, m");
    row("missing role", R"({"separator": ";", "columns": ["from", "to"]})",
        "в columns нет столбца dh (превышение); для таблицы секций нужны from, to и dh");
    row("missing height", R"({"separator": ";", "columns": ["point"]})",
        "в columns нет столбца height (отметка, м); для таблицы пунктов нужны point и height или x и y");
    row("repeated role", R"({"separator": ";", "columns": ["from", "from"]})",
        "в columns столбец from (начальный пункт) назван дважды; повторяться может только skip");
    row("mixed roles", R"({"separator": ";", "columns": ["from", "height"]})",
        "в columns смешаны столбцы секций и пунктов: height (отметка, м); в таблице секций есть from, to, "
        "dh, в "
        "таблице пунктов — point, height, x, y");
    row("count of widths", R"({"widths": [4], "columns": ["from", "to", "dh"]})",
        "в widths 1 чисел, а в columns столбцов 3; нужно поровну");
    row("letter as separator", R"({"separator": "a", "columns": ["from", "to", "dh"]})",
        "separator «a» не может разделять столбцы; нужен один знак, например «;», «,», «|», пробел или "
        "табуляция");
    row("no name", R"({"name": "", "separator": ";"})",
        "непригодное значение ключа «name»: допустимо непустое имя");
}

void TestImportFiles::templatesAreRefusedInASentence()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, reason);
    try {
        templatefile::parse(json, QStringLiteral("t"));
        QFAIL("taken");
    } catch (const exceptions::Error& error) {
        QCOMPARE(QString::fromStdWString(error.getText()), reason);
    }
}

void TestImportFiles::templateComesBackFromItsFile()
{
    const levelling::TableTemplate format = parse(
        R"({"name": "Мой", "widths": [4, 5, 6, 7], "decimal": ",", "skipRows": 3, "encoding": "windows-1251",
            "comment": "//", "columns": ["to", "skip", "from", "dh"], "units": {"dh": "cm", "length": "m"}})");
    const levelling::TableTemplate again =
        templatefile::parse(templatefile::toJson(format), QStringLiteral("t"));
    QCOMPARE(again.name, QStringLiteral("Мой"));
    QCOMPARE(again.syntax.widths, (std::vector<int>{4, 5, 6, 7}));
    QCOMPARE(again.decimal, QChar(QLatin1Char(',')));
    QCOMPARE(again.syntax.skipRows, 3);
    QCOMPARE(again.syntax.encoding, QByteArray("windows-1251"));
    QCOMPARE(again.syntax.comment, QStringLiteral("//"));
    QVERIFY(again.columns == format.columns);
    QVERIFY(again.differenceUnit == levelling::DifferenceUnit::Centimetre);
    QVERIFY(again.lengthUnit == levelling::LengthUnit::Metre);
}

void TestImportFiles::templateWithoutNameHasThatOfTheFile()
{
    const QString path = write("ход.json", kPoints);
    QCOMPARE(templatefile::read(path).name, QStringLiteral("ход"));
    QCOMPARE(templatefile::read(write("x.json", kSections)).name, QStringLiteral("line"));
}

void TestImportFiles::missingTemplateIsNamed()
{
    try {
        templatefile::read(QStringLiteral("/no/such.json"));
        QFAIL("read");
    } catch (const exceptions::Error& error) {
        QVERIFY(QString::fromStdWString(error.getText())
                    .startsWith(QStringLiteral("Шаблон «/no/such.json»: файл не читается: ")));
    }
    const QString large = write("large.json", QByteArray((1 << 20) + 1, ' '));
    try {
        templatefile::read(large);
        QFAIL("read");
    } catch (const exceptions::Error& error) {
        QCOMPARE(QString::fromStdWString(error.getText()),
                 QStringLiteral("Шаблон «%1»: файл больше 1\u00A0МиБ").arg(large));
    }
}

void TestImportFiles::sourcesAreGrouped()
{
    const ImportSource plain{QStringLiteral("a"), std::nullopt};
    const ImportSource table{QStringLiteral("b"), parse(kPoints)};
    const auto sizes = [](const std::vector<ImportSource>& sources) {
        QStringList texts;
        for (const auto& group : groupSources(sources))
            texts.append(QString::number(group.size()));
        return texts.join(QLatin1Char(' '));
    };
    QCOMPARE(sizes({}), QString());
    QCOMPARE(sizes({plain, plain}), QStringLiteral("2"));
    QCOMPARE(sizes({table, table, plain}), QStringLiteral("2 1"));
    QCOMPARE(sizes({plain, table, plain}), QStringLiteral("1 1 1"));
}

QTEST_GUILESS_MAIN(TestImportFiles)
#include "tst_importfiles.moc"

#include "apps/desk/CommandLine.h"

#include "apps/common/LocalPath.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/print/ReportFile.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/runs/ExportFormats.h"
#include "apps/desk/runs/RunKinds.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace {

/// An option as the parser and the help know it.
struct Option
{
    QStringList names;
    QString value; ///< what stands for the value in the help; empty if the option takes none
    QString description;
    bool isRepeatable = false;
};

std::vector<Option> getGeneralOptions()
{
    return {
        {{QStringLiteral("language")}, QStringLiteral("ru|en"), Desk::tr("язык текстов")},
        {{QStringLiteral("record")},
         QStringLiteral("FILE.jsonl"),
         Desk::tr("записать журнал обработки для orvel-replay")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QString(), Desk::tr("эта справка")},
        {{QStringLiteral("v"), QStringLiteral("version")}, QString(), Desk::tr("номер версии")},
    };
}

/// A line for each kind of run.
QString describeRuns()
{
    QString text;
    for (const RunKind& kind : runs::getKinds())
        text += QStringLiteral("%1 — %2\n").arg(kind.name, kind.optionText);
    return text;
}

/// A line for each kind of file that can be exported.
QString describeExports()
{
    QString text;
    for (const ExportFormat& format : exportformats::getFormats())
        text += QStringLiteral("\n.%1 — %2").arg(format.suffix, format.optionText);
    return text;
}

/// A line for each kind of report.
QString describeReports()
{
    QString text;
    for (const deskreports::Report& report : deskreports::getReports())
        text += QStringLiteral("\n%1 — %2").arg(report.name, report.title);
    return text;
}

std::vector<Option> getHeadlessOptions()
{
    return {
        {{QStringLiteral("headless")}, QString(), Desk::tr("обработка без окна")},
        {{QStringLiteral("import")},
         QStringLiteral("FILE"),
         Desk::tr("прочитать файл измерений: нивелирную сеть (.gkf) или файл прибора\n"
                  "(GSI, M5, REC_E), по содержанию; второй и следующие добавляются\n"
                  "к сети, порядок сохраняется"),
         true},
        {{QStringLiteral("template")},
         QStringLiteral("FILE.json"),
         Desk::tr("шаблон, по которому читается текст --import перед ним"),
         true},
        {{QStringLiteral("open")}, QStringLiteral("FILE"), Desk::tr("открыть проект")},
        {{QStringLiteral("class")},
         QStringLiteral("I|II|III|IV|technical"),
         Desk::tr("класс нивелирования, задаёт допуски невязок")},
        {{QStringLiteral("tolerances")},
         QStringLiteral("FILE.json"),
         Desk::tr("свои допуски вместо допусков проекта")},
        {{QStringLiteral("sigma")},
         QStringLiteral("C,A"),
         Desk::tr("СКО секций файла нивелира: √(C² + A²·L), мм, L в км\n"
                  "(без неё СКО задаёт класс)")},
        {{QStringLiteral("run")},
         QStringLiteral("RUN"),
         describeRuns() + Desk::tr("(--run повторяется, порядок сохраняется)"),
         true},
        {{QStringLiteral("export")},
         QStringLiteral("FILE"),
         Desk::tr("экспортировать, по окончанию имени файла:") + describeExports()},
        {{QStringLiteral("report")},
         QStringLiteral("KIND=FILE"),
         Desk::tr("составить ведомость, .html или .pdf:") + describeReports() +
             Desk::tr("\n(--report повторяется)"),
         true},
        {{QStringLiteral("pages")}, QStringLiteral("DIR"), Desk::tr("записать страницы протоколов")},
        {{QStringLiteral("data")},
         QStringLiteral("FILE.xml"),
         Desk::tr("записать копию файла данных протокола")},
        {{QStringLiteral("save")}, QStringLiteral("FILE"), Desk::tr("сохранить проект")},
        {{QStringLiteral("fail-on")},
         QStringLiteral("LEVEL"),
         Desk::tr("error, warning: код завершения 1, если в протоколах есть\n"
                  "ошибки (или предупреждения)")},
    };
}

/// Options that Qt takes from the command line by itself.
std::vector<Option> getQtOptions()
{
    std::vector<Option> options;
    for (const char* name :
         {"platform", "platformpluginpath", "platformtheme", "plugin", "style", "stylesheet", "display",
          "geometry", "fontengine", "qwindowgeometry", "qwindowicon", "qwindowtitle", "session"})
        options.push_back({{QString::fromLatin1(name)}, QStringLiteral("value"), QString(), true});
    options.push_back({{QStringLiteral("reverse")}, QString(), QString(), true});
    return options;
}

QString describe(const std::vector<Option>& options)
{
    constexpr int descriptionColumn = 25;
    QString text;
    for (const Option& option : options) {
        QString line = QStringLiteral("  ");
        for (const QString& name : option.names)
            line += (name.size() == 1 ? QStringLiteral("-%1, ") : QStringLiteral("--%1 ")).arg(name);
        line = (line + option.value + QLatin1Char(' ')).leftJustified(descriptionColumn);
        QString description = option.description;
        description.replace(QLatin1Char('\n'),
                            QLatin1Char('\n') + QString(descriptionColumn, QLatin1Char(' ')));
        text += line + description + QLatin1Char('\n');
    }
    return text;
}

/// Whether both paths name one regular file, which may have to be made yet.
bool areSameFile(const QString& path, const QString& other)
{
    if (path.isEmpty() || other.isEmpty() || standardstreams::isStream(path) ||
        standardstreams::isStream(other))
        return false;
    const QFileInfo file(path);
    // A device takes everything.
    if (!file.exists())
        return QDir::cleanPath(file.absoluteFilePath()) ==
               QDir::cleanPath(QFileInfo(other).absoluteFilePath());
    return file.isFile() && file.canonicalFilePath() == QFileInfo(other).canonicalFilePath();
}

/// Has QCommandLineParser read the arguments and makes a CommandLine of what they say. The sentences about
/// errors are our own: those of the parser are Russian only where Qt's translations are installed.
class Reader
{
public:
    Reader()
    {
        parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        addOptions(getGeneralOptions());
        addOptions(getHeadlessOptions());
        addOptions(getQtOptions());
    }

    CommandLine read(const QStringList& arguments)
    {
        const bool isParsed = parser.parse(arguments);
        // What is asked for in spite of an error tells in which language to report it, and where.
        result.wantsHelp = parser.isSet(QStringLiteral("help"));
        result.wantsVersion = parser.isSet(QStringLiteral("version"));
        result.isHeadless = parser.isSet(QStringLiteral("headless"));
        result.language = parser.value(QStringLiteral("language"));
        if (!isParsed)
            result.error = explainFailure(arguments);
        else
            takeValues();
        return result;
    }

private:
    void addOptions(const std::vector<Option>& added)
    {
        for (const Option& option : added) {
            parser.addOption(QCommandLineOption(option.names, QString(), option.value));
            options.push_back(option);
        }
    }

    /// The parser tells the kind of an error only in words.
    QString explainFailure(const QStringList& arguments) const
    {
        const QStringList unknown = parser.unknownOptionNames();
        if (!unknown.isEmpty())
            return Desk::tr("непонятный параметр %1").arg(withDashes(unknown.constFirst()));
        for (const QString& argument : arguments) {
            const QString name = argument.section(QLatin1Char('='), 0, 0).remove(QLatin1Char('-'));
            const bool isSwitch = std::any_of(options.begin(), options.end(), [&name](const Option& option) {
                return option.value.isEmpty() && option.names.contains(name);
            });
            if (isSwitch && argument.contains(QLatin1Char('=')))
                return Desk::tr("параметр %1 не принимает значения").arg(withDashes(name));
        }
        return missesValue(arguments.constLast());
    }

    static QString withDashes(const QString& name)
    {
        return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
    }

    static QString missesValue(const QString& option)
    {
        return Desk::tr("для %1 не указано значение").arg(option);
    }

    void fail(const QString& error)
    {
        if (result.error.isEmpty())
            result.error = error;
    }

    void takeValues()
    {
        for (const Option& option : options)
            checkValues(option);
        takeLanguage();
        takeClass();
        takeSigma();
        for (const QString& name : parser.values(QStringLiteral("run")))
            takeRun(name);
        takeFailLevel();
        takeImports();
        result.projectFile = takeFile(QStringLiteral("open"));
        result.toleranceFile = takeFile(QStringLiteral("tolerances"));
        result.exportFile = takeExportFile();
        for (const QString& value : parser.values(QStringLiteral("report")))
            takeReport(value);
        result.pagesFolder = takeFile(QStringLiteral("pages"));
        result.dataFile = apps::toLocalPath(parser.value(QStringLiteral("data")));
        result.saveFile = takeFile(QStringLiteral("save"));
        result.recordFile = takeRecordFile();
        result.argument = apps::toLocalPath(parser.positionalArguments().value(0));
        checkTogether();
    }

    /// The parser keeps the order of all options, but the values of each by themselves.
    void takeImports()
    {
        int imports = 0;
        int templates = 0;
        for (const QString& name : parser.optionNames()) {
            if (name == QLatin1String("import"))
                result.imports.push_back({apps::toLocalPath(parser.values(name)[imports++]), QString()});
            else if (name == QLatin1String("template"))
                takeTemplate(parser.values(name)[templates++]);
        }
        const auto streams = std::count_if(
            result.imports.begin(), result.imports.end(),
            [](const CommandLine::ImportFile& file) { return standardstreams::isStream(file.path); });
        if (streams > 1)
            fail(Desk::tr("стандартный ввод читается один раз: --import - указан дважды"));
        // Each change of the kind is another run, and a run replaces the protocol of its kind.
        int changes = 0;
        for (std::size_t i = 1; i < result.imports.size(); ++i) {
            if (result.imports[i].templateFile.isEmpty() != result.imports[i - 1].templateFile.isEmpty())
                ++changes;
        }
        if (changes > 1)
            fail(Desk::tr("--import с --template и без него чередуются: поставьте файлы с шаблоном подряд"));
    }

    void takeTemplate(const QString& value)
    {
        if (standardstreams::isStream(value))
            fail(Desk::tr("%1 не принимает «%2»").arg(QStringLiteral("--template"), value));
        else if (result.imports.empty() || !result.imports.back().templateFile.isEmpty())
            fail(Desk::tr("--template относится к --import перед ним, по одному на файл"));
        else
            result.imports.back().templateFile = apps::toLocalPath(value);
    }

    void checkValues(const Option& option)
    {
        const QStringList values = parser.values(option.names.constLast());
        const QString name = withDashes(option.names.constLast());
        if (values.contains(QString()))
            fail(missesValue(name));
        else if (values.size() > 1 && !option.isRepeatable)
            fail(Desk::tr("%1 указан дважды").arg(name));
    }

    void takeLanguage()
    {
        const QString& language = result.language;
        const bool isKnown = language == QLatin1String("ru") || language == QLatin1String("en");
        if (!isKnown && !language.isEmpty())
            fail(Desk::tr("неизвестный язык «%1»: --language ru или en").arg(language));
    }

    void takeClass()
    {
        const QString name = parser.value(QStringLiteral("class"));
        result.levellingClass = findLevellingClass(name);
        if (!result.levellingClass && !name.isEmpty())
            fail(Desk::tr("неизвестный класс нивелирования «%1»: --class I, II, III, IV или technical")
                     .arg(name));
    }

    void takeSigma()
    {
        const QString text = parser.value(QStringLiteral("sigma"));
        if (text.isEmpty())
            return;
        const QStringList parts = text.split(QLatin1Char(','));
        bool isConstant = false;
        bool isPerKilometre = false;
        const SectionSigma sigma{parts.value(0).toDouble(&isConstant),
                                 parts.value(1).toDouble(&isPerKilometre)};
        constexpr double largest = 1000.0;
        const auto isUsable = [=](double part) { return part >= 0.0 && part <= largest; };
        // Without a part that grows with the length nothing tells long sections from short ones.
        if (parts.size() == 2 && isConstant && isPerKilometre && isUsable(sigma.constant) &&
            isUsable(sigma.perKilometre) && sigma.perKilometre > 0.0)
            result.sigma = sigma;
        else
            fail(Desk::tr("непригодные СКО «%1»: --sigma C,A, два числа в миллиметрах, как 0.2,1.5")
                     .arg(text));
    }

    /// A file that no stream can stand for.
    QString takeFile(const QString& name)
    {
        const QString value = parser.value(name);
        if (standardstreams::isStream(value))
            fail(Desk::tr("%1 не принимает «%2»").arg(withDashes(name), value));
        return apps::toLocalPath(value);
    }

    QString takeExportFile()
    {
        const QString path = apps::toLocalPath(parser.value(QStringLiteral("export")));
        if (!exportformats::find(path))
            fail(exportformats::describeUnknown(path));
        return path;
    }

    void takeReport(const QString& value)
    {
        const QString name = value.section(QLatin1Char('='), 0, 0);
        const QString path = apps::toLocalPath(value.section(QLatin1Char('='), 1));
        const std::optional<deskreports::Report> report = deskreports::findByName(name);
        if (!report) {
            QStringList known;
            for (const deskreports::Report& each : deskreports::getReports())
                known.append(each.name);
            fail(Desk::tr("неизвестная ведомость «%1»: --report KIND=FILE, где KIND — %2")
                     .arg(name, known.join(QStringLiteral(", "))));
        } else if (!reportfile::isKnown(path)) {
            fail(Desk::tr("непонятно, чем записать ведомость «%1»: окончание имени файла — %2")
                     .arg(path, reportfile::listSuffixes()));
        } else {
            result.reports.push_back({report->type, path});
        }
    }

    /// A recording begins with an empty file, as no stream can.
    QString takeRecordFile()
    {
        const QString path = takeFile(QStringLiteral("record"));
        static const QRegularExpression streams(
            QStringLiteral("^/dev/(std(in|out|err)|fd/.*)$|^/proc/[^/]+/fd/"));
        if (streams.match(QDir::cleanPath(path)).hasMatch())
            fail(Desk::tr("%1 не принимает «%2»").arg(QStringLiteral("--record"), path));
        return path;
    }

    void takeFailLevel()
    {
        const QString name = parser.value(QStringLiteral("fail-on"));
        if (name == QLatin1String("error"))
            result.failLevel = CommandLine::FailLevel::Error;
        else if (name == QLatin1String("warning"))
            result.failLevel = CommandLine::FailLevel::Warning;
        else if (!name.isEmpty())
            fail(Desk::tr("неизвестный уровень «%1»: --fail-on error или warning").arg(name));
    }

    void takeRun(const QString& name)
    {
        QStringList known;
        for (const RunKind& kind : runs::getKinds()) {
            if (kind.name == name) {
                result.runs.push_back(kind.protocolType);
                return;
            }
            known.append(kind.name);
        }
        fail(Desk::tr("неизвестная обработка «%1»: --run %2").arg(name, known.join(QLatin1String(", "))));
    }

    void checkTogether()
    {
        if (result.wantsHelp || result.wantsVersion)
            return;
        const bool hasInput = !result.imports.empty() || !result.projectFile.isEmpty();
        const bool hasHeadlessTask = hasInput || !result.runs.empty() || !result.exportFile.isEmpty() ||
                                     !result.reports.empty() || !result.pagesFolder.isEmpty() ||
                                     !result.dataFile.isEmpty() || !result.saveFile.isEmpty() ||
                                     parser.isSet(QStringLiteral("fail-on"));
        const int filesTaken = result.isHeadless ? 0 : 1;
        const QStringList files = parser.positionalArguments();
        if (files.size() > filesTaken)
            fail(Desk::tr("лишний аргумент %1").arg(files[filesTaken]));
        else if (hasHeadlessTask && !result.isHeadless)
            fail(Desk::tr(
                "для --import, --open, --run, --export, --report, --pages, --data, --save и --fail-on "
                "нужен --headless"));
        else if (result.isHeadless && !hasInput)
            fail(Desk::tr("с --headless нужен --import FILE или --open FILE"));
        else if (!result.imports.empty() && !result.projectFile.isEmpty())
            fail(Desk::tr("--import и --open вместе не действуют"));
        else if (standardstreams::isOutput(result.exportFile) && standardstreams::isOutput(result.dataFile))
            fail(Desk::tr("стандартный вывод принимает что-то одно: --export или --data"));
        else
            checkTargets();
    }

    /// No output replaces another one or the input; only a project is saved where it was opened.
    void checkTargets()
    {
        std::vector<std::pair<QString, QString>> files;
        for (const CommandLine::ImportFile& file : result.imports) {
            files.emplace_back(QStringLiteral("--import"), file.path);
            files.emplace_back(QStringLiteral("--template"), file.templateFile);
        }
        files.emplace_back(QStringLiteral("--open"), result.projectFile);
        files.emplace_back(QStringLiteral("--tolerances"), result.toleranceFile);
        const std::size_t inputs = files.size();
        files.emplace_back(QStringLiteral("--export"), result.exportFile);
        for (const CommandLine::ReportFile& report : result.reports)
            files.emplace_back(QStringLiteral("--report"), report.path);
        files.emplace_back(QStringLiteral("--data"), result.dataFile);
        files.emplace_back(QStringLiteral("--record"), result.recordFile);
        files.emplace_back(QStringLiteral("--save"), result.saveFile);
        for (auto target = files.begin() + static_cast<std::ptrdiff_t>(inputs); target != files.end();
             ++target) {
            for (auto other = files.begin(); other != target; ++other) {
                const bool isSaving = target->first == QLatin1String("--save");
                const bool mayBeSame = isSaving && other->first == QLatin1String("--open");
                if (!mayBeSame && areSameFile(target->second, other->second))
                    fail(Desk::tr("%1 и %2 называют один и тот же файл").arg(other->first, target->first));
            }
        }
    }

    QCommandLineParser parser;
    std::vector<Option> options;
    CommandLine result;
};

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    return Reader().read(arguments);
}

QString CommandLine::getHelp()
{
    return Desk::tr("Использование:\n"
                    "  orvel-desk [параметры] [FILE]\n"
                    "      окно с проектом FILE, с нивелирной сетью или с файлом прибора\n"
                    "  orvel-desk --headless (--import FILE… | --open FILE) [параметры]\n"
                    "      обработка без окна\n") +
           QLatin1Char('\n') + Desk::tr("Параметры:") + QLatin1Char('\n') + describe(getGeneralOptions()) +
           QLatin1Char('\n') + Desk::tr("Параметры обработки без окна:") + QLatin1Char('\n') +
           describe(getHeadlessOptions()) + QLatin1Char('\n') +
           Desk::tr("FILE может быть и адресом file://, а у --import, --export и --data — знаком «-»:\n"
                    "стандартный ввод или вывод.\n"
                    "Код завершения: 0 — всё выполнено; 1 — обработка не дала результата или достигнут\n"
                    "уровень --fail-on; 2 — неверные параметры, нечитаемый файл или неудавшаяся запись.") +
           QLatin1Char('\n');
}

} // namespace orvel::desk

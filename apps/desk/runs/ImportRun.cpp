#include "apps/desk/runs/ImportRun.h"

#include "apps/common/InputFile.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/runs/FileLines.h"
#include "apps/desk/runs/LevelLines.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/ProblemTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "apps/desk/runs/SurveyNetwork.h"
#include "apps/desk/runs/SurveyTexts.h"
#include "apps/desk/templates/TemplateTexts.h"
#include "formats/FileKind.h"
#include "levelling/GkfReader.h"
#include "levelling/GsiLevelReader.h"
#include "levelling/HeldPoints.h"
#include "levelling/M5LevelReader.h"
#include "levelling/NetworkMerge.h"
#include "levelling/TemplateReader.h"
#include "tacheometry/GsiTotalStationReader.h"
#include "tacheometry/M5TotalStationReader.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace orvel::desk {

namespace {

using levelling::Problem;
using levelling::ProblemKind;

/// Whether the arguments of the kind begin with that many names of points.
int countNamedPoints(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::PointRepeated:
    case ProblemKind::PointUndeclared:
    case ProblemKind::PointWithoutRole:
    case ProblemKind::PointFixedAndAdjusted:
    case ProblemKind::FixedPointWithoutHeight:
    case ProblemKind::HeightUnusable:
    case ProblemKind::ObservedPointFixed:
    case ProblemKind::ObservedPointRepeated:
    case ProblemKind::ObservedHeightMissing:
    case ProblemKind::PointSigmaUnusable:
    case ProblemKind::CoordinateUnusable:
    case ProblemKind::ReadingUnusable:
    case ProblemKind::ReadingOutsideLine:
    case ProblemKind::RecordMarked:
    case ProblemKind::StationWithoutBack:
    case ProblemKind::StationWithoutFore:
    case ProblemKind::StationSameEnds:
    case ProblemKind::SightWithoutStation:
    case ProblemKind::NumberEndsLine:
        return 1;
    case ProblemKind::SectionWithoutPoint:
    case ProblemKind::SectionSameEnds:
    case ProblemKind::SectionWithoutValue:
    case ProblemKind::SectionValueMissing:
    case ProblemKind::SectionWithoutWeight:
    case ProblemKind::DistanceUnusable:
    case ProblemKind::StdevUnusable:
    case ProblemKind::VarianceUnusable:
    case ProblemKind::RowRepeated:
    case ProblemKind::RowWithoutWeight:
    case ProblemKind::StationsUnusable:
    case ProblemKind::SectionTooSteep:
    case ProblemKind::StationSecondMissing:
    case ProblemKind::StationRepeated:
    case ProblemKind::LineInterrupted:
        return 2;
    default:
        return 0;
    }
}

/// Writes the problems of a file, the items in them as links.
class ProblemWriter
{
public:
    /// @param pointIndices  of the network's points by their names
    ProblemWriter(FileLines& fileLines, const QHash<QString, int>& pointIndices)
        : lines(fileLines)
        , indexOfPoint(pointIndices)
    {}

    void write(const Problem& problem)
    {
        const QString text = problems::describe(problem, linkArguments(problem));
        if (problem.severity == levelling::Severity::Warning)
            lines.warning(text);
        else
            lines.error(text);
    }

private:
    QStringList linkArguments(const Problem& problem)
    {
        const int namedPoints = countNamedPoints(problem.kind);
        QStringList arguments;
        for (const QString& argument : problem.arguments) {
            const auto point = indexOfPoint.constFind(argument);
            const bool isPoint = arguments.size() < namedPoints && point != indexOfPoint.constEnd();
            arguments.append(isPoint ? lines.get().point(*point) : RunLines::escape(argument));
        }
        return arguments;
    }

    FileLines& lines;
    const QHash<QString, int>& indexOfPoint;
};

/// How much the network of a file has.
struct NetworkSize
{
    QString description;
    std::size_t points = 0;
    std::size_t benchmarks = 0;
    std::size_t sections = 0;
};

/// What one of the files gave.
struct ReadFile
{
    QString name;
    bool isStopped = false;
    std::optional<Problem> fatal;
    levelling::Network network; ///< until it is added to that of the others
    NetworkSize size;
    std::vector<Problem> problems;
    std::optional<levelling::TableCounts> counts; ///< of the rows of a text file
    std::optional<tacheometry::FieldBookReading> survey;
    formats::FileKind kind = formats::FileKind::Unknown;
    levelling::LevelBookFindings level; ///< of a level's file
    levelling::NetworkAddition addition;
};

bool isLevelFile(const ReadFile& file)
{
    return file.kind == formats::FileKind::GsiLevel || file.kind == formats::FileKind::M5Level ||
           file.kind == formats::FileKind::RecLevel;
}

levelling::LevelSettings makeLevelSettings(const ImportSettings& settings, const QString& fileName)
{
    levelling::LevelSettings made;
    if (settings.sigma) {
        made.sigmaConstant = settings.sigma->constant;
        made.sigmaPerKilometre = settings.sigma->perKilometre;
    } else {
        made.sigmaPerKilometre = getSigmaPerKilometre(settings.rules.levellingClass);
    }
    made.readingLimit = getReadingLimit(settings.rules.levellingClass);
    made.sourceName = fileName;
    return made;
}

void take(levelling::GkfResult&& result, ReadFile& file)
{
    file.isStopped = result.isStopped;
    file.fatal = std::move(result.fatal);
    file.network = std::move(result.network);
    file.problems = std::move(result.problems);
}

void take(levelling::LevelResult&& result, ReadFile& file)
{
    take(std::move(result.file), file);
    file.level = std::move(result.findings);
}

void readSurvey(QFile& input, const std::function<bool()>& isStopped, ReadFile& file)
{
    file.survey = file.kind == formats::FileKind::GsiTotalStation
                      ? tacheometry::gsitotalstation::read(input, isStopped)
                      : tacheometry::m5totalstation::read(input, isStopped);
    file.isStopped = file.survey->isStopped;
    file.network = makeSurveyNetwork(*file.survey);
}

/// Reads a file that tells what it is.
void readKnownKind(QFile& input, const levelling::LevelSettings& levelSettings,
                   const std::function<bool()>& isStopped, ReadFile& file)
{
    file.kind = formats::recognise(input);
    switch (file.kind) {
    case formats::FileKind::Xml:
        take(levelling::GkfReader::read(input, isStopped), file);
        break;
    case formats::FileKind::GsiLevel:
        take(levelling::gsilevelreader::read(input, levelSettings, isStopped), file);
        break;
    case formats::FileKind::M5Level:
        take(levelling::m5levelreader::readM5(input, levelSettings, isStopped), file);
        break;
    case formats::FileKind::RecLevel:
        take(levelling::m5levelreader::readRec(input, levelSettings, isStopped), file);
        break;
    case formats::FileKind::GsiTotalStation:
    case formats::FileKind::M5TotalStation:
        readSurvey(input, isStopped, file);
        break;
    case formats::FileKind::Unknown:
        file.fatal = Problem{ProblemKind::UnknownFormat, levelling::Severity::Fatal, 0, {}};
    }
}

ReadFile readFile(const ImportSource& source, const levelling::Parameters& parameters,
                  const ImportSettings& settings, const std::function<bool()>& isStopped)
{
    apps::InputFile input(source.filePath);
    if (standardstreams::isStream(source.filePath))
        input.open(STDIN_FILENO, QIODevice::ReadOnly);
    else
        input.open(QIODevice::ReadOnly);
    ReadFile file;
    file.name = standardstreams::describeInput(source.filePath);
    if (source.format) {
        levelling::TableResult result =
            levelling::TemplateReader::readFile(input, *source.format, parameters, isStopped);
        file.isStopped = result.isStopped;
        file.fatal = std::move(result.fatal);
        file.network = std::move(result.network);
        file.problems = std::move(result.problems);
        file.counts = std::move(result.counts);
    } else {
        if (input.isOpen())
            readKnownKind(input, makeLevelSettings(settings, QFileInfo(file.name).fileName()), isStopped,
                          file);
        if (input.error() != QFileDevice::NoError)
            file.fatal =
                Problem{ProblemKind::FileNotReadable, levelling::Severity::Fatal, 0, {input.errorString()}};
    }
    file.network.sources = QStringList(QFileInfo(file.name).fileName());
    return file;
}

/// Adds the network of the file to the others'. Many networks are large: the file's own goes.
void addNetwork(levelling::Network& network, ReadFile& file)
{
    const levelling::Network added = std::exchange(file.network, {});
    file.size.description = added.description;
    file.size.points = added.points.size();
    file.size.benchmarks = static_cast<std::size_t>(
        std::count_if(added.points.begin(), added.points.end(),
                      [](const levelling::Point& point) { return point.isBenchmark(); }));
    file.size.sections = added.sections.size();
    file.addition = levelling::addNetwork(network, added);
}

void describeNetwork(FileLines& lines, const NetworkSize& size)
{
    if (!size.description.isEmpty())
        lines.message(Desk::tr("Описание: %1").arg(RunLines::escape(size.description.simplified())));
    lines.message(Desk::tr("Прочитано пунктов: %1, из них исходных реперов: %2; секций: %3")
                      .arg(QString::number(size.points), QString::number(size.benchmarks),
                           QString::number(size.sections)));
}

void describeParameters(RunLines& lines, const levelling::Network& network)
{
    const bool isApriori = network.parameters.sigmaAct == levelling::SigmaAct::Apriori;
    const bool isPerKilometre =
        std::none_of(network.sections.begin(), network.sections.end(),
                     [](const levelling::Section& section) { return section.stdev.has_value(); });
    lines.message(Desk::tr("%1: %2\u00A0мм; точность результатов оценивается по %3 СКО")
                      .arg(isPerKilometre ? Desk::tr("Априорная СКО на 1\u00A0км хода")
                                          : Desk::tr("Априорная СКО единицы веса"),
                           numbers::unitWeight(network.parameters.sigmaApriori),
                           isApriori ? Desk::tr("априорной") : Desk::tr("апостериорной")));
}

QString listLines(qint64 count, const std::vector<qint64>& fileLines)
{
    QStringList texts;
    for (const qint64 line : fileLines)
        texts.append(QString::number(line));
    if (count > static_cast<qint64>(fileLines.size()))
        texts.append(QStringLiteral("…"));
    return texts.join(QStringLiteral(", "));
}

void describeTemplate(FileLines& lines, const levelling::TableTemplate& format)
{
    lines.get().service(Desk::tr("Шаблон: %1").arg(RunLines::escape(templatetexts::describe(format))));
    if (format.isOfPoints())
        lines.message(Desk::tr("Единицы: высоты и координаты — м, СКО — мм"));
    else
        lines.message(Desk::tr("Единицы: превышения — %1, длины — %2, СКО — мм")
                          .arg(templatetexts::describeUnit(format.differenceUnit),
                               templatetexts::describeUnit(format.lengthUnit)));
}

void describeRows(FileLines& lines, const levelling::TableCounts& counts)
{
    const qint64 skipped = counts.headings + counts.empty + counts.comments + counts.refused;
    lines.message(Desk::tr("Прочитано строк: %1, из них с данными: %2, пропущено: %3")
                      .arg(QString::number(counts.used + skipped), QString::number(counts.used),
                           QString::number(skipped)));
    if (counts.headings > 0)
        lines.message(Desk::tr("Пропущено строк шапки: %1 (от начала файла)").arg(counts.headings));
    if (counts.empty > 0)
        lines.message(Desk::tr("Пропущено пустых строк: %1 (строки файла %2)")
                          .arg(QString::number(counts.empty), listLines(counts.empty, counts.emptyLines)));
    if (counts.comments > 0)
        lines.message(
            Desk::tr("Пропущено строк с комментарием: %1 (строки файла %2)")
                .arg(QString::number(counts.comments), listLines(counts.comments, counts.commentLines)));
    if (counts.weighedByStations > 0)
        lines.message(
            Desk::tr("Секций без длины и СКО, вес которых взят по числу штативов (10 на 1\u00A0км): %1")
                .arg(counts.weighedByStations));
}

/// What the file has changed about the points that were there before it.
void describeChange(FileLines& lines, const levelling::PointChange& change)
{
    const QString point = lines.get().point(change.point);
    QString text;
    switch (change.kind) {
    case levelling::PointChange::Kind::Height:
        text = Desk::tr("пункт %1: отметка %2\u00A0м вместо прежней %3\u00A0м")
                   .arg(point, numbers::height(change.after), numbers::height(change.before));
        break;
    case levelling::PointChange::Kind::Held:
        text = Desk::tr("пункт %1 теперь исходный репер").arg(point);
        break;
    case levelling::PointChange::Kind::Observed:
        text = Desk::tr("отметка пункта %1 теперь измерена с СКО и не удерживается").arg(point);
        break;
    case levelling::PointChange::Kind::Released:
        text = Desk::tr("пункт %1 был исходным репером, теперь он определяемый").arg(point);
        break;
    case levelling::PointChange::Kind::Place:
        text = Desk::tr("координаты пункта %1 заменены").arg(point);
        break;
    }
    lines.warning(Desk::tr("Строка файла %1: %2").arg(QString::number(change.line), text));
}

void describeAddition(FileLines& lines, const ReadFile& file)
{
    const levelling::NetworkAddition& addition = file.addition;
    if (addition.firstPoint == 0)
        return;
    std::vector<int> repeated;
    for (const std::size_t section : addition.repeatedSections)
        repeated.push_back(static_cast<int>(section));
    if (!repeated.empty())
        lines.warning(
            Desk::tr("Секции с теми же концами и превышением уже были в сети, учтены ещё раз: %1 (%2). "
                     "Если файл импортирован дважды, замените сеть")
                .arg(QString::number(repeated.size()), lines.get().listSections(repeated)));
    if (addition.areParametersKept)
        lines.warning(
            Desk::tr("Параметры уравнивания этого файла другие; действуют параметры сети, к которой он "
                     "добавлен"));
    lines.message(Desk::tr("Добавлено к сети пунктов: %1, секций: %2; совпало с имевшимися пунктов: %3")
                      .arg(QString::number(file.size.points - addition.commonPoints),
                           QString::number(file.size.sections), QString::number(addition.commonPoints)));
}

/// Points that stand in the tables of the one kind only.
void describeUnknownPoints(RunLines& lines, const levelling::Network& network)
{
    std::vector<bool> hasSection(network.points.size(), false);
    for (const levelling::Section& section : network.sections) {
        hasSection[static_cast<std::size_t>(section.from)] = true;
        hasSection[static_cast<std::size_t>(section.to)] = true;
    }
    std::vector<int> withoutSection;
    std::vector<int> undeclared;
    for (std::size_t i = 0; i < network.points.size(); ++i) {
        if (!hasSection[i] && !network.points[i].surveyed)
            withoutSection.push_back(static_cast<int>(i));
        else if (!network.points[i].declared && !network.points[i].surveyed)
            undeclared.push_back(static_cast<int>(i));
    }
    if (!undeclared.empty())
        lines.message(Desk::tr("Пункты, известные только по секциям, считаются определяемыми: %1 (%2)")
                          .arg(QString::number(undeclared.size()), lines.listPoints(undeclared)));
    if (!withoutSection.empty() && !network.sections.empty())
        lines.warning(Desk::tr("Пункты, к которым не ведёт ни одна секция: %1 (%2). Проверьте их имена")
                          .arg(QString::number(withoutSection.size()), lines.listPoints(withoutSection)));
    if (network.sections.empty())
        lines.message(Desk::tr("В сети только пункты. Добавьте к ней файлы с измерениями"));
}

/// Parts of the network without a height that levels have measured are held at one of their points.
std::vector<int> holdLevelledParts(levelling::Network& network, const std::vector<ReadFile>& files)
{
    std::vector<bool> isLevelled(network.sections.size(), false);
    for (const ReadFile& file : files) {
        const auto first = isLevelled.begin() + static_cast<std::ptrdiff_t>(file.addition.firstSection);
        if (isLevelFile(file))
            std::fill_n(first, file.size.sections, true);
    }
    return levelling::holdPartsWithoutDatum(network, isLevelled);
}

QStringList escapeAll(const QStringList& texts)
{
    QStringList escaped;
    for (const QString& text : texts)
        escaped.append(RunLines::escape(text));
    return escaped;
}

/// Of a file without any point, which would leave nothing of the network that is there.
ImportRefusal refuseEmpty(const ReadFile& file)
{
    ImportRefusal refusal{file.name,
                          Desk::tr("%1: в файле нет ни одного пункта, импортировать нечего").arg(file.name)};
    for (const Problem& problem : file.problems)
        refusal.remarks.append(problems::describe(problem, escapeAll(problem.arguments)));
    if (file.survey) {
        for (const tacheometry::Problem& problem : file.survey->problems)
            refusal.remarks.append(surveytexts::describe(problem, escapeAll(problem.arguments)));
    }
    return refusal;
}

/// Why the file gives no network, if it gives none.
std::optional<ImportRefusal> findRefusal(const ReadFile& file)
{
    if (file.fatal)
        return ImportRefusal{file.name, problems::describeFailure(file.name, *file.fatal)};
    if (file.survey && file.survey->fatal)
        return ImportRefusal{file.name, surveytexts::describeFailure(file.name, *file.survey->fatal)};
    if (file.network.points.empty() && !file.isStopped)
        return refuseEmpty(file);
    return std::nullopt;
}

/// Writes what there is to say of the file of a total station. False if the run was stopped.
bool describeSurvey(FileLines& lines, const tacheometry::FieldBookReading& reading,
                    const QHash<QString, int>& indexOfPoint)
{
    RunLines& runLines = lines.get();
    std::size_t done = 0;
    for (const tacheometry::Problem& problem : reading.problems) {
        if (!runLines.isRunning())
            return false;
        QStringList arguments;
        for (const QString& argument : problem.arguments) {
            const int point = arguments.isEmpty() && surveytexts::namesPoint(problem.kind)
                                  ? indexOfPoint.value(argument, -1)
                                  : -1;
            arguments.append(point >= 0 ? runLines.point(point) : RunLines::escape(argument));
        }
        const QString text = surveytexts::describe(problem, arguments);
        if (problem.severity == tacheometry::Severity::Warning)
            lines.warning(text);
        else
            lines.error(text);
        runLines.setProgress(++done, reading.problems.size());
    }
    for (const QString& text : surveytexts::describeContent(reading))
        lines.message(text);
    return true;
}

QString describeKind(formats::FileKind kind)
{
    switch (kind) {
    case formats::FileKind::GsiLevel:
        return Desk::tr("Формат: GSI цифрового нивелира");
    case formats::FileKind::M5Level:
        return Desk::tr("Формат: M5 цифрового нивелира");
    default:
        return Desk::tr("Формат: REC_E цифрового нивелира");
    }
}

void describeSigma(FileLines& lines, const ImportSettings& settings)
{
    if (!settings.sigma)
        lines.message(Desk::tr("СКО секций приняты по классу нивелирования (%1): %2\u00A0мм·√L")
                          .arg(describeClass(settings.rules.levellingClass),
                               numbers::shortest(getSigmaPerKilometre(settings.rules.levellingClass))));
    else
        lines.message(Desk::tr("СКО секций заданы: √(%1² + %2²·L)\u00A0мм")
                          .arg(numbers::shortest(settings.sigma->constant),
                               numbers::shortest(settings.sigma->perKilometre)));
}

/// Writes the problems and the checks of the file, by their lines, and what it changes. False if the run was
/// stopped.
bool writeFindings(FileLines& lines, const QHash<QString, int>& indexOfPoint, LevelLines& levelLines,
                   const ReadFile& file)
{
    ProblemWriter problemWriter(lines, indexOfPoint);
    const std::vector<Problem>& problems = file.problems;
    const std::vector<levelling::LevelCheck>& checks = file.level.checks;
    const std::size_t all = problems.size() + checks.size() + file.addition.changes.size();
    std::size_t problem = 0;
    std::size_t check = 0;
    while (problem + check < problems.size() + checks.size()) {
        if (!lines.get().isRunning())
            return false;
        const bool isProblemNext = check == checks.size() || (problem < problems.size() &&
                                                              problems[problem].line <= checks[check].line);
        if (isProblemNext)
            problemWriter.write(problems[problem++]);
        else
            levelLines.writeCheck(checks[check++]);
        lines.get().setProgress(problem + check, all);
    }
    std::size_t done = problem + check;
    for (const levelling::PointChange& change : file.addition.changes) {
        if (!lines.get().isRunning())
            return false;
        describeChange(lines, change);
        lines.get().setProgress(++done, all);
    }
    return true;
}

/// Writes what there is to say of a file. False if the run was stopped.
bool describeFile(FileLines lines, const ImportSource& source, const ReadFile& file,
                  const QHash<QString, int>& indexOfPoint, const ImportSettings& settings)
{
    RunLines& runLines = lines.get();
    runLines.service(Desk::tr("Файл: %1").arg(RunLines::escape(file.name)));
    if (source.format)
        describeTemplate(lines, *source.format);
    if (isLevelFile(file))
        lines.message(describeKind(file.kind));
    LevelLines levelLines(lines, file.level, indexOfPoint, file.addition);
    if (!writeFindings(lines, indexOfPoint, levelLines, file))
        return false;
    if (isLevelFile(file)) {
        if (!levelLines.writeSummary(settings.rules))
            return false;
        describeSigma(lines, settings);
    }
    if (file.counts)
        describeRows(lines, *file.counts);
    if (file.survey && !describeSurvey(lines, *file.survey, indexOfPoint))
        return false;
    if (!file.survey)
        describeNetwork(lines, file.size);
    describeAddition(lines, file);
    return true;
}

/// Whether there is something to say that names points.
bool namesPoints(const ReadFile& file)
{
    return !file.problems.empty() || !file.level.checks.empty() ||
           (file.survey && !file.survey->problems.empty());
}

/// Puts the set-ups of a file behind those of the book.
void addSetups(tacheometry::FieldBook& book, const tacheometry::FieldBook& added, int source)
{
    for (tacheometry::Setup setup : added.setups) {
        setup.source = source;
        book.setups.push_back(std::move(setup));
    }
}

} // namespace

std::optional<ImportRefusal> tryImport(const std::vector<ImportSource>& sources,
                                       const levelling::Parameters& parameters,
                                       const ImportSettings& settings, const std::function<bool()>& isStopped)
{
    for (const ImportSource& source : sources) {
        if (auto refusal = findRefusal(readFile(source, parameters, settings, isStopped)))
            return refusal;
    }
    return std::nullopt;
}

void writeRefusal(qor::IProcessMonitor& monitor, const ImportRefusal& refusal)
{
    const NetworkSnapshot nothing;
    RunLines lines(monitor, nothing);
    lines.service(Desk::tr("Файл: %1").arg(RunLines::escape(refusal.fileName)));
    for (const QString& remark : refusal.remarks) {
        if (!lines.isRunning())
            return;
        lines.warning(remark);
    }
    lines.error(RunLines::escape(refusal.reason));
}

QString runImport(qor::IProcessMonitor& monitor, const std::vector<ImportSource>& sources,
                  const NetworkSnapshot& base, const NetworkTaker& takeNetwork,
                  const ImportSettings& settings, WorstLine* worst)
{
    monitor.startStage(Desk::tr("Чтение файла").toStdWString());
    levelling::Network network = base.network;
    const auto fieldBook = std::make_shared<tacheometry::FieldBook>(*base.fieldBook);
    std::vector<ReadFile> files;
    for (const ImportSource& source : sources) {
        ReadFile file = readFile(source, network.parameters, settings,
                                 [&monitor] { return !monitor.isProcessRunning(); });
        if (file.isStopped)
            return QString();
        if (const auto refusal = findRefusal(file)) {
            monitor.finishCurrentStage();
            writeRefusal(monitor, *refusal);
            return refusal->reason;
        }
        addNetwork(network, file);
        if (file.survey)
            addSetups(*fieldBook, file.survey->book, network.sources.size() - 1);
        files.push_back(std::move(file));
    }
    monitor.finishCurrentStage();
    const std::vector<int> heldPoints = holdLevelledParts(network, files);
    // The items must be there before lines link to them.
    const std::shared_ptr<const NetworkSnapshot> snapshot = takeNetwork(std::move(network), fieldBook);
    if (!snapshot)
        return QString();

    RunLines lines(monitor, *snapshot, worst);
    QHash<QString, int> indexOfPoint;
    if (std::any_of(files.begin(), files.end(), namesPoints)) {
        int index = 0;
        for (const levelling::Point& point : snapshot->network.points)
            indexOfPoint.insert(point.id, index++);
    }
    bool hasTable = false;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const QString prefix = files.size() > 1 ? QFileInfo(files[i].name).fileName() : QString();
        if (!describeFile(FileLines(lines, prefix), sources[i], files[i], indexOfPoint, settings))
            return QString();
        hasTable = hasTable || sources[i].format;
    }
    if (hasTable)
        describeUnknownPoints(lines, snapshot->network);
    if (!heldPoints.empty())
        lines.warning(
            Desk::tr("Высоты относительные, так как отметок реперов нет; отметка ноль у пунктов: %1. Введите "
                     "отметки на приборе или добавьте их другим файлом")
                .arg(lines.listPoints(heldPoints)));
    if (!snapshot->network.sections.empty() || snapshot->fieldBook->isEmpty())
        describeParameters(lines, snapshot->network);
    monitor.setPercentage(100);
    return QString();
}

} // namespace orvel::desk

#include "apps/desk/runs/ImportRun.h"

#include "apps/common/InputFile.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/ProblemTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "levelling/GkfReader.h"

#include <QHash>

#include <algorithm>
#include <unistd.h>

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
        return 1;
    case ProblemKind::SectionWithoutPoint:
    case ProblemKind::SectionSameEnds:
    case ProblemKind::SectionWithoutValue:
    case ProblemKind::SectionValueMissing:
    case ProblemKind::SectionWithoutWeight:
    case ProblemKind::DistanceUnusable:
    case ProblemKind::StdevUnusable:
    case ProblemKind::VarianceUnusable:
        return 2;
    default:
        return 0;
    }
}

/// Writes the problems of a file, the items in them as links.
class ProblemWriter
{
public:
    ProblemWriter(RunLines& runLines, const levelling::Network& network) : lines(runLines)
    {
        int index = 0;
        for (const levelling::Point& point : network.points)
            indexOfPoint.insert(point.id, index++);
    }

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
            arguments.append(isPoint ? lines.point(*point) : RunLines::escape(argument));
        }
        return arguments;
    }

    RunLines& lines;
    QHash<QString, int> indexOfPoint;
};

levelling::GkfResult readNetwork(const QString& filePath, const qor::IProcessMonitor& monitor)
{
    const auto isStopped = [&monitor] { return !monitor.isProcessRunning(); };
    apps::InputFile input(filePath);
    if (standardstreams::isStream(filePath))
        input.open(STDIN_FILENO, QIODevice::ReadOnly);
    else
        input.open(QIODevice::ReadOnly);
    return levelling::GkfReader::readFile(input, isStopped);
}

void describeNetwork(RunLines& lines, const levelling::Network& network)
{
    const auto fixedPoints = std::count_if(network.points.begin(), network.points.end(),
                                           [](const levelling::Point& point) { return point.isBenchmark(); });
    if (!network.description.isEmpty())
        lines.message(Desk::tr("Описание: %1").arg(RunLines::escape(network.description.simplified())));
    lines.message(Desk::tr("Прочитано пунктов: %1, из них исходных реперов: %2; секций: %3")
                      .arg(QString::number(network.points.size()), QString::number(fixedPoints),
                           QString::number(network.sections.size())));
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

} // namespace

QString runImport(qor::IProcessMonitor& monitor, const QString& filePath, const NetworkTaker& takeNetwork)
{
    monitor.startStage(Desk::tr("Чтение файла").toStdWString());
    const levelling::GkfResult file = readNetwork(filePath, monitor);
    if (file.isStopped)
        return QString();
    monitor.finishCurrentStage();
    const QString fileName = standardstreams::describeInput(filePath);
    const QString fileLine = Desk::tr("Файл: %1").arg(RunLines::escape(fileName));
    if (file.fatal) {
        const NetworkSnapshot nothing;
        RunLines lines(monitor, nothing);
        lines.service(fileLine);
        const QString failure = problems::describeFailure(fileName, *file.fatal);
        lines.error(RunLines::escape(failure));
        return failure;
    }
    // The items must be there before lines link to them.
    const std::shared_ptr<const NetworkSnapshot> snapshot = takeNetwork(file.network);
    if (!snapshot)
        return QString();

    RunLines lines(monitor, *snapshot);
    lines.service(fileLine);
    ProblemWriter problemWriter(lines, snapshot->network);
    std::size_t done = 0;
    for (const Problem& problem : file.problems) {
        if (!lines.isRunning())
            return QString();
        problemWriter.write(problem);
        lines.setProgress(++done, file.problems.size());
    }
    describeNetwork(lines, snapshot->network);
    monitor.setPercentage(100);
    return QString();
}

} // namespace orvel::desk

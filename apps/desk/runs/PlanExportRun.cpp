#include "apps/desk/runs/PlanExportRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/runs/RunLines.h"
#include "host/files/CFileException.h"

namespace orvel::desk {

QString runPlanExport(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot, const Plan& plan,
                      QByteArray (*toBytes)(const Plan&), const std::vector<int>& withoutPlace,
                      const QString& filePath)
{
    RunLines lines(monitor, snapshot);
    if (plan.points.empty()) {
        const QString failure =
            Desk::tr("Экспортировать нечего: ни у одного пункта нет координат. Импортируйте "
                     "координаты или выполните расчёт тахеометрии.");
        lines.error(failure);
        return failure;
    }
    try {
        ProjectLock::requireFree(filePath);
        standardstreams::write(filePath, toBytes(plan));
    } catch (const qor::CFileException& error) {
        const QString failure = QString::fromStdWString(error.getText());
        lines.error(RunLines::escape(failure));
        return failure;
    }
    if (!withoutPlace.empty())
        lines.warning(Desk::tr("Не экспортировано пунктов без координат: %1 (%2)")
                          .arg(QString::number(withoutPlace.size()), lines.listPoints(withoutPlace)));
    lines.message(Desk::tr("Записано пунктов: %1, секций: %2, файл: %3")
                      .arg(QString::number(plan.points.size()), QString::number(plan.sections.size()),
                           RunLines::escape(standardstreams::describeOutput(filePath))));
    lines.message(Desk::tr("Координаты — в системе проекта, X на север, Y на восток, м; это не WGS-84"));
    monitor.setPercentage(100);
    return QString();
}

} // namespace orvel::desk

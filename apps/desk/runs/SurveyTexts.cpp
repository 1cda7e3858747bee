#include "apps/desk/runs/SurveyTexts.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"

namespace orvel::desk {

namespace surveytexts {

namespace {

using tacheometry::Problem;
using tacheometry::ProblemKind;

QString failureReason(const Problem& problem)
{
    const QString limit = problem.arguments.value(0);
    switch (problem.kind) {
    case ProblemKind::FileTooLarge:
        return Desk::tr("файл больше %1\u00A0МиБ и не прочитан; разделите съёмку на части").arg(limit);
    case ProblemKind::LineTooLong:
        return Desk::tr("строка длиннее %1 байт, файл не прочитан; проверьте, что это файл тахеометра")
            .arg(limit);
    case ProblemKind::TooManySights:
        return Desk::tr(
                   "станций, наведений или пунктов больше %1, файл не прочитан; разделите съёмку на части")
            .arg(limit);
    default:
        return Desk::tr("замечаний больше %1, файл не прочитан; проверьте, что это файл тахеометра")
            .arg(limit);
    }
}

/// The sentence, with "%1" and so on for the arguments.
QString sentence(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::NothingUsable:
        return Desk::tr("в файле нет ни измерений, ни координат");
    case ProblemKind::LineUnreadable:
        return Desk::tr("строка не читается, пропущена");
    case ProblemKind::WordsUnreadable:
        return Desk::tr("не читается «%1», пропущено");
    case ProblemKind::RecordMarked:
        return Desk::tr("запись о пункте %1 отмечена прибором как ошибочная, пропущена");
    case ProblemKind::ValueUnusable:
        return Desk::tr("величина %1 имеет непригодное значение «%2», считается не заданной");
    case ProblemKind::ValueUnknown:
        return Desk::tr("величина %1 не используется, здесь и дальше");
    case ProblemKind::RecordUnknown:
        return Desk::tr("записи вида %1 не используются, здесь и дальше");
    case ProblemKind::PointWithoutName:
        return Desk::tr("нет номера пункта, строка пропущена");
    case ProblemKind::SightWithoutStation:
        return Desk::tr("пункт %1 измерен до установки прибора на станцию, измерение пропущено");
    case ProblemKind::SightWithoutReadings:
        return Desk::tr("у пункта %1 нет ни направления, ни расстояния, измерение пропущено");
    case ProblemKind::CoordinatesHalf:
        return Desk::tr("у пункта %1 только одна из координат X и Y, обе считаются не заданными");
    case ProblemKind::CoordinatesChanged:
        return Desk::tr(
            "координаты пункта %1 отличаются от заданных в строке %2 на %3\u00A0м, действуют последние");
    case ProblemKind::OffsetWithoutSight:
        return Desk::tr("смещение цели пункта %1 записано, а измерение за ним не следует; пропущено");
    case ProblemKind::FileTooLarge:
    case ProblemKind::LineTooLong:
    case ProblemKind::TooManySights:
    case ProblemKind::TooManyProblems:
        break;
    }
    return QStringLiteral("%1");
}

} // namespace

QString describeFailure(const QString& filePath, const Problem& problem)
{
    return Desk::tr("%1, строка %2: %3").arg(filePath, QString::number(problem.line), failureReason(problem));
}

bool namesPoint(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::RecordMarked:
    case ProblemKind::SightWithoutStation:
    case ProblemKind::SightWithoutReadings:
    case ProblemKind::CoordinatesHalf:
    case ProblemKind::CoordinatesChanged:
    case ProblemKind::OffsetWithoutSight:
        return true;
    default:
        return false;
    }
}

QString describe(const Problem& problem, const QStringList& arguments)
{
    QString text = sentence(problem.kind);
    if (problem.kind == ProblemKind::CoordinatesChanged)
        text = text.arg(arguments[0], arguments[1], numbers::coordinate(arguments[2].toDouble()));
    else if (arguments.size() == 1)
        text = text.arg(arguments[0]);
    else if (arguments.size() == 2)
        text = text.arg(arguments[0], arguments[1]);
    if (problem.line == 0)
        return text;
    return Desk::tr("Строка файла %1: %2").arg(QString::number(problem.line), text);
}

QStringList describeContent(const tacheometry::FieldBookReading& reading)
{
    QStringList texts;
    texts.append(Desk::tr("Прочитано установок тахеометра: %1, наведений: %2; заданных координат пунктов: %3")
                     .arg(QString::number(reading.book.setups.size()),
                          QString::number(reading.book.countSights()),
                          QString::number(reading.points.size())));
    for (const tacheometry::InstrumentSettings& settings : reading.settings)
        texts.append(
            Desk::tr(
                "Прибор исправил расстояния сам, наведений: %1; постоянная призмы %2\u00A0мм, поправка за "
                "атмосферу %3\u00A0мм/км")
                .arg(QString::number(settings.sights), numbers::fixed(settings.prismConstant, 1),
                     numbers::fixed(settings.ppm, 1)));
    return texts;
}

} // namespace surveytexts

} // namespace orvel::desk

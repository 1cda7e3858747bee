#include "apps/desk/runs/ProblemTexts.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "host/files/StringUtils.h"

namespace orvel::desk {

namespace problems {

namespace {

using levelling::Problem;
using levelling::ProblemKind;

QString failureReason(const Problem& problem)
{
    const QString argument = problem.arguments.value(0);
    switch (problem.kind) {
    case ProblemKind::FileNotReadable:
        return Desk::tr("файл не читается: %1").arg(utils::describeReason(argument));
    case ProblemKind::WrongRoot:
        return Desk::tr("это не файл нивелирной сети: корневой элемент <%1>, а нужен <gama-local>")
            .arg(argument);
    case ProblemKind::FileTooLarge:
        return Desk::tr("файл больше %1\u00A0МиБ и не прочитан; разделите сеть на части").arg(argument);
    case ProblemKind::TooManyEntries:
        return Desk::tr("пунктов и секций больше %1, файл не прочитан; разделите сеть на части")
            .arg(argument);
    case ProblemKind::TooManyProblems:
        return Desk::tr("замечаний больше %1, файл не прочитан; проверьте, что это нивелирная сеть")
            .arg(argument);
    case ProblemKind::NestedTooDeeply:
        return Desk::tr("элементы вложены глубже %1 уровней, файл не прочитан; проверьте, что это "
                        "нивелирная сеть")
            .arg(argument);
    case ProblemKind::PieceTooLong:
        return Desk::tr(
                   "тег, текст или комментарий больше %1\u00A0КиБ (числа ковариаций — %2\u00A0МиБ), файл не "
                   "прочитан; проверьте, закрыты ли кавычки и комментарии")
            .arg(argument, problem.arguments.value(1));
    case ProblemKind::AttributeTooLong:
        return Desk::tr("значение атрибута %1 длиннее %2 знаков, файл не прочитан; исправьте его")
            .arg(argument, problem.arguments.value(1));
    case ProblemKind::TextTooLong:
        return Desk::tr("текст элемента <%1> длиннее %2 знаков, файл не прочитан; сократите его")
            .arg(argument, problem.arguments.value(1));
    case ProblemKind::LineTooLong:
        return Desk::tr(
                   "строка длиннее %1 знаков, файл не прочитан; проверьте, что это текст, и его кодировку")
            .arg(argument);
    case ProblemKind::TooManyCovariances:
        return Desk::tr("в <cov-mat> больше %1 чисел, файл не прочитан; разделите измерения на группы "
                        "<height-differences>")
            .arg(argument);
    case ProblemKind::UnknownFormat:
        return Desk::tr("формат не распознан: нужны gama-local XML (.gkf) или файл прибора, нивелира (GSI, "
                        "M5, REC_E) или тахеометра (GSI, M5); текст со столбцами читается по шаблону");
    case ProblemKind::TooManyStations:
        return Desk::tr("пунктов, ходов и станций больше %1, файл не прочитан; разделите его на части")
            .arg(argument);
    default:
        return Desk::tr("ошибка XML: %1").arg(argument);
    }
}

/// The sentence, with "%1" and so on for the arguments.
QString sentence(ProblemKind kind)
{
    switch (kind) {
    case ProblemKind::UnknownElement:
        return Desk::tr("неизвестный элемент &lt;%1&gt; внутри &lt;%2&gt; пропущен со всем содержимым");
    case ProblemKind::ParameterUnusable:
        return Desk::tr("параметр %1 имеет непригодное значение «%2», принято значение по умолчанию");
    case ProblemKind::PointWithoutId:
        return Desk::tr("пункт без имени (id) пропущен");
    case ProblemKind::PointRepeated:
        return Desk::tr(
            "пункт %1 объявлен повторно (впервые в строке файла %2), действует последнее объявление");
    case ProblemKind::PointUndeclared:
        return Desk::tr("пункт %1 не объявлен, считается определяемым");
    case ProblemKind::PointWithoutRole:
        return Desk::tr(
            "пункт %1 не назван ни исходным (fix), ни определяемым (adj), считается определяемым");
    case ProblemKind::PointFixedAndAdjusted:
        return Desk::tr("пункт %1 назван и исходным (fix), и определяемым (adj), считается исходным");
    case ProblemKind::FixedPointWithoutHeight:
        return Desk::tr("у исходного репера %1 нет отметки, считается определяемым пунктом");
    case ProblemKind::HeightUnusable:
        return Desk::tr("пункт %1: непригодная высота «%2», считается не заданной");
    case ProblemKind::SectionWithoutPoint:
        return Desk::tr("секция «%1» – «%2» без начального или конечного пункта пропущена");
    case ProblemKind::SectionSameEnds:
        return Desk::tr("секция %1 – %2 начинается и кончается на одном пункте, пропущена");
    case ProblemKind::SectionValueMissing:
        return Desk::tr("секция %1 – %2: превышение не задано, секция пропущена");
    case ProblemKind::SectionWithoutValue:
        return Desk::tr("секция %1 – %2: непригодное превышение «%3», секция пропущена");
    case ProblemKind::SectionWithoutWeight:
        return Desk::tr("секция %1 – %2: нет ни длины (dist), ни СКО (stdev), секция пропущена");
    case ProblemKind::DistanceUnusable:
        return Desk::tr("секция %1 – %2: непригодная длина «%3», считается не заданной");
    case ProblemKind::StdevUnusable:
        return Desk::tr("секция %1 – %2: непригодная СКО «%3», считается не заданной");
    case ProblemKind::VarianceUnusable:
        return Desk::tr("секция %1 – %2: непригодная дисперсия «%3», считается не заданной");
    case ProblemKind::CovarianceUnusable:
        return Desk::tr(
            "ковариационная матрица (dim «%1», band «%2») не соответствует числу измерений (%3), пропущена");
    case ProblemKind::CorrelationsIgnored:
        return Desk::tr(
            "корреляции измерений не учитываются: ненулевых ковариаций %1, взяты только дисперсии");
    case ProblemKind::ObservedPointFixed:
        return Desk::tr("пункт %1 назван исходным (fix) и известен с ковариациями, отметка удерживается");
    case ProblemKind::ObservedPointRepeated:
        return Desk::tr("отметка пункта %1 с ковариациями задана повторно, действует первая");
    case ProblemKind::ObservedHeightMissing:
        return Desk::tr(
            "у пункта %1 в группе отметок с ковариациями нет пригодной отметки, группа пропущена");
    case ProblemKind::ObservedWithoutCovariance:
        return Desk::tr("у группы отметок нет пригодной ковариационной матрицы (dim «%1», band «%2», отметок "
                        "%3), группа пропущена");
    case ProblemKind::OtherObservation:
        return Desk::tr("измерение &lt;%1&gt; («%2» – «%3») не является превышением, пропущено");
    case ProblemKind::NoSections:
        return Desk::tr("в файле нет ни одной пригодной секции, вычислять нечего");
    case ProblemKind::RowQuoteOpen:
        return Desk::tr("кавычка открыта и не закрыта, строка пропущена");
    case ProblemKind::RowCellMissing:
        return Desk::tr("в столбце %1 пусто, строка пропущена");
    case ProblemKind::RowCellUnusable:
        return Desk::tr("столбец %1: «%2» — непригодное число, строка пропущена");
    case ProblemKind::RowDecimalSign:
        return Desk::tr(
            "столбец %1: «%2» — число с другим десятичным знаком, в шаблоне «%3»; строка пропущена");
    case ProblemKind::RowsTooLong:
        return Desk::tr(
            "здесь и дальше строк, в которых данные есть и правее последнего столбца шаблона: %1; "
            "лишнее не прочитано, столбцов в шаблоне %2");
    case ProblemKind::RowsUndecoded:
        return Desk::tr(
            "здесь и дальше строк со знаками, которых нет в кодировке %2: %1; проверьте кодировку "
            "в шаблоне");
    case ProblemKind::RowRepeated:
        return Desk::tr("секция %1 – %2 с тем же превышением уже есть в строке файла %3, учтены обе; лишнюю "
                        "удалите");
    case ProblemKind::RowWithoutWeight:
        return Desk::tr(
            "секция %1 – %2: нет ни длины, ни числа штативов, ни СКО; принята априорная СКО 1\u00A0км "
            "хода");
    case ProblemKind::StationsUnusable:
        return Desk::tr("секция %1 – %2: непригодное число штативов «%3», считается не заданным");
    case ProblemKind::SectionTooSteep:
        return Desk::tr("секция %1 – %2: превышение %3\u00A0м больше правдоподобного для её длины %4\u00A0м; "
                        "проверьте единицы");
    case ProblemKind::PointSigmaUnusable:
        return Desk::tr("пункт %1: непригодная СКО отметки «%2», отметка удерживается");
    case ProblemKind::CoordinateUnusable:
        return Desk::tr("пункт %1: непригодная координата %2 «%3», координаты не взяты");
    case ProblemKind::UnitDoubtful:
        return Desk::tr(
            "столбец %1: среднее по величине значение %3 неправдоподобно для единицы %2; проверьте "
            "единицу в шаблоне");
    case ProblemKind::EncodingMarked:
        return Desk::tr(
            "файл начинается меткой кодировки %1, он прочитан в ней, а не в кодировке шаблона %2");
    case ProblemKind::NoRows:
        return Desk::tr("в файле нет ни одной пригодной строки; проверьте разделитель и столбцы шаблона");
    case ProblemKind::WordUnreadable:
        return Desk::tr("слово «%1» не читается, пропущено");
    case ProblemKind::LineUnreadable:
        return Desk::tr("строка не похожа на запись прибора, пропущена");
    case ProblemKind::ReadingUnusable:
        return Desk::tr("пункт %1: непригодный отсчёт «%2», пропущен");
    case ProblemKind::ReadingOutsideLine:
        return Desk::tr(
            "пункт %1: отсчёт «%2» не относится к ходу (отдельное измерение или вынос), пропущен");
    case ProblemKind::RecordMarked:
        return Desk::tr("пункт %1: запись помечена прибором как повторённая или ошибочная, пропущена");
    case ProblemKind::LineWithoutStart:
        return Desk::tr("отсчёты без начала хода, приняты за новый ход");
    case ProblemKind::LineWithoutStations:
        return Desk::tr("ход начат, но станций в нём нет");
    case ProblemKind::MethodUnknown:
        return Desk::tr("неизвестный порядок отсчётов «%1», отсчёты взяты по их словам");
    case ProblemKind::InstrumentCheck:
        return Desk::tr("поверка нивелира, её отсчёты в ход не входят");
    case ProblemKind::StationWithoutBack:
        return Desk::tr("станция с передней рейкой на %1 не имеет отсчёта назад, пропущена");
    case ProblemKind::StationWithoutFore:
        return Desk::tr("станция с задней рейкой на %1 не имеет отсчёта вперёд, пропущена");
    case ProblemKind::StationSameEnds:
        return Desk::tr("обе рейки станции на пункте %1, станция пропущена");
    case ProblemKind::StationSecondMissing:
        return Desk::tr("станция %1 – %2: нет второго отсчёта, превышение взято по имеющимся");
    case ProblemKind::StationRepeated:
        return Desk::tr("станция повторена, прежняя %1 – %2 (строка файла %3) не использована");
    case ProblemKind::LineInterrupted:
        return Desk::tr("разрыв хода: предыдущая станция кончается на %1, следующая начинается на %2");
    case ProblemKind::SightWithoutStation:
        return Desk::tr("промежуточная точка %1 без отсчёта назад пропущена");
    case ProblemKind::DistancesMissing:
        return Desk::tr("у станций без расстояний (%1 из %2) длина принята %3\u00A0м");
    case ProblemKind::NumberEndsLine:
        return Desk::tr("ход кончается или начинается на числе %1, которым названы и переходные точки других "
                        "ходов; проверьте, один ли это пункт, и назовите марку иначе");
    case ProblemKind::UnknownFormat:
    case ProblemKind::TooManyStations:
    case ProblemKind::LineTooLong:
    case ProblemKind::FileNotReadable:
    case ProblemKind::MalformedXml:
    case ProblemKind::WrongRoot:
    case ProblemKind::FileTooLarge:
    case ProblemKind::TooManyEntries:
    case ProblemKind::TooManyProblems:
    case ProblemKind::NestedTooDeeply:
    case ProblemKind::PieceTooLong:
    case ProblemKind::AttributeTooLong:
    case ProblemKind::TextTooLong:
    case ProblemKind::TooManyCovariances:
        break;
    }
    return Desk::tr("файл не читается: %1");
}

/// Numbers that were computed, as the language has them; those of the file stay as they stand there.
QStringList localise(ProblemKind kind, QStringList arguments)
{
    switch (kind) {
    case ProblemKind::DistancesMissing:
        arguments[2] = numbers::fixed(arguments[2].toDouble(), 1);
        break;
    case ProblemKind::SectionTooSteep:
        arguments[3] = numbers::shortest(arguments[3].toDouble());
        arguments[2] = numbers::shortest(arguments[2].toDouble());
        break;
    case ProblemKind::UnitDoubtful:
        arguments[2] = numbers::shortest(arguments[2].toDouble());
        break;
    default:
        break;
    }
    return arguments;
}

} // namespace

QString describeFailure(const QString& filePath, const Problem& problem)
{
    const QString reason = failureReason(problem);
    if (problem.line == 0)
        return QStringLiteral("%1: %2").arg(filePath, reason);
    return Desk::tr("%1, строка %2: %3").arg(filePath, QString::number(problem.line), reason);
}

QString describe(const Problem& problem, const QStringList& arguments)
{
    QString text = sentence(problem.kind);
    const QStringList values = localise(problem.kind, arguments);
    switch (values.size()) {
    case 0:
        break;
    case 1:
        text = text.arg(values[0]);
        break;
    case 2:
        text = text.arg(values[0], values[1]);
        break;
    case 3:
        text = text.arg(values[0], values[1], values[2]);
        break;
    default:
        text = text.arg(values[0], values[1], values[2], values[3]);
        break;
    }
    if (problem.line == 0)
        return text;
    return Desk::tr("Строка файла %1: %2").arg(QString::number(problem.line), text);
}

} // namespace problems

} // namespace orvel::desk

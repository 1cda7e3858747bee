#include "apps/desk/runs/RunKinds.h"

#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/Desk.h"

#include <algorithm>

namespace orvel::desk {

namespace runs {

std::vector<RunKind> getKinds()
{
    return {
        {enums::Compile, QStringLiteral("compile"), Desk::tr("&Предобработка"), QStringLiteral("F5"),
         Desk::tr("Проверить связность сети, повторные измерения и невязки"),
         Desk::tr("предобработка: связность, повторные измерения, невязки"),
         Desk::tr("Проверяет сеть до уравнивания: связаны ли все пункты с исходными реперами, укладываются "
                  "ли в допуск k·√L расхождения прямых и обратных ходов и невязки ходов и полигонов, "
                  "составленных из средних. Коэффициент k определяется классом нивелирования."),
         [](Document& document) { return makeCompile(document); }},
        {enums::Adjust, QStringLiteral("adjust"), Desk::tr("&Уравнивание"), QStringLiteral("F6"),
         Desk::tr("Вычислить высоты по методу наименьших квадратов"),
         Desk::tr("уравнивание по методу наименьших квадратов"),
         Desk::tr("Вычисляет высоты по методу наименьших квадратов, их СКО и поправки в измеренные "
                  "превышения, проверяет каждую часть сети критерием χ², поправки — по нормированным или "
                  "стьюдентизированным значениям. Секции, которые измерения не различают, названы вместе."),
         [](Document& document) { return makeAdjust(document); }},
        {enums::L1Analysis, QStringLiteral("l1"), Desk::tr("&L1-анализ"), QStringLiteral("F7"),
         Desk::tr("Найти грубые ошибки измерений"), Desk::tr("L1-анализ: поиск грубых ошибок"),
         Desk::tr("Ищет грубые ошибки (промахи) последовательной проверкой поправок и высоты с наименьшей "
                  "суммой Σ|v|/σ. Метод наименьших квадратов распределяет промах по соседним секциям, а "
                  "здесь он остаётся на месте. Если решений несколько, это указано в протоколе."),
         [](Document& document) { return makeL1Analysis(document); }},
        {enums::FixedPointsAnalysis, QStringLiteral("fixed-points"), Desk::tr("Анализ &исходных данных"),
         QStringLiteral("F9"), Desk::tr("Проверить, согласуются ли исходные отметки"),
         Desk::tr("анализ исходных данных: согласуются ли отметки реперов"),
         Desk::tr(
             "Проверяет, согласуются ли отметки исходных реперов с измерениями и между собой: сравнивает "
             "их с высотами свободной сети, вычисляет невязки ходов между реперами и сдвиг каждого "
             "репера относительно остальных, находит наибольший согласованный набор и называет реперы, "
             "которые следует исключить, или говорит, что решить этого нельзя."),
         [](Document& document) { return makeFixedPoints(document); }},
        {enums::AutoChainTracingAnalysis, QStringLiteral("chains"), Desk::tr("Т&рассирование ходов"),
         QStringLiteral("F12"), Desk::tr("Показать сеть ходами между реперами и узловыми пунктами"),
         Desk::tr("трассирование: сеть ходами, их невязки, узловые пункты"),
         Desk::tr("Соединяет секции в ходы между исходными реперами и узловыми пунктами, как их чертит "
                  "геодезист: у каждого хода вид, пункты, длина, станции, сумма превышений, невязка рядом с "
                  "допуском, у каждого узлового пункта высоты по всем ходам, которые к нему ведут. Висячие и "
                  "замкнутые ходы и кольца названы отдельно."),
         [](Document& document) { return makeChains(document); }},
        {enums::CalcTacheometry, QStringLiteral("tacheometry"), Desk::tr("&Тахеометрия"),
         QStringLiteral("F11"), Desk::tr("Вычислить координаты и высоты пунктов тахеометрической съёмки"),
         Desk::tr("тахеометрия: координаты и высоты пунктов съёмки"),
         Desk::tr(
             "Вычисляет координаты и высоты пунктов по полярным измерениям тахеометра: ориентирует каждую "
             "станцию по исходным пунктам, берёт среднее из двух кругов, учитывает кривизну Земли и "
             "рефракцию. Сверяет повторные измерения между собой, исходные пункты с их координатами и "
             "результат с координатами, записанными прибором."),
         [](Document& document) { return makeTacheometry(document); }},
    };
}

DeskRun make(int protocolType, Document& document)
{
    const std::vector<RunKind> kinds = getKinds();
    const auto found = std::find_if(kinds.begin(), kinds.end(), [protocolType](const RunKind& kind) {
        return kind.protocolType == protocolType;
    });
    return found->make(document);
}

} // namespace runs

} // namespace orvel::desk

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

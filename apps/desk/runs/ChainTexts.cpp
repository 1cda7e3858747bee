#include "apps/desk/runs/ChainTexts.h"

#include "apps/desk/Desk.h"

namespace orvel::desk {

namespace chaintexts {

using levelling::ChainKind;

QString nameKind(ChainKind kind)
{
    switch (kind) {
    case ChainKind::BetweenBenchmarks:
        return Desk::tr("Ход между исходными реперами");
    case ChainKind::Closed:
        return Desk::tr("Замкнутый ход");
    case ChainKind::BenchmarkToNode:
        return Desk::tr("Ход от исходного репера к узловому пункту");
    case ChainKind::BetweenNodes:
        return Desk::tr("Ход между узловыми пунктами");
    case ChainKind::Hanging:
        return Desk::tr("Висячий ход");
    case ChainKind::Isolated:
        return Desk::tr("Отдельный ход");
    case ChainKind::Ring:
        break;
    }
    return Desk::tr("Кольцевой ход без узлов");
}

QString describeLack(ChainKind kind)
{
    if (kind == ChainKind::Hanging)
        return Desk::tr("не контролируется");
    return kind == ChainKind::Isolated || kind == ChainKind::Ring ? Desk::tr("не связан с исходными реперами")
                                                                  : QString();
}

} // namespace chaintexts

} // namespace orvel::desk

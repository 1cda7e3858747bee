#include "Orvel/store/ProtocolTypes.h"

#include "host/enums/EnumData.h"

#include <array>

namespace {

bool registered = false;

// The types must be known before the host makes the first protocol, so loading the library is enough.
[[maybe_unused]] const bool kRegisteredAtLoad = (enums::initEnumData_Orvel(), true);

} // namespace

namespace enums {

void initEnumData_Orvel()
{
    if (registered)
        return;
    registered = true;

    registerEnumData(EnumData(kOrvelItemType, "Orvel", "", ""));

    const std::array<EnumData, 10> members{{
        {UndefProtocol, "UndefProtocol", "", ""},
        {Compile, "Compile", "Предобработка", " "},
        {Adjust, "Adjust", "Уравнивание", " "},
        {L1Analysis, "L1Analysis", "L1-анализ", " "},
        {Import, "Import", "Импорт", " "},
        {Export, "Export", "Экспорт", " "},
        {ImportTemplate, "ImportTemplate", "Импорт по шаблону", " "},
        {FixedPointsAnalysis, "FixedPointsAnalysis", "Общий анализ исходных данных", " "},
        {AutoChainTracingAnalysis, "AutoChainTracingAnalysis", "Авто трассирование", " "},
        {CalcTacheometry, "CalcTacheometry", "Расчет тахеометрии", " "},
    }};
    for (const EnumData& member : members)
        registerEnumData(member);
}

} // namespace enums

#include "apps/desk/document/DeskTypes.h"

#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/Desk.h"
#include "host/enums/EnumData.h"

#include <algorithm>

namespace orvel::desk {

namespace {

void registerType(int type, const char* internalName, const QString& singular, const QString& plural)
{
    registerEnumData(EnumData(type, internalName, singular.toStdString(), plural.toStdString()));
}

/// Replaces the display text only.
void translateType(int type, const QString& singular)
{
    const EnumData record = getEnumData(type);
    const QString plural = QString::fromStdWString(record.getTextPlural());
    registerEnumData(EnumData(type, record.getTextInternal(), singular.toStdString(), plural.toStdString()));
}

} // namespace

void registerDeskTypes()
{
    registerType(kPointItemType, "LevellingPoint", Desk::tr("пункт"), Desk::tr("пункты"));
    registerType(kSectionItemType, "LevellingSection", Desk::tr("секция"), Desk::tr("секции"));
    registerType(kGeneralItemType, "Undefined", Desk::tr("общее"), Desk::tr("общие"));

    translateType(enums::Compile, Desk::tr("Предобработка"));
    translateType(enums::Adjust, Desk::tr("Уравнивание"));
    translateType(enums::L1Analysis, Desk::tr("L1-анализ"));
    translateType(enums::Import, Desk::tr("Импорт"));
    translateType(enums::Export, Desk::tr("Экспорт"));
    translateType(enums::ImportTemplate, Desk::tr("Импорт по шаблону"));
    translateType(enums::FixedPointsAnalysis, Desk::tr("Общий анализ исходных данных"));
    translateType(enums::AutoChainTracingAnalysis, Desk::tr("Авто трассирование"));
    translateType(enums::CalcTacheometry, Desk::tr("Расчет тахеометрии"));
}

std::vector<int> getProtocolTypes()
{
    return {enums::Import,
            enums::ImportTemplate,
            enums::Compile,
            enums::Adjust,
            enums::L1Analysis,
            enums::FixedPointsAnalysis,
            enums::AutoChainTracingAnalysis,
            enums::CalcTacheometry,
            enums::Export};
}

int getTypeDigit(int protocolType)
{
    // The digits that the first types have keep them, wherever others join the menu.
    static const std::vector<int> inOrder{enums::Import,
                                          enums::Compile,
                                          enums::Adjust,
                                          enums::L1Analysis,
                                          enums::Export,
                                          enums::FixedPointsAnalysis,
                                          enums::AutoChainTracingAnalysis,
                                          enums::CalcTacheometry,
                                          enums::ImportTemplate};
    return 1 + static_cast<int>(std::find(inOrder.begin(), inOrder.end(), protocolType) - inOrder.begin());
}

QString getTypeText(int type)
{
    return QString::fromStdWString(getEnumData(type).getTextSingular());
}

} // namespace orvel::desk

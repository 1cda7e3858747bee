#include "apps/desk/document/ItemTypes.h"

#include "apps/desk/Desk.h"
#include "host/enums/EnumData.h"
#include "host/model/ItemTypeInfo.h"

namespace {

void registerItemType(int type, const char* internalName, const QString& singular, const QString& plural)
{
    registerEnumData(EnumData(type, internalName, singular.toStdString(), plural.toStdString()));
}

} // namespace

void registerItemTypes()
{
    registerItemType(kPointItemType, "LevellingPoint", Desk::tr("пункт"), Desk::tr("пункты"));
    registerItemType(kSectionItemType, "LevellingSection", Desk::tr("секция"), Desk::tr("секции"));
    registerItemType(kGeneralItemType, "Undefined", Desk::tr("общее"), Desk::tr("общие"));
}

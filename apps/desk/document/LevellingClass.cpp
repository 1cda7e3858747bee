#include "apps/desk/document/LevellingClass.h"

namespace orvel::desk {

double getToleranceFactor(LevellingClass levellingClass)
{
    switch (levellingClass) {
    case LevellingClass::I:
        return 3.0;
    case LevellingClass::II:
        return 5.0;
    case LevellingClass::III:
        return 10.0;
    case LevellingClass::IV:
        break;
    }
    return 20.0;
}

QString getClassName(LevellingClass levellingClass)
{
    switch (levellingClass) {
    case LevellingClass::I:
        return QStringLiteral("I");
    case LevellingClass::II:
        return QStringLiteral("II");
    case LevellingClass::III:
        return QStringLiteral("III");
    case LevellingClass::IV:
        break;
    }
    return QStringLiteral("IV");
}

std::optional<LevellingClass> findLevellingClass(const QString& name)
{
    for (const auto levellingClass :
         {LevellingClass::I, LevellingClass::II, LevellingClass::III, LevellingClass::IV}) {
        if (getClassName(levellingClass) == name)
            return levellingClass;
    }
    return std::nullopt;
}

} // namespace orvel::desk

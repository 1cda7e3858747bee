#include "apps/desk/document/LevellingClass.h"

#include "apps/desk/Desk.h"

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
    case LevellingClass::Technical:
        return 50.0;
    }
    return 20.0;
}

double getSigmaPerKilometre(LevellingClass levellingClass)
{
    return getToleranceFactor(levellingClass) / 2.0;
}

double getReadingLimit(LevellingClass levellingClass)
{
    switch (levellingClass) {
    case LevellingClass::I:
        return 0.5;
    case LevellingClass::II:
        return 0.7;
    case LevellingClass::III:
        return 3.0;
    case LevellingClass::IV:
    case LevellingClass::Technical:
        break;
    }
    return 5.0;
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
    case LevellingClass::Technical:
        return QStringLiteral("technical");
    }
    return QStringLiteral("IV");
}

QString describeClass(LevellingClass levellingClass)
{
    return levellingClass == LevellingClass::Technical
               ? Desk::tr("техническое нивелирование")
               : Desk::tr("%1 класс").arg(getClassName(levellingClass));
}

std::optional<LevellingClass> findLevellingClass(const QString& name)
{
    for (const LevellingClass levellingClass : kLevellingClasses) {
        if (getClassName(levellingClass) == name)
            return levellingClass;
    }
    return std::nullopt;
}

} // namespace orvel::desk

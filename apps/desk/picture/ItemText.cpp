#include "apps/desk/picture/ItemText.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QStringList>

namespace orvel::desk::picture {

namespace {

QString describeSeverity(const Document& document, LONGID id)
{
    const std::optional<COVMessage::MessageType> worst = document.getSummary().findWorst(id);
    if (worst == COVMessage::Error)
        return Desk::tr("В протоколах: ошибка");
    return worst == COVMessage::Warning ? Desk::tr("В протоколах: предупреждение") : QString();
}

void addOutdated(QStringList& facts, const Document& document)
{
    if (document.areResultsOutdated())
        facts.append(Desk::tr("Результат устарел: сеть изменена после уравнивания"));
}

QStringList describePoint(const Document& document, const LevellingPoint& item, const NumberFormat& format)
{
    const levelling::Point& point = item.getPoint();
    QStringList facts;
    facts.append(point.fixed      ? Desk::tr("исходный репер")
                 : point.observed ? Desk::tr("репер с измеренной высотой")
                                  : Desk::tr("пункт"));
    if (const auto& result = item.getResult(); result && !point.fixed) {
        facts.append(Desk::tr("Высота %1\u00A0м, СКО %2\u00A0мм")
                         .arg(format.height(result->height), format.sigma(result->sigma)));
        addOutdated(facts, document);
    } else if (point.height) {
        facts.append(Desk::tr("Заданная высота %1\u00A0м").arg(format.height(*point.height)));
    }
    const tacheometry::Position position = item.getPosition();
    if (position.hasPlan())
        facts.append(Desk::tr("X %1\u00A0м, Y %2\u00A0м")
                         .arg(numbers::coordinate(*position.x), numbers::coordinate(*position.y)));
    return facts;
}

QStringList describeSection(const Document& document, const LevellingSection& item,
                            const NumberFormat& format)
{
    const levelling::Section& section = item.getSection();
    QStringList facts;
    if (item.isOff())
        facts.append(item.getOffReason().isEmpty() ? Desk::tr("Отключена")
                                                   : Desk::tr("Отключена: %1").arg(item.getOffReason()));
    facts.append(Desk::tr("Превышение %1\u00A0м").arg(format.rise(section.difference)));
    if (section.distance)
        facts.append(Desk::tr("Длина %1\u00A0км").arg(numbers::length(*section.distance)));
    if (const auto& result = item.getResult()) {
        facts.append(Desk::tr("Поправка %1\u00A0мм").arg(format.misclosure(result->residual)));
        if (result->normalisedResidual)
            facts.append(
                Desk::tr("Нормированная поправка %1").arg(numbers::fixed(*result->normalisedResidual, 2)));
        else
            facts.append(Desk::tr("Не контролируется другими измерениями"));
        addOutdated(facts, document);
    }
    return facts;
}

QString join(const QString& name, QStringList facts, const QString& severity)
{
    if (!severity.isEmpty())
        facts.append(severity);
    QString text = QStringLiteral("<b>%1</b>").arg(name.toHtmlEscaped());
    for (const QString& fact : facts)
        text += QStringLiteral("<br>") + fact.toHtmlEscaped();
    return text;
}

} // namespace

QString describeItem(const Document& document, LONGID id)
{
    const NumberFormat format(document.getToleranceRules());
    if (const LevellingPoint* point = document.findPoint(id))
        return join(point->getPoint().id, describePoint(document, *point, format),
                    describeSeverity(document, id));
    if (const LevellingSection* section = document.findSection(id))
        return join(section->getName(), describeSection(document, *section, format),
                    describeSeverity(document, id));
    return {};
}

} // namespace orvel::desk::picture

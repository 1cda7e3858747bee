#include "apps/desk/tolerances/ClassIndicator.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/runs/Tolerances.h"

namespace orvel::desk {

ClassIndicator::ClassIndicator(const Document& projectDocument, QWidget* parent)
    : QToolButton(parent)
    , document(projectDocument)
{
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    connect(&document, &Document::surveyRulesChanged, this, &ClassIndicator::showRules);
    showRules();
}

void ClassIndicator::showRules()
{
    const SurveyRules rules = document.getSurveyRules();
    setText(QStringLiteral("%1: %2").arg(
        tolerances::describeClassInUse(rules),
        tolerances::describeFactor(rules.tolerances.of(rules.levellingClass).loops)));
    QStringList lines(tolerances::describeRules(rules.tolerances, rules.levellingClass));
    const QString level = tolerances::describeOwnLevel(rules.tolerances);
    if (!level.isEmpty())
        lines.append(level);
    setToolTip(lines.join(QLatin1Char('\n')));
    setAccessibleName(Desk::tr("Класс и допуски: %1").arg(text()));
}

} // namespace orvel::desk

#include "apps/desk/document/SpreadsheetText.h"

#include <QRegularExpression>

namespace orvel::desk {

namespace spreadsheet {

QString guard(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("^[-+]?[0-9]+(?:[.,][0-9]+)?$"));
    const QString formulaStarts = QStringLiteral("=+-@\t\r");
    const bool isFormula =
        !text.isEmpty() && formulaStarts.contains(text.front()) && !number.match(text).hasMatch();
    return isFormula ? QLatin1Char('\'') + text : text;
}

} // namespace spreadsheet

} // namespace orvel::desk

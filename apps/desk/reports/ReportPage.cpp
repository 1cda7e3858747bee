#include "apps/desk/reports/ReportPage.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/SpreadsheetText.h"

#include <QCryptographicHash>
#include <QVector>

namespace orvel::desk {

namespace {

// On paper the head of the table stands on every sheet and no row is torn apart.
const QString kStyle = QStringLiteral(
    ":root { color-scheme: light dark; }\n"
    "body { font: 11pt/1.35 'DejaVu Sans', sans-serif; margin: 2em auto; max-width: 80em; padding: 0 1em; }\n"
    "h1 { font-size: 1.4em; }\n"
    "p { margin: 0.2em 0; }\n"
    "table { border-collapse: collapse; margin-top: 1em; width: 100%; }\n"
    "th, td { border: 1px solid #888; padding: 0.25em 0.6em; text-align: right;\n"
    "         font-variant-numeric: tabular-nums; }\n"
    "th { text-align: center; }\n"
    "td.name { text-align: left; overflow-wrap: anywhere; min-width: 7.5em; }\n"
    "thead { display: table-header-group; }\n"
    "tr { break-inside: avoid; }\n"
    "@media print { body { margin: 0; max-width: none; font-size: 10pt; } :root { color-scheme: light; } }\n"
    "@page { margin: 15mm; }\n");

/// Lets the page's own style work, and nothing else run or be loaded.
QString makePolicy(const QString& style)
{
    const QByteArray hash = QCryptographicHash::hash(style.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("default-src 'none'; style-src 'sha256-%1'")
        .arg(QString::fromLatin1(hash.toBase64()));
}

} // namespace

void ReportPage::setColumns(const QStringList& titles, int nameCount)
{
    columns = titles;
    nameColumns = nameCount;
}

QString ReportPage::toHtml() const
{
    QString html = QStringLiteral("<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n<meta charset=\"utf-8\">\n"
                                  "<meta http-equiv=\"Content-Security-Policy\" content=\"%4\">\n"
                                  "<title>%2</title>\n<style>%3</style>\n</head>\n<body>\n<h1>%2</h1>\n")
                       .arg(Desk::tr("ru", "the language of the reports"), title.toHtmlEscaped(), kStyle,
                            makePolicy(kStyle));
    for (const QString& line : lines)
        html += QStringLiteral("<p>") + line.toHtmlEscaped() + QStringLiteral("</p>\n");
    html += QStringLiteral("<table>\n<thead>\n") + makeRow(columns, QStringLiteral("th")) +
            QStringLiteral("</thead>\n<tbody>\n");
    for (const QStringList& row : rows)
        html += makeRow(row, QStringLiteral("td"));
    return html + QStringLiteral("</tbody>\n</table>\n</body>\n</html>\n");
}

QString ReportPage::makeRow(const QStringList& cells, const QString& element) const
{
    QString html = QStringLiteral("<tr>");
    for (int column = 0; column < cells.size(); ++column) {
        const bool isName = column < nameColumns && element == QLatin1String("td");
        html += QLatin1Char('<') + element +
                (isName ? QStringLiteral(" class=\"name\">") : QStringLiteral(">")) +
                (isName ? spreadsheet::guard(cells[column]) : cells[column]).toHtmlEscaped() +
                QStringLiteral("</") + element + QLatin1Char('>');
    }
    return html + QStringLiteral("</tr>\n");
}

} // namespace orvel::desk

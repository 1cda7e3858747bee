#include "apps/desk/reports/ReportHtml.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/SpreadsheetText.h"
#include "apps/desk/reports/ReportSignatures.h"

#include <QCryptographicHash>

namespace orvel::desk {

namespace reporthtml {

namespace {

using Row = ReportTable::Row;

// On paper the head of the table stands on every sheet and no row is torn apart.
const QString kStyle = QStringLiteral(
    ":root { color-scheme: light dark; }\n"
    "body { font: 11pt/1.35 'DejaVu Sans', sans-serif; margin: 2em auto; max-width: 80em; padding: 0 1em; }\n"
    "h1 { font-size: 1.4em; }\n"
    "h2 { font-size: 1.15em; margin-bottom: 0; }\n"
    "p { margin: 0.2em 0; }\n"
    "p.warning { border: 2px solid; font-weight: bold; padding: 0.4em 0.6em; }\n"
    "img { background: #fff; display: block; margin: 1em auto; max-height: 170mm; max-width: 100%; }\n"
    "table { border-collapse: collapse; margin-top: 1em; width: 100%; }\n"
    "th, td { border: 1px solid #888; padding: 0.25em 0.6em; text-align: right;\n"
    "         font-variant-numeric: tabular-nums; }\n"
    "th { text-align: center; }\n"
    "td.name { text-align: left; overflow-wrap: anywhere; min-width: 7.5em; }\n"
    "tr.marked td { font-weight: bold; }\n"
    "th.group { text-align: left; }\n"
    "thead { display: table-header-group; }\n"
    "tr { break-inside: avoid; }\n"
    "table.signatures { break-inside: avoid; margin-top: 3em; }\n"
    "table.signatures td { border: 0; border-bottom: 1px solid #888; height: 2.2em; text-align: left;\n"
    "                      vertical-align: bottom; }\n"
    "table.signatures th { border: 0; font-weight: normal; font-size: 0.8em; }\n"
    "@media print { body { margin: 0; max-width: none; font-size: 10pt; } :root { color-scheme: light; } }\n"
    "@page { margin: 15mm; }\n");

/// Lets the page's own style and picture work, and nothing else run or be loaded.
QString makePolicy(bool hasPicture)
{
    const QByteArray hash = QCryptographicHash::hash(kStyle.toUtf8(), QCryptographicHash::Sha256);
    const QString policy =
        QStringLiteral("default-src 'none'; style-src 'sha256-%1'").arg(QString::fromLatin1(hash.toBase64()));
    return hasPicture ? policy + QStringLiteral("; img-src data:") : policy;
}

QString makeElement(const QString& element, const QString& attributes, const QString& text)
{
    return QStringLiteral("<%1%2>%3</%1>").arg(element, attributes, text.toHtmlEscaped());
}

QString makeHeadRow(const QStringList& titles)
{
    QString html = QStringLiteral("<thead>\n<tr>");
    for (const QString& title : titles)
        html += makeElement(QStringLiteral("th"), {}, title);
    return html + QStringLiteral("</tr>\n</thead>\n");
}

QString makeRow(const ReportTable& table, const Row& row)
{
    if (row.kind == Row::Kind::Heading)
        return QStringLiteral("<tr>") +
               makeElement(QStringLiteral("th"),
                           QStringLiteral(" class=\"group\" colspan=\"%1\"").arg(table.columns.size()),
                           row.cells.value(0)) +
               QStringLiteral("</tr>\n");
    QString html =
        row.kind == Row::Kind::Marked ? QStringLiteral("<tr class=\"marked\">") : QStringLiteral("<tr>");
    int column = 0;
    for (const QString& cell : row.cells) {
        const bool isText = table.columns[static_cast<std::size_t>(column++)].isText;
        html += makeElement(QStringLiteral("td"), isText ? QStringLiteral(" class=\"name\"") : QString(),
                            isText ? spreadsheet::guard(cell) : cell);
    }
    return html + QStringLiteral("</tr>\n");
}

QString makeTable(const ReportTable& table)
{
    QString html;
    if (!table.title.isEmpty())
        html += makeElement(QStringLiteral("h2"), {}, table.title) + QLatin1Char('\n');
    QStringList titles;
    for (const ReportTable::Column& column : table.columns)
        titles.append(column.title);
    html += QStringLiteral("<table>\n") + makeHeadRow(titles) + QStringLiteral("<tbody>\n");
    for (const Row& row : table.rows)
        html += makeRow(table, row);
    return html + QStringLiteral("</tbody>\n</table>\n");
}

QString makeSignatures()
{
    QString html = QStringLiteral("<table class=\"signatures\">\n") +
                   makeHeadRow(reportsignatures::getColumns()) + QStringLiteral("<tbody>\n");
    for (const QString& role : reportsignatures::getRoles()) {
        html += QStringLiteral("<tr>") + makeElement(QStringLiteral("td"), {}, role) +
                QStringLiteral("<td></td><td></td><td></td></tr>\n");
    }
    return html + QStringLiteral("</tbody>\n</table>\n");
}

} // namespace

QString make(const ReportContent& report)
{
    QString html = QStringLiteral("<!DOCTYPE html>\n<html lang=\"%1\">\n<head>\n<meta charset=\"utf-8\">\n"
                                  "<meta http-equiv=\"Content-Security-Policy\" content=\"%4\">\n"
                                  "<title>%2</title>\n<style>%3</style>\n</head>\n<body>\n<h1>%2</h1>\n")
                       .arg(Desk::tr("ru", "the language of the reports"), report.title.toHtmlEscaped(),
                            kStyle, makePolicy(!report.picture.isEmpty()));
    if (!report.warning.isEmpty())
        html += makeElement(QStringLiteral("p"), QStringLiteral(" class=\"warning\""), report.warning) +
                QLatin1Char('\n');
    for (const QString& line : report.lines)
        html += makeElement(QStringLiteral("p"), {}, line) + QLatin1Char('\n');
    if (!report.picture.isEmpty()) {
        // What has no table is about the picture.
        const bool isSubject = report.tables.empty() && !report.title.isEmpty();
        html += QStringLiteral("<img alt=\"%1\" src=\"data:image/svg+xml;base64,%2\">\n")
                    .arg(isSubject ? report.title.toHtmlEscaped() : Desk::tr("Схема сети"),
                         QString::fromLatin1(report.picture.toBase64()));
    }
    for (const ReportTable& table : report.tables)
        html += makeTable(table);
    if (report.isToBeSigned)
        html += makeSignatures();
    return html + QStringLiteral("</body>\n</html>\n");
}

} // namespace reporthtml

} // namespace orvel::desk

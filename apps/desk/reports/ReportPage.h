#pragma once

#include <QString>
#include <QStringList>

namespace orvel::desk {

/// Builds a report: a title, lines of general data, and one table. All texts are plain and get escaped.
class ReportPage
{
public:
    explicit ReportPage(const QString& reportTitle) : title(reportTitle) {}

    void addLine(const QString& text) { lines.append(text); }
    /// The first columns hold names, which are set left; the others hold numbers.
    void setColumns(const QStringList& titles, int nameCount);
    void addRow(const QStringList& cells) { rows.append(cells); }

    QString toHtml() const;

private:
    QString makeRow(const QStringList& cells, const QString& element) const;

    QString title;
    QStringList lines;
    QStringList columns;
    int nameColumns = 1;
    QVector<QStringList> rows;
};

} // namespace orvel::desk

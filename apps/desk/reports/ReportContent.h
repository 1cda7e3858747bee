#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace orvel::desk {

/// A table of a report.
struct ReportTable
{
    struct Column
    {
        QString title;
        bool isText = false; ///< set left; numbers are set right
    };

    struct Row
    {
        enum class Kind {
            Plain,
            Marked, ///< something is wrong with it, as one of its cells tells in words; it stands out
            Heading ///< of the rows behind it: its only cell goes over all columns
        };

        QStringList cells; ///< as many as columns
        Kind kind = Kind::Plain;
    };

    QString title; ///< empty for the table that the report is about
    std::vector<Column> columns;
    std::vector<Row> rows;
};

/// What a report says, as a plain value that is set in HTML or on paper. All texts are plain.
struct ReportContent
{
    QString title;
    QString project; ///< for the head of each sheet
    QString date;
    QString warning;           ///< what whoever reads the report must know first; empty if nothing
    QStringList lines;         ///< of general data
    QByteArray picture;        ///< SVG: of the network, or what there is instead of tables; may be empty
    bool isToBeSigned = false; ///< ends with the place for signatures
    std::vector<ReportTable> tables;
};

} // namespace orvel::desk

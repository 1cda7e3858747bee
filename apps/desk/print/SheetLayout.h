#pragma once

#include "apps/desk/reports/ReportContent.h"

#include <QFont>
#include <QFontMetricsF>
#include <QStringList>

#include <vector>

class QPaintDevice;

namespace orvel::desk {

/// A font as it is set on a device. For one thread.
struct PaperFont
{
    PaperFont(qreal points, bool isBold, QPaintDevice& paintDevice);

    qreal getWidth(const QString& text) const { return metrics.horizontalAdvance(text); }
    /// The same without kerning, in much less time. Of numbers it is exact.
    qreal addUpWidth(const QString& text) const;
    /// The text in lines that fit.
    QStringList wrap(const QString& text, qreal width) const;

    QFont font;
    QFontMetricsF metrics;
    QPaintDevice* device;

private:
    mutable std::vector<qreal> advances; ///< of letters that stand side by side, as far as they are known
};

/// How wide the columns of a table are on paper.
class ColumnLayout
{
public:
    ColumnLayout(const ReportTable& table, const PaperFont& bold);

    /// What the columns need at least so that numbers and words stay whole.
    qreal getLeastWidth() const;
    /// The widths of the columns, together that.
    std::vector<qreal> share(qreal width) const;

    static qreal getPadding(const PaperFont& font);

private:
    struct Need
    {
        qreal least = 0.0;
        qreal wanted = 0.0; ///< with no line broken
        bool isText = false;
    };

    std::vector<Need> needs;
};

} // namespace orvel::desk

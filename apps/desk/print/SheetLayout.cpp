#include "apps/desk/print/SheetLayout.h"

#include <QPaintDevice>
#include <QTextLayout>

#include <algorithm>
#include <numeric>

namespace orvel::desk {

namespace {

// So many letters of a text stay in one line, if it has as many.
constexpr int kLeastLetters = 14;

// Before these letters the scripts begin whose letters change beside others.
constexpr ushort kFirstComplex = 0x0530;
// Signs like the minus and the dashes.
constexpr ushort kFirstSign = 0x2010;
constexpr ushort kLastSign = 0x2230;

bool isSimple(ushort letter)
{
    const bool isCombining = letter >= 0x0300 && letter < 0x0370;
    return (letter < kFirstComplex && !isCombining) || (letter >= kFirstSign && letter <= kLastSign);
}

QFont makeFont(qreal points, bool isBold)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(points);
    font.setBold(isBold);
    return font;
}

qreal findWidestWord(const QString& text, const PaperFont& font)
{
    qreal widest = 0.0;
    for (const QString& word : text.split(QLatin1Char(' ')))
        widest = std::max(widest, font.getWidth(word));
    return widest;
}

/// The longest text of a column, which is about the widest.
QString findLongest(const ReportTable& table, int column)
{
    QString longest;
    for (const ReportTable::Row& row : table.rows) {
        if (row.kind != ReportTable::Row::Kind::Heading && row.cells[column].size() > longest.size())
            longest = row.cells[column];
    }
    return longest;
}

} // namespace

PaperFont::PaperFont(qreal points, bool isBold, QPaintDevice& paintDevice)
    : font(makeFont(points, isBold), &paintDevice)
    , metrics(font, &paintDevice)
    , device(&paintDevice)
    , advances(kLastSign + 1, -1.0)
{}

qreal PaperFont::addUpWidth(const QString& text) const
{
    qreal sum = 0.0;
    for (const QChar letter : text) {
        if (!isSimple(letter.unicode()))
            return getWidth(text);
        qreal& advance = advances[letter.unicode()];
        if (advance < 0.0)
            advance = getWidth(letter);
        sum += advance;
    }
    return sum;
}

QStringList PaperFont::wrap(const QString& text, qreal width) const
{
    // A text that has just the width that it was measured to have fits.
    constexpr qreal rounding = 1.0;
    if (addUpWidth(text) <= width + rounding || getWidth(text) <= width + rounding)
        return {text};
    QTextLayout layout(text, font, device);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width + rounding);
        lines.append(text.mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

ColumnLayout::ColumnLayout(const ReportTable& table, const PaperFont& bold)
{
    const qreal padding = 2.0 * getPadding(bold);
    int number = 0;
    for (const ReportTable::Column& column : table.columns) {
        const QString longest = findLongest(table, number++);
        const qreal cell = bold.getWidth(longest);
        const qreal head = findWidestWord(column.title, bold);
        Need need;
        need.wanted = std::max(cell, head) + padding;
        need.least = need.wanted;
        need.isText = column.isText;
        if (column.isText)
            need.least = std::max(head, std::min(cell, bold.getWidth(longest.left(kLeastLetters)))) + padding;
        needs.push_back(need);
    }
}

qreal ColumnLayout::getLeastWidth() const
{
    return std::accumulate(needs.begin(), needs.end(), 0.0,
                           [](qreal sum, const Need& need) { return sum + need.least; });
}

std::vector<qreal> ColumnLayout::share(qreal width) const
{
    const qreal least = getLeastWidth();
    const qreal wanted = std::accumulate(needs.begin(), needs.end(), 0.0,
                                         [](qreal sum, const Need& need) { return sum + need.wanted; });
    // What is to spare is for texts: a number far from its neighbours is hard to follow.
    const auto texts =
        std::count_if(needs.begin(), needs.end(), [](const Need& need) { return need.isText; });
    const qreal sharers = static_cast<qreal>(texts > 0 ? texts : static_cast<std::ptrdiff_t>(needs.size()));
    std::vector<qreal> widths;
    for (const Need& need : needs) {
        if (least >= width)
            widths.push_back(need.least * width / least);
        else if (wanted > width)
            widths.push_back(need.least + (need.wanted - need.least) * (width - least) / (wanted - least));
        else
            widths.push_back(need.wanted + (need.isText || texts == 0 ? (width - wanted) / sharers : 0.0));
    }
    return widths;
}

qreal ColumnLayout::getPadding(const PaperFont& font)
{
    return font.metrics.height() * 0.3;
}

} // namespace orvel::desk

#include "apps/desk/print/ReportPaper.h"

#include "apps/desk/Desk.h"
#include "apps/desk/print/SheetLayout.h"
#include "apps/desk/reports/ReportSignatures.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgRenderer>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace reportpaper {

namespace {

using Row = ReportTable::Row;

constexpr qreal kTextPoints = 9.0;
constexpr qreal kLeastPoints = 6.0;
constexpr qreal kTitlePoints = 14.0;
constexpr qreal kMargin = 15.0; // mm
constexpr int kResolution = 600;
// The picture takes at most so much of a sheet's height.
constexpr qreal kPictureShare = 0.7;
// Rows between two questions whether the work goes on.
constexpr std::size_t kRowsBetweenQuestions = 64;

/// The largest size at which the tables fit into that width.
qreal choosePoints(const ReportContent& report, QPaintDevice& device, qreal width)
{
    const auto fits = [&](qreal points) {
        const PaperFont bold(points, true, device);
        return std::all_of(report.tables.begin(), report.tables.end(), [&](const ReportTable& table) {
            return ColumnLayout(table, bold).getLeastWidth() <= width;
        });
    };
    qreal points = kTextPoints;
    while (points > kLeastPoints && !fits(points))
        points -= 1.0;
    return points;
}

/// Sets a report on sheets: counts them without a painter, and with one paints them.
class Sheets
{
public:
    Sheets(const ReportContent& content, QPagedPaintDevice& pagedDevice, qreal points)
        : report(content)
        , device(pagedDevice)
        , width(pagedDevice.width())
        , text(points, false, pagedDevice)
        , bold(points, true, pagedDevice)
        , title(kTitlePoints, true, pagedDevice)
        , padding(ColumnLayout::getPadding(text))
        , lineHeight(text.metrics.height())
        , top(2.0 * lineHeight)
        , bottom(pagedDevice.height() - 2.0 * lineHeight)
    {
        for (const ReportTable& table : report.tables) {
            widths.push_back(ColumnLayout(table, bold).share(width));
            allRows += table.rows.size();
        }
    }

    /// Counts the sheets. False if the work was stopped.
    bool count(const Progress& onProgress)
    {
        progress = onProgress;
        return run() && ((sheetCount = sheet) > 0);
    }

    /// Paints those of the range, after the count. False if the work was stopped.
    bool paint(QPainter& sheetPainter, const Range& printed, const Progress& onProgress)
    {
        painter = &sheetPainter;
        range = printed;
        progress = onProgress;
        painter->setPen(QPen(Qt::black, device.logicalDpiX() / 300.0));
        return run();
    }

private:
    /// A line of cells, each in lines of text.
    struct Strip
    {
        std::vector<QStringList> cells;
        const PaperFont* font = nullptr;
        std::size_t lineCount = 1;
        bool isHead = false;    ///< of a table: set in the middle
        bool isHeading = false; ///< one cell over all columns
    };

    bool run()
    {
        sheet = 0;
        doneRows = 0;
        isStopped = false;
        startSheet();
        addText(report.title, title);
        if (!report.warning.isEmpty())
            addText(report.warning, bold);
        for (const QString& line : report.lines)
            addText(line, text);
        addPicture();
        for (std::size_t index = 0; index < report.tables.size() && !isStopped; ++index)
            addTable(report.tables[index], widths[index]);
        if (report.isToBeSigned)
            addSignatures();
        return !isStopped;
    }

    bool isPainted() const
    {
        return painter && sheet >= range.first && (range.last == 0 || sheet <= range.last);
    }

    void startSheet()
    {
        ++sheet;
        y = top;
        if (!isPainted())
            return;
        if (sheet > range.first)
            device.newPage();
        const qreal gap = bold.getWidth(QStringLiteral("MM"));
        const qreal dateWidth = text.getWidth(report.date);
        const QString name = report.project.isEmpty()
                                 ? report.title
                                 : QStringLiteral("%1 · %2").arg(report.title, report.project);
        const qreal baseline = text.metrics.ascent();
        draw(0.0, baseline, text.metrics.elidedText(name, Qt::ElideRight, width - dateWidth - gap), text);
        draw(width - dateWidth, baseline, report.date, text);
        painter->drawLine(QPointF(0.0, 1.3 * lineHeight), QPointF(width, 1.3 * lineHeight));
        const QString number =
            Desk::tr("Лист %1 из %2").arg(QString::number(sheet), QString::number(sheetCount));
        draw((width - text.getWidth(number)) / 2.0, device.height() - text.metrics.descent(), number, text);
    }

    void draw(qreal x, qreal baseline, const QString& line, const PaperFont& font)
    {
        painter->setFont(font.font);
        painter->drawText(QPointF(x, baseline), line);
    }

    void addText(const QString& paragraph, const PaperFont& font)
    {
        for (const QString& line : font.wrap(paragraph, width)) {
            if (y + font.metrics.height() > bottom)
                startSheet();
            if (isPainted())
                draw(0.0, y + font.metrics.ascent(), line, font);
            y += font.metrics.height();
        }
        y += font.metrics.height() * 0.25;
    }

    void addPicture()
    {
        if (report.picture.isEmpty())
            return;
        QSvgRenderer picture(report.picture);
        const QSizeF size = picture.defaultSize();
        if (size.isEmpty())
            return;
        y += lineHeight;
        const qreal share = (bottom - top) * kPictureShare;
        // What has nothing but a picture gives it all that is left of the sheet.
        const qreal room = report.tables.empty() ? std::max(bottom - y, share) : share;
        const QSizeF scaled = size * std::min(width / size.width(), room / size.height());
        if (y + scaled.height() > bottom)
            startSheet();
        if (isPainted())
            picture.render(painter, QRectF(QPointF((width - scaled.width()) / 2.0, y), scaled));
        y += scaled.height();
    }

    void addTable(const ReportTable& table, const std::vector<qreal>& columns)
    {
        y += lineHeight;
        if (!table.title.isEmpty())
            addText(table.title, bold);
        Strip head;
        head.isHead = true;
        head.font = &bold;
        for (std::size_t column = 0; column < columns.size(); ++column)
            addCell(head, table.columns[column].title, columns[column]);
        // No head stands alone at the end of a sheet.
        if (y + getHeight(head) + 2.0 * lineHeight > bottom)
            startSheet();
        addStrip(table, columns, head, head);
        for (const Row& row : table.rows) {
            addStrip(table, columns, makeStrip(row, columns), head);
            if (++doneRows % kRowsBetweenQuestions == 0)
                ask();
            if (isStopped)
                return;
        }
        finishGrid();
    }

    Strip makeStrip(const Row& row, const std::vector<qreal>& columns) const
    {
        Strip strip;
        strip.font = row.kind == Row::Kind::Plain ? &text : &bold;
        strip.isHeading = row.kind == Row::Kind::Heading;
        if (strip.isHeading) {
            addCell(strip, row.cells.value(0), width);
            return strip;
        }
        for (std::size_t column = 0; column < columns.size(); ++column)
            addCell(strip, row.cells.value(static_cast<int>(column)), columns[column]);
        return strip;
    }

    void addCell(Strip& strip, const QString& cell, qreal columnWidth) const
    {
        strip.cells.push_back(strip.font->wrap(cell, columnWidth - 2.0 * padding));
        strip.lineCount = std::max(strip.lineCount, static_cast<std::size_t>(strip.cells.back().size()));
    }

    qreal getHeight(const Strip& strip) const
    {
        return static_cast<qreal>(strip.lineCount) * lineHeight + padding;
    }

    /// Adds a line of cells; one that is higher than a sheet goes on with the next.
    void addStrip(const ReportTable& table, const std::vector<qreal>& columns, const Strip& strip,
                  const Strip& head)
    {
        const bool isHead = &strip == &head;
        const qreal wholeSheet = bottom - top - getHeight(head);
        const auto continueOnNext = [&] {
            finishGrid();
            startSheet();
            if (!isHead)
                addStrip(table, columns, head, head);
        };
        // A heading stays with the row behind it.
        const qreal needed = getHeight(strip) + (strip.isHeading ? 2.0 * lineHeight : 0.0);
        if (y + needed > bottom && needed <= wholeSheet)
            continueOnNext();
        std::size_t line = 0;
        while (line < strip.lineCount) {
            const auto room =
                static_cast<std::size_t>(std::max(0.0, std::floor((bottom - y - padding) / lineHeight)));
            // A head that leaves no room for anything is cut off.
            const std::size_t end =
                std::min(strip.lineCount, line + std::max<std::size_t>(room, isHead ? 1 : 0));
            if (end == line) {
                if (wholeSheet < lineHeight + padding)
                    return;
                continueOnNext();
                continue;
            }
            paintStrip(table, columns, strip, line, end);
            line = end;
            if (isHead)
                return;
        }
    }

    void paintStrip(const ReportTable& table, const std::vector<qreal>& columns, const Strip& strip,
                    std::size_t firstLine, std::size_t endLine)
    {
        const qreal height = static_cast<qreal>(endLine - firstLine) * lineHeight + padding;
        if (isPainted()) {
            addGrid(columns, strip, height);
            qreal x = 0.0;
            for (std::size_t column = 0; column < strip.cells.size(); ++column) {
                const qreal cellWidth = strip.isHeading ? width : columns[column];
                const bool isLeft = strip.isHeading || table.columns[column].isText;
                paintCell(strip, strip.cells[column], {x, cellWidth, isLeft}, firstLine, endLine);
                x += cellWidth;
            }
        }
        y += height;
    }

    struct Place
    {
        qreal x;
        qreal width;
        bool isLeft;
    };

    void paintCell(const Strip& strip, const QStringList& lines, const Place& place, std::size_t firstLine,
                   std::size_t endLine)
    {
        qreal baseline = y + padding / 2.0 + strip.font->metrics.ascent();
        for (std::size_t line = firstLine; line < endLine && line < static_cast<std::size_t>(lines.size());
             ++line) {
            const QString& cell = lines[static_cast<int>(line)];
            const qreal spare = strip.isHead || !place.isLeft
                                    ? place.width - 2.0 * padding - strip.font->addUpWidth(cell)
                                    : 0.0;
            draw(place.x + padding + (strip.isHead ? spare / 2.0 : spare), baseline, cell, *strip.font);
            baseline += lineHeight;
        }
    }

    void addGrid(const std::vector<qreal>& columns, const Strip& strip, qreal height)
    {
        grid.append(QLineF(0.0, y, width, y));
        grid.append(QLineF(0.0, y + height, width, y + height));
        qreal x = 0.0;
        grid.append(QLineF(x, y, x, y + height));
        if (strip.isHeading) {
            grid.append(QLineF(width, y, width, y + height));
            return;
        }
        for (const qreal column : columns) {
            x += column;
            grid.append(QLineF(x, y, x, y + height));
        }
    }

    /// Draws the lines of the table on the sheet that ends.
    void finishGrid()
    {
        if (isPainted())
            painter->drawLines(grid);
        grid.clear();
    }

    void addSignatures()
    {
        const QStringList titles = reportsignatures::getColumns();
        const QStringList roles = reportsignatures::getRoles();
        const qreal rowHeight = 3.0 * lineHeight;
        if (y + lineHeight + static_cast<qreal>(roles.size()) * rowHeight > bottom)
            startSheet();
        y += lineHeight;
        const qreal cell = width / static_cast<qreal>(titles.size());
        for (const QString& role : roles) {
            const qreal line = y + 2.0 * lineHeight;
            if (isPainted()) {
                draw(0.0, line - text.metrics.descent(), role, text);
                for (int column = 1; column < titles.size(); ++column) {
                    const qreal x = static_cast<qreal>(column) * cell;
                    const qreal end = x + cell - 2.0 * lineHeight;
                    painter->drawLine(QPointF(x, line), QPointF(end, line));
                    draw((x + end - text.getWidth(titles[column])) / 2.0, line + text.metrics.ascent(),
                         titles[column], text);
                }
            }
            y += rowHeight;
        }
    }

    void ask()
    {
        if (!progress)
            return;
        // Counting and painting are half of the work each.
        const std::size_t done = doneRows + (painter ? allRows : 0);
        isStopped = !progress(static_cast<int>(50 * done / allRows));
    }

    const ReportContent& report;
    QPagedPaintDevice& device;
    QPainter* painter = nullptr;
    Range range;
    Progress progress;

    const qreal width;
    const PaperFont text;
    const PaperFont bold;
    const PaperFont title;
    const qreal padding;
    const qreal lineHeight;
    const qreal top;
    const qreal bottom;
    std::vector<std::vector<qreal>> widths; ///< of the columns, by table

    int sheet = 0;
    int sheetCount = 0;
    qreal y = 0.0;
    QVector<QLineF> grid; ///< of the table on the sheet
    std::size_t doneRows = 0;
    std::size_t allRows = 0;
    bool isStopped = false;
};

} // namespace

void orient(QPagedPaintDevice& device, const ReportContent& report)
{
    device.setPageOrientation(QPageLayout::Portrait);
    const PaperFont bold(kTextPoints, true, device);
    const qreal width = device.width();
    const QSize picture = QSvgRenderer(report.picture).defaultSize();
    const bool isWide =
        (report.tables.empty() && picture.width() > picture.height()) ||
        std::any_of(report.tables.begin(), report.tables.end(), [&](const ReportTable& table) {
            return ColumnLayout(table, bold).getLeastWidth() > width;
        });
    if (isWide)
        device.setPageOrientation(QPageLayout::Landscape);
}

bool paint(const ReportContent& report, QPagedPaintDevice& device, const Range& range,
           const Progress& progress)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    Sheets sheets(report, device, choosePoints(report, device, device.width()));
    return sheets.count(progress) && sheets.paint(painter, range, progress);
}

QByteArray makePdf(const ReportContent& report, const Progress& progress)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(report.title);
    writer.setCreator(QStringLiteral("Orvel"));
    writer.setResolution(kResolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    orient(writer, report);
    return paint(report, writer, {}, progress) ? buffer.data() : QByteArray();
}

} // namespace reportpaper

} // namespace orvel::desk

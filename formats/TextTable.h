#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class QIODevice;
class QTextCodec;
class QTextDecoder;

namespace formats {

/// How the rows of a text file are divided into cells.
struct TableSyntax
{
    /// Stands between two cells. A blank stands for any run of blanks and tabs, also before the first cell.
    QChar separator = QLatin1Char(';');
    /// Characters of each column, if the columns have fixed widths; there is no separator then.
    std::vector<int> widths;
    /// Name of the encoding; "system" is the one of the language that is set. A byte order mark at the
    /// beginning of the file counts for more.
    QByteArray encoding = QByteArrayLiteral("UTF-8");
    /// What a row that is a comment begins with; if it is empty, there are none.
    QString comment = QStringLiteral("#");
    /// Rows at the beginning that hold no data.
    int skipRows = 0;
};

/// The encoding of that name; null if nobody knows it.
QTextCodec* findCodec(const QByteArray& name);

/// One row of a text file, which is one line of it.
struct TableRow
{
    enum class Kind {
        Cells,
        Heading, ///< one of those that are skipped at the beginning
        Empty,
        Comment,
        OpenQuote ///< a quotation mark that begins a cell has no other one that ends it
    };

    Kind kind = Kind::Empty;
    qint64 line = 0;
    /// Without the blanks and quotation marks around them.
    QStringList cells;
};

/// Reads the rows of a text file one by one, in a memory that does not depend on the length of the file.
///
/// A cell may stand in quotation marks, in which the separator is a character like any other and two
/// quotation marks are one. It ends on its line. What the encoding does not know, and what no text of a
/// protocol may hold, becomes U+FFFD.
class TextTable
{
public:
    static constexpr qint64 kLargestFile = qint64(256) << 20; ///< bytes
    static constexpr int kLongestLine = 10000;                ///< characters

    enum class Failure { None, FileTooLarge, LineTooLong, Stopped };

    /// @param tableDevice  open for reading; outlives the table
    /// @param stopQuestion  asked before each portion; may be empty
    TextTable(QIODevice& tableDevice, TableSyntax tableSyntax, std::function<bool()> stopQuestion = {});
    ~TextTable();

    /// Reads the next row. False at the end, and at a failure.
    bool readRow(TableRow& row);

    Failure getFailure() const { return failure; }
    /// Line of the row that was read last.
    qint64 getLine() const { return lineNumber; }
    /// The name of an encoding that the file's byte order mark tells and the syntax does not; else empty.
    QByteArray getMarkedEncoding() const { return markedEncoding; }
    /// Rows with characters that the encoding does not know, and the line of the first of them.
    qint64 getUndecodedRows() const { return undecodedRows; }
    qint64 getUndecodedLine() const { return undecodedLine; }

private:
    bool readLine(QString& line);
    bool fill();
    QByteArray readBlock();
    void chooseCodec(const QByteArray& beginning);
    void replaceUnusable(QString& line);
    void divide(const QString& line, TableRow& row) const;
    bool divideBySeparator(const QString& line, QStringList& cells) const;
    QStringList divideByWidths(const QString& line) const;

    QIODevice& device;
    const TableSyntax syntax;
    const std::function<bool()> isStopped;
    std::unique_ptr<QTextDecoder> decoder;
    QString text; // decoded and not given out
    int position = 0;
    qint64 rest = kLargestFile;
    bool isAtEnd = false;
    Failure failure = Failure::None;
    qint64 lineNumber = 0;
    QByteArray markedEncoding;
    qint64 undecodedRows = 0;
    qint64 undecodedLine = 0;
};

} // namespace formats

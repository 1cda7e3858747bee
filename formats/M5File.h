#pragma once

#include "formats/LineReader.h"

#include <QString>

#include <array>
#include <optional>

namespace formats {

/// One of the three values of a record: what it is ("SD", "Hz", "Z"), the number as it is written, and its
/// unit ("m", "DMS", "gon"). All are without blanks around them, and empty where the record has none. A
/// number that the end of the line has cut off ends in "…".
struct M5Value
{
    QString type;
    QString text;
    QString unit;
};

/// A line of a file in the format M5.
struct M5Record
{
    qint64 line = 0;     ///< in the file, from 1
    QString type;        ///< of the information: "PI1" (a point), "TI" (a text), "KD1", "TO"
    QString information; ///< 27 characters, blanks included: they are columns
    std::array<M5Value, 3> values;
    bool isMarked = false; ///< by the instrument, as faulty

    /// The value of that type; null if there is none.
    const M5Value* find(const QString& valueType) const;
};

/// Reads the records of an M5 (REC_E) file, as levels and total stations write it: lines of 119 columns,
///
///     For M5|Adr 00017|PI1           0              45|SD         24.622 m   |Hz       301.1402 DMS |...
///
/// with the address of the record, its information and three values, each by a type identifier. Blanks at
/// the end of a line may be missing.
class M5File
{
public:
    enum class Line { End, Record, Blank, Malformed };

    /// @param device  is open for reading and outlives this object
    /// @param isStopped  see LineReader
    explicit M5File(QIODevice& device, std::function<bool()> isStopped = {});

    /// Goes on to the next line and tells what it is. A column is one character, in whatever encoding (see
    /// LineReader::decode()).
    Line readNext();
    /// Behind Line::Record.
    const M5Record& getRecord() const { return record; }
    /// Of the line that was read last, from 1.
    qint64 getLineNumber() const { return lines.getNumber(); }
    /// Behind Line::End.
    LineReader::End getEnd() const { return lines.getEnd(); }

    /// Reads one line.
    static std::optional<M5Record> parse(const QByteArray& line);
    /// The number that a value has; none if it is no finite number, or out of all bounds (1e9).
    static std::optional<double> toNumber(const M5Value& value);

protected:
    using Parse = std::optional<M5Record> (*)(const QByteArray& line);

    /// A file whose lines are read by another function.
    M5File(QIODevice& device, std::function<bool()> isStopped, Parse parseFunction);

private:
    LineReader lines;
    Parse parseLine;
    M5Record record;
};

} // namespace formats

#pragma once

#include "formats/LineReader.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace formats {

/// One word of a GSI block: what it tells, and its data.
struct GsiWord
{
    /// Two digits (11: point, 32: horizontal distance), or three (331: staff reading back).
    int index = 0;
    /// Positions 3 to 6 of the word. In a word 11 or 41 that begins a block it is the number of the block.
    QString information;
    bool isNegative = false;
    /// 8 or 16 characters, without the sign.
    QString data;
    /// The data is shorter than its width, and the zeros that fill it up are there: its end is missing.
    bool isCutOff = false;

    /// Position 5: how the value came in ('0' measured, '1' entered, ...).
    QChar getInputMode() const { return information.at(2); }
    /// Position 6: unit and decimals, see toMetres().
    QChar getUnit() const { return information.at(3); }
    /// The data without the zeros and blanks that fill it; "0" if there is nothing else.
    QString toText() const;
    /// The data as a whole number with its sign; none if it is something else, or is cut off.
    std::optional<qint64> toNumber() const;
    /// Size of the last digit by the unit: '0' 1 mm, '6' 0.1 mm, '8' 0.01 mm, '1' 0.001 ft, '7' 0.0001 ft.
    /// None if the unit is not one of length. A foot is 0.3048 m.
    std::optional<double> getResolution() const;
    /// Whether the unit is feet.
    bool isInFeet() const;
    /// A length or height, m; none if the data is no number or the unit none of length.
    std::optional<double> toMetres() const;
};

/// A line of a GSI file: words that belong together.
struct GsiBlock
{
    qint64 line = 0;     ///< in the file, from 1
    bool isLong = false; ///< GSI-16
    std::vector<GsiWord> words;
    /// What stands in the line and is no word.
    QStringList unreadable;

    /// The first word of that index; null if there is none.
    const GsiWord* find(int index) const;
};

/// Reads the blocks of a GSI file, as levels and total stations write it. GSI-8:
///
///     110003+0000BM01 32...6+00253400 331.06+00015230
///
/// and GSI-16, whose lines begin with an asterisk and whose data has 16 characters. A word has a fixed width,
/// so that its data may hold blanks; where the widths are not kept, words end at the next blank. Both widths
/// may stand in one file, and lines of wide words may lack the asterisk.
class GsiFile
{
public:
    enum class Line { End, Block, Blank, Malformed };

    /// @param device  is open for reading and outlives this object
    /// @param isStopped  see LineReader
    explicit GsiFile(QIODevice& device, std::function<bool()> isStopped = {});

    /// Goes on to the next line and tells what it is. A line without any word is malformed.
    Line readNext();
    /// Behind Line::Block, and Line::Malformed.
    const GsiBlock& getBlock() const { return block; }
    /// Of the line that was read last, from 1.
    qint64 getLineNumber() const { return lines.getNumber(); }
    /// Behind Line::End.
    LineReader::End getEnd() const { return lines.getEnd(); }

    /// Reads one line: in UTF-8 or, where it is none, in ISO 8859-1.
    static GsiBlock parse(const QByteArray& line);

private:
    LineReader lines;
    GsiBlock block;
};

} // namespace formats

#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <functional>

namespace formats {

/// Gives the lines of a text one by one. They end with LF, CR LF or CR; the last one may lack its end. A byte
/// order mark of UTF-8 before the first one is none of it.
///
/// The memory needed is bounded, whatever the file holds: over one of the limits reading ends.
class LineReader
{
public:
    static constexpr qint64 kLargestFile = qint64(256) << 20; ///< bytes
    static constexpr int kLongestLine = 1 << 16;              ///< bytes

    /// Why there are no more lines.
    enum class End {
        None,         ///< there may be more
        File,         ///< all were read; whether the device failed, it tells
        Stopped,      ///< on request
        FileTooLarge, ///< see kLargestFile
        LineTooLong,  ///< the one behind the last that was given
    };

    /// @param openDevice  is open for reading and outlives the reader
    /// @param stopQuestion  asked every few kilobytes; may be empty
    explicit LineReader(QIODevice& openDevice, std::function<bool()> stopQuestion = {});

    /// Goes on to the next line; false if there is none.
    bool readNext();
    /// The line without its end.
    const QByteArray& getLine() const { return line; }
    /// Its number, from 1.
    qint64 getNumber() const { return number; }
    End getEnd() const { return end; }

    /// The text of a line: UTF-8 or, where it is none, ISO 8859-1.
    static QString decode(const QByteArray& bytes);

private:
    bool readLine();
    bool fill();
    bool finish(End reason);

    QIODevice& device;
    const std::function<bool()> isStopped;
    QByteArray buffer;
    int position = 0;
    qint64 bytesRead = 0;
    bool isBehindReturn = false;
    QByteArray line;
    qint64 number = 0;
    End end = End::None;
};

} // namespace formats

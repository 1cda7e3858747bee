#pragma once

#include "formats/LineReader.h"
#include "levelling/LevelBook.h"

namespace levelling {

/// What the file gave, where its lines have ended: a file over a limit gives nothing.
///
/// @param line  the last one that was read
inline LevelResult finishLevelFile(LevelBook& book, formats::LineReader::End end, qint64 line,
                                   const std::function<bool()>& isStopped)
{
    using End = formats::LineReader::End;
    LevelResult result;
    switch (end) {
    case End::Stopped:
        result.file.isStopped = true;
        return result;
    case End::FileTooLarge:
        result.file.fatal = Problem{ProblemKind::FileTooLarge,
                                    Severity::Fatal,
                                    line,
                                    {QString::number(formats::LineReader::kLargestFile >> 20)}};
        return result;
    case End::LineTooLong:
        result.file.fatal = Problem{ProblemKind::LineTooLong,
                                    Severity::Fatal,
                                    line + 1,
                                    {QString::number(formats::LineReader::kLongestLine)}};
        return result;
    default:
        return book.finish(isStopped);
    }
}

} // namespace levelling

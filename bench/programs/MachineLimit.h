#pragma once

#include "bench/SampleMessages.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// The same bytes moved by the machine with the same allocations, and nothing else done: what no program that
/// does the work can beat by much. Where the texts lie in a data file is known beforehand.
namespace orvel::bench::limit {

/// Where the text of a message lies in a data file.
struct TextPlace
{
    int begin;
    int size;
    int itemCount;
};

std::vector<TextPlace> findTexts(const QByteArray& dataFile);

/// File to memory, texts from UTF-8 to UTF-16, and a message with its lists for each.
std::vector<COVMessage> readDataFile(const QString& path, const std::vector<TextPlace>& texts);

/// Texts from UTF-16 to UTF-8, everything copied to the output, and the output written. `dataFile` is what
/// comes out: the bytes between the texts are taken from it.
void writeDataFile(const std::vector<COVMessage>& messages, const QByteArray& dataFile,
                   const std::vector<TextPlace>& texts, const QString& path);

/// The finished page copied, encoded and written.
void writePage(const QString& page, const QString& path);

/// Every line copied and given a message with its lists.
std::vector<COVMessage> addLines(const std::vector<QString>& lines);

} // namespace orvel::bench::limit

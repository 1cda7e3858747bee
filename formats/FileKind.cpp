#include "formats/FileKind.h"

#include "formats/GsiFile.h"
#include "formats/M5File.h"
#include "formats/RecFile.h"

#include <QBuffer>
#include <QTextCodec>

#include <algorithm>
#include <optional>

namespace formats {

namespace {

bool isXml(const QByteArray& start)
{
    const QTextCodec* const marked = QTextCodec::codecForUtfText(start, nullptr);
    if (marked)
        return marked->toUnicode(start).trimmed().startsWith(QLatin1Char('<'));
    // With two bytes for each character the first "<" has a zero beside it.
    return start.trimmed().startsWith('<') || start.startsWith(QByteArray("\0<", 2));
}

bool isOneOf(int index, std::initializer_list<int> indices)
{
    return std::find(indices.begin(), indices.end(), index) != indices.end();
}

/// What the words of a block tell; none if nothing.
std::optional<FileKind> judge(const GsiBlock& block)
{
    for (const GsiWord& word : block.words) {
        const bool isLineStart = word.index == 41 && word.data.contains(QLatin1Char('?'));
        if (isLineStart || (word.index >= 330 && word.index <= 336))
            return FileKind::GsiLevel;
        if (isOneOf(word.index, {21, 22, 31, 33, 81, 82, 84, 85, 86, 87, 88}))
            return FileKind::GsiTotalStation;
    }
    return std::nullopt;
}

std::optional<FileKind> judge(const M5Record& record)
{
    for (const M5Value& value : record.values) {
        for (const char* type : {"Rb", "Rf", "Rz", "R", "Lr", "Lv", "Lz", "L"}) {
            if (value.type == QLatin1String(type))
                return FileKind::M5Level;
        }
        for (const char* type : {"SD", "Hz", "V1", "V2", "V3", "V4", "X", "Y", "N", "E"}) {
            if (value.type == QLatin1String(type))
                return FileKind::M5TotalStation;
        }
    }
    if (RecFile::isLevelText(record.information))
        return FileKind::M5Level;
    return std::nullopt;
}

template<typename File, typename GetItem>
std::optional<FileKind> judgeLines(QByteArray start, typename File::Line itemLine, GetItem getItem,
                                   FileKind otherwise)
{
    QBuffer buffer(&start);
    buffer.open(QIODevice::ReadOnly);
    File file(buffer);
    bool hasItems = false;
    for (auto line = file.readNext(); line != File::Line::End; line = file.readNext()) {
        if (line != itemLine)
            continue;
        hasItems = true;
        if (const std::optional<FileKind> kind = judge(getItem(file)))
            return kind;
    }
    return hasItems ? std::make_optional(otherwise) : std::nullopt;
}

} // namespace

FileKind recognise(const QByteArray& start)
{
    if (isXml(start))
        return FileKind::Xml;
    if (const auto kind = judgeLines<M5File>(
            start, M5File::Line::Record, [](const M5File& file) { return file.getRecord(); },
            FileKind::M5TotalStation))
        return *kind;
    if (const auto kind = judgeLines<GsiFile>(
            start, GsiFile::Line::Block, [](const GsiFile& file) { return file.getBlock(); },
            FileKind::GsiTotalStation))
        return *kind;
    return RecFile::isLevelFile(start) ? FileKind::RecLevel : FileKind::Unknown;
}

FileKind recognise(QIODevice& device)
{
    device.startTransaction();
    QByteArray start;
    while (start.size() < kRecognisedSize) {
        const QByteArray more = device.read(kRecognisedSize - start.size());
        if (more.isEmpty())
            break;
        start += more;
    }
    device.rollbackTransaction();
    return recognise(start);
}

} // namespace formats

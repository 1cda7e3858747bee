#include "formats/RecFile.h"

#include <QBuffer>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace formats {

namespace {

constexpr int kPointLength = 8;
constexpr int kInformationLength = 27;
// Records have some 80 columns.
constexpr int kLongestRecord = 300;

bool isStaffReading(const M5Value& value)
{
    static const QStringList types{QStringLiteral("Rb"), QStringLiteral("Rf"), QStringLiteral("Rz"),
                                   QStringLiteral("Lr"), QStringLiteral("Lv"), QStringLiteral("Lz")};
    return types.contains(value.type);
}

} // namespace

RecFile::RecFile(QIODevice& device, std::function<bool()> isStopped)
    : M5File(device, std::move(isStopped), &RecFile::parse)
{}

std::optional<M5Record> RecFile::parse(const QByteArray& line)
{
    static const QRegularExpression addressed(QStringLiteral("^\\s*\\d{1,6}\\s+(\\S.*?)\\s*$"));
    static const QRegularExpression valued(QStringLiteral(
        "\\s(Rb|Rf|Rz|Lr|Lv|Lz|HD|E|Z|Sh|dz|Db|Df|Sr|Sv|sR|sL|dR|dL)\\s+([+-]?\\d+(?:\\.\\d*)?)"
        "(?=\\s|$)"));
    if (line.size() > kLongestRecord)
        return std::nullopt;
    const QRegularExpressionMatch whole = addressed.match(LineReader::decode(line));
    if (!whole.hasMatch())
        return std::nullopt;
    const QString text = whole.captured(1);
    M5Record record;
    int valueCount = 0;
    int informationEnd = text.size();
    auto values = valued.globalMatch(text);
    while (values.hasNext() && valueCount < static_cast<int>(record.values.size())) {
        const QRegularExpressionMatch value = values.next();
        if (valueCount == 0)
            informationEnd = value.capturedStart();
        record.values[static_cast<std::size_t>(valueCount++)] = {value.captured(1), value.captured(2),
                                                                 QString()};
    }
    const QString information = text.left(informationEnd).simplified();
    if (valueCount == 0) {
        record.type = QStringLiteral("TO");
        record.information = information.leftJustified(kInformationLength);
        return record;
    }
    record.type = QStringLiteral("KD1");
    const QString point = information.section(QLatin1Char(' '), 0, 0);
    const QString rest = information.section(QLatin1Char(' '), 1);
    record.information = point.rightJustified(kPointLength) + QLatin1Char(' ') + rest;
    return record;
}

bool RecFile::isLevelText(const QString& information)
{
    static const QRegularExpression texts(
        QStringLiteral("^\\s*(Start-Line|Cont-Line|End-Line|Intermediate sight|End of interm|Measurement "
                       "repeated|Station repeated)"),
        QRegularExpression::CaseInsensitiveOption);
    return texts.match(information).hasMatch();
}

bool RecFile::isLevelFile(QByteArray start)
{
    QBuffer buffer(&start);
    buffer.open(QIODevice::ReadOnly);
    RecFile file(buffer);
    for (Line line = file.readNext(); line != Line::End; line = file.readNext()) {
        if (line != Line::Record)
            continue;
        const M5Record& record = file.getRecord();
        if (std::any_of(record.values.begin(), record.values.end(), isStaffReading) ||
            isLevelText(record.information))
            return true;
    }
    return false;
}

} // namespace formats

#include "bench/SampleMessages.h"

#include "Orvel/store/ProtocolTypes.h"
#include "host/enums/EnumData.h"
#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"

#include <algorithm>
#include <memory>

namespace orvel::bench::sample {

namespace {

class Point : public CModelElement
{
public:
    int getType() const override { return kPointItemType; }
};

int getPointCount(int lineCount)
{
    return std::max(2, lineCount / 4);
}

QString makeLink(int id)
{
    return QStringLiteral("<a href=\"%1://locate-item?type=Point&id=%2&project=%3\">Рп %2</a>")
        .arg(sample::getScheme(), QString::number(id), sample::getProjectName());
}

QString getVerdict(COVMessage::MessageType kind)
{
    switch (kind) {
    case COVMessage::Error:
        return QStringLiteral("больше допуска");
    case COVMessage::Warning:
        return QStringLiteral("близка к допуску");
    default:
        return QStringLiteral("в допуске");
    }
}

QString makeLine(int number, int pointCount)
{
    const int from = number % pointCount;
    const double misclosure = 0.1 * (number % 97);
    return QStringLiteral("Секция %1 – %2: невязка %3 мм %4 %5 мм")
        .arg(makeLink(from + 1), makeLink((from + 1) % pointCount + 1), QString::number(misclosure, 'f', 1),
             getVerdict(sample::getKind(number)), QString::number(5 + number % 11));
}

/// Stages of 20, 40 and 40 % of the messages.
int getStage(int number, int count)
{
    if (number < count / 5)
        return 1;
    return number < count / 5 * 3 ? 2 : 3;
}

} // namespace

QString getScheme()
{
    return QStringLiteral("orvel");
}

QString getProjectName()
{
    return QStringLiteral("Net-1");
}

void registerItemTypes()
{
    registerEnumData(EnumData(kGeneralItemType, "Undefined", "", ""));
    registerEnumData(EnumData(kPointItemType, "Point", "пункт", "пункты"));
}

void addPoints(int lineCount, CProjectModel& model)
{
    const int pointCount = getPointCount(lineCount);
    for (int id = 1; id <= pointCount; ++id) {
        auto point = std::make_unique<Point>();
        point->setId(id);
        point->setName(QStringLiteral("Рп %1").arg(id));
        model.addItem(std::move(point));
    }
}

COVMessage::MessageType getKind(int number)
{
    const int place = number % 20;
    if (place < 10)
        return COVMessage::Message;
    if (place < 16)
        return COVMessage::Warning;
    return place < 19 ? COVMessage::Error : COVMessage::Service;
}

std::vector<QString> makeLines(int count)
{
    const int pointCount = getPointCount(count);
    std::vector<QString> lines;
    lines.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        lines.push_back(makeLine(i, pointCount));
        if (i % 40 == 0)
            lines.back() += QStringLiteral("\nповторное измерение");
    }
    return lines;
}

MessageStore makeMessages(int protocolType, int count)
{
    const int pointCount = getPointCount(count);
    const bool hasStages = protocolType == enums::Adjust;
    MessageStore store;
    std::vector<COVMessage>& messages = store[protocolType];
    messages.reserve(static_cast<std::size_t>(count));
    int openStage = 0;
    for (int i = 0; i < count; ++i) {
        const int stage = hasStages ? getStage(i, count) : 0;
        if (stage != openStage) {
            openStage = stage;
            messages.emplace_back(protocolType, COVMessage::Stage, 0, kGeneralItemType,
                                  QStringLiteral("Этап %1").arg(stage), stage);
            continue;
        }
        const int from = i % pointCount;
        const std::vector<LONGID> ids{from + 1, (from + 1) % pointCount + 1};
        messages.emplace_back(protocolType, getKind(i), ids, std::vector<int>{kPointItemType, kPointItemType},
                              makeLine(i, pointCount), stage);
    }
    return store;
}

QString makeHostileLine(int size)
{
    return QStringLiteral("<a ").repeated(size / 3);
}

} // namespace orvel::bench::sample

#include "bench/programs/MachineLimit.h"

#include "host/files/QtFile.h"

namespace orvel::bench::limit {

namespace {

constexpr int kPieceSize = 1 << 20;
constexpr std::size_t kLinksPerLine = 2;

COVMessage& addMessage(std::vector<COVMessage>& messages, std::size_t itemCount)
{
    COVMessage& message =
        messages.emplace_back(0, 0, std::vector<LONGID>(), std::vector<int>(), QString(), 0);
    message.itemIds.resize(itemCount);
    message.itemTypes.resize(itemCount);
    return message;
}

} // namespace

std::vector<TextPlace> findTexts(const QByteArray& dataFile)
{
    const QByteArray begin = QByteArrayLiteral("<![CDATA[");
    const QByteArray end = QByteArrayLiteral("]]>");
    const QByteArray item = QByteArrayLiteral("<item ");
    std::vector<TextPlace> texts;
    int at = 0;
    for (int next = dataFile.indexOf(begin); next >= 0; next = dataFile.indexOf(begin, at)) {
        const int itemCount = QByteArray::fromRawData(dataFile.constData() + at, next - at).count(item);
        const int textBegin = next + begin.size();
        at = dataFile.indexOf(end, textBegin);
        texts.push_back({textBegin, at - textBegin, itemCount});
    }
    return texts;
}

std::vector<COVMessage> readDataFile(const QString& path, const std::vector<TextPlace>& texts)
{
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    const QByteArray content = file.device()->readAll();
    file.close();
    std::vector<COVMessage> messages;
    messages.reserve(texts.size());
    for (const TextPlace& text : texts) {
        COVMessage& message = addMessage(messages, static_cast<std::size_t>(text.itemCount));
        message.text = QString::fromUtf8(content.constData() + text.begin, text.size);
    }
    return messages;
}

void writeDataFile(const std::vector<COVMessage>& messages, const QByteArray& dataFile,
                   const std::vector<TextPlace>& texts, const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    QByteArray piece;
    piece.reserve(kPieceSize + kPieceSize / 8);
    int at = 0;
    for (std::size_t i = 0; i < messages.size(); ++i) {
        piece.append(dataFile.constData() + at, texts[i].begin - at);
        piece.append(messages[i].text.toUtf8());
        at = texts[i].begin + texts[i].size;
        if (piece.size() >= kPieceSize) {
            file.device()->write(piece);
            piece.resize(0);
        }
    }
    piece.append(dataFile.constData() + at, dataFile.size() - at);
    file.device()->write(piece);
    file.close();
}

void writePage(const QString& page, const QString& path)
{
    const QString copy(page.constData(), page.size());
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(copy.toUtf8());
    file.close();
}

std::vector<COVMessage> addLines(const std::vector<QString>& lines)
{
    std::vector<COVMessage> messages;
    for (const QString& line : lines) {
        COVMessage& message = addMessage(messages, kLinksPerLine);
        message.text = QString(line.constData(), line.size());
    }
    return messages;
}

} // namespace orvel::bench::limit

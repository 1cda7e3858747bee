#include "Orvel/store/DataFileWriter.h"

#include "Orvel/store/DataFileForm.h"

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <charconv>

namespace {

using namespace orvel::datafile;

constexpr int kPieceSize = 1 << 20;

/// Text that XML can carry: lone surrogates, U+FFFE and U+FFFF become U+FFFD. One such character would cost
/// every message in the file.
QString toXmlText(const QString& text)
{
    const auto mayBeBad = [](QChar c) { return c.unicode() >= 0xD800; };
    if (std::none_of(text.begin(), text.end(), mayBeBad))
        return text;

    QString result = text;
    const int size = text.size();
    for (int i = 0; i < size; ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < size && text[i + 1].isLowSurrogate())
            ++i;
        else if (c.isSurrogate() || c.unicode() >= 0xFFFE)
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

/// Collects what is written and hands it to the device in large pieces.
class Output
{
public:
    explicit Output(QIODevice& target) : device(target)
    {
        // Little, for a small file; what the buffer grows to it keeps from piece to piece.
        buffer.reserve(1 << 10);
    }

    template<std::size_t N>
    void append(const char (&literal)[N])
    {
        buffer.append(literal, static_cast<int>(N - 1));
    }

    void appendNumber(qint64 number)
    {
        std::array<char, 20> digits{};
        const auto result = std::to_chars(digits.begin(), digits.end(), number);
        buffer.append(digits.data(), static_cast<int>(result.ptr - digits.data()));
    }

    /// As CDATA sections; a "]]>" is split between two, since it would end its own.
    void appendText(const QString& text)
    {
        const QByteArray utf8 = toXmlText(text).toUtf8();
        const char* begin = utf8.constData();
        const char* const end = begin + utf8.size();
        append(form::kSectionBegin);
        while (const char* const sectionEnd = form::findSectionEnd(begin, end)) {
            buffer.append(begin, static_cast<int>(sectionEnd + 2 - begin));
            append(form::kSectionEnd);
            append(form::kSectionBegin);
            begin = sectionEnd + 2;
        }
        buffer.append(begin, static_cast<int>(end - begin));
        append(form::kSectionEnd);
    }

    void flushPiece()
    {
        if (buffer.size() >= kPieceSize)
            flush();
    }

    void flush()
    {
        device.write(buffer);
        buffer.resize(0);
    }

private:
    QIODevice& device;
    QByteArray buffer;
};

void appendMessage(const COVMessage& message, Output& output)
{
    output.append(form::kMessageBegin);
    output.appendNumber(message.protocolType);
    output.append(form::kMessageKind);
    output.appendNumber(message.messageType);
    output.append(form::kMessageAttributesEnd);
    for (std::size_t i = 0; i < message.itemIds.size(); ++i) {
        output.append(form::kItemBegin);
        output.appendNumber(message.itemIds[i]);
        output.append(form::kItemType);
        output.appendNumber(message.itemTypes[i]);
        output.append(form::kItemEnd);
    }
    output.append(form::kTextBegin);
    if (message.stage != 0) {
        output.append(form::kStageBegin);
        output.appendNumber(message.stage);
        output.append(form::kStageEnd);
    }
    output.append(form::kTextAttributesEnd);
    output.appendText(message.text);
    output.append(form::kMessageEnd);
}

} // namespace

namespace orvel::datafile {

void write(const std::map<int, std::vector<COVMessage>>& messages, QIODevice& device)
{
    Output output(device);
    output.append(form::kHead);
    const bool isEmpty =
        std::all_of(messages.begin(), messages.end(), [](const auto& entry) { return entry.second.empty(); });
    if (isEmpty) {
        output.append(form::kEmptyList);
    } else {
        output.append(form::kListBegin);
        for (const auto& [protocolType, list] : messages) {
            for (const COVMessage& message : list) {
                appendMessage(message, output);
                output.flushPiece();
            }
        }
        output.append(form::kListEnd);
    }
    output.flush();
}

} // namespace orvel::datafile

#include "Orvel/store/DataFileReader.h"

#include "Orvel/store/DataFileForm.h"
#include "Orvel/store/Utf8Decoder.h"

#include <QIODevice>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

using namespace orvel::datafile;

constexpr std::size_t kPieceSize = 1 << 18;
// Enough for a small file at once.
constexpr std::size_t kSmallestPieceSize = 1 << 12;
// More than anything but a message can take.
constexpr std::ptrdiff_t kLookAhead = 1 << 10;

/// Reads a file front to back. The functions answer whether the text at hand was what they read, and go
/// behind it only then.
///
/// What makes a message of its parts is called with the arguments of COVMessage's constructor.
template<typename Take>
class Parser
{
public:
    Parser(QIODevice& file, const Take& takeMessage) : device(file), takeWhole(takeMessage) {}

    bool readFile()
    {
        if (!takeNextPiece() || !take(form::kHead))
            return false;
        if (take(form::kEmptyList))
            return isAtEnd();
        if (!take(form::kListBegin))
            return false;
        do {
            if (!readMessage())
                return false;
            if (end - at < kLookAhead)
                takeNextPiece();
        } while (!take(form::kListEnd));
        return isAtEnd();
    }

private:
    /// A message that the piece at hand does not hold to its end is read again when there is more.
    bool readMessage()
    {
        do {
            const char* const begin = at;
            if (readWholeMessage())
                return true;
            at = begin;
        } while (takeNextPiece());
        return false;
    }

    bool readWholeMessage()
    {
        int protocolType = 0;
        int messageType = 0;
        if (!take(form::kMessageBegin) || !takeNumber(protocolType) || !take(form::kMessageKind) ||
            !takeNumber(messageType) || !take(form::kMessageAttributesEnd))
            return false;

        itemIds.clear();
        itemTypes.clear();
        while (take(form::kItemBegin)) {
            if (!takeNumber(itemIds.emplace_back()) || !take(form::kItemType) ||
                !takeNumber(itemTypes.emplace_back()) || !take(form::kItemEnd))
                return false;
        }

        int stage = 0;
        QString text;
        if (!take(form::kTextBegin))
            return false;
        if (take(form::kStageBegin) && (!takeNumber(stage) || stage == 0 || !take(form::kStageEnd)))
            return false;
        if (!take(form::kTextAttributesEnd) || !readText(text) || !take(form::kMessageEnd))
            return false;
        takeWhole(protocolType, messageType, itemIds, itemTypes, text, stage);
        return true;
    }

    bool readText(QString& text)
    {
        if (!take(form::kSectionBegin) || !readSectionRest(text))
            return false;
        QString next;
        while (take(form::kSectionBegin)) {
            if (!readSectionRest(next))
                return false;
            text += next;
        }
        return true;
    }

    bool readSectionRest(QString& text)
    {
        const char* const sectionEnd = form::findSectionEnd(at, end);
        if (!sectionEnd || !decoder.decode(at, sectionEnd, text))
            return false;
        at = sectionEnd;
        return take(form::kSectionEnd);
    }

    template<std::size_t N>
    bool take(const char (&literal)[N])
    {
        constexpr std::size_t size = N - 1;
        if (static_cast<std::size_t>(end - at) < size || std::memcmp(at, literal, size) != 0)
            return false;
        at += size;
        return true;
    }

    /// A decimal as the writer writes it: no leading zeros, no "-0", and within the range of `Number`.
    template<typename Number>
    bool takeNumber(Number& number)
    {
        const auto result = std::from_chars(at, end, number);
        if (result.ec != std::errc())
            return false;
        const char* const firstDigit = *at == '-' ? at + 1 : at;
        if (*firstDigit == '0' && (firstDigit != at || result.ptr - firstDigit > 1))
            return false;
        at = result.ptr;
        return true;
    }

    /// Adds the next piece of the file to what is left of the one at hand; at least as much as that, so that
    /// a long message is not begun too often. False at the end of the file.
    bool takeNextPiece()
    {
        const auto left = static_cast<std::size_t>(end - at);
        piece.erase(piece.begin(), piece.begin() + (at - piece.data()));
        const auto awaited = static_cast<std::size_t>(std::max<qint64>(device.bytesAvailable(), 0));
        piece.resize(left + std::max(left, std::clamp(awaited, kSmallestPieceSize, kPieceSize)));
        const qint64 added = device.read(piece.data() + left, static_cast<qint64>(piece.size() - left));
        at = piece.data();
        end = at + left + std::max<qint64>(added, 0);
        return added > 0;
    }

    bool isAtEnd() { return at == end && !takeNextPiece(); }

    QIODevice& device;
    const Take& takeWhole;
    std::vector<char> piece;
    const char* at = nullptr;
    const char* end = nullptr;

    // Of the message at hand; they keep their memory from one to the next.
    std::vector<LONGID> itemIds;
    std::vector<int> itemTypes;
    orvel::Utf8Decoder decoder;
};

} // namespace

namespace orvel::datafile {

std::optional<Messages> readCanonical(QIODevice& device)
{
    Messages messages;
    const auto keep = [&messages](int protocolType, int messageType, const std::vector<LONGID>& itemIds,
                                  const std::vector<int>& itemTypes, const QString& text, int stage) {
        messages[protocolType].emplace_back(protocolType, messageType, itemIds, itemTypes, text, stage);
    };
    if (!Parser(device, keep).readFile())
        return std::nullopt;
    return messages;
}

bool visitCanonical(QIODevice& device, const std::function<void(const COVMessage&)>& visit)
{
    const auto show = [&visit](int protocolType, int messageType, const std::vector<LONGID>& itemIds,
                               const std::vector<int>& itemTypes, const QString& text, int stage) {
        visit(COVMessage(protocolType, messageType, itemIds, itemTypes, text, stage));
    };
    return Parser(device, show).readFile();
}

} // namespace orvel::datafile

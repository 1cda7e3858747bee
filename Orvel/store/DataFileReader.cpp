#include "Orvel/store/DataFileReader.h"

#include "Orvel/store/DataFileForm.h"
#include "Orvel/store/Utf8Decoder.h"

#include <charconv>
#include <cstring>

namespace {

using namespace datafile;

/// Reads a file front to back. The functions answer whether the text at hand was what they read, and go
/// behind it only then.
class Parser
{
public:
    explicit Parser(const QByteArray& content) : at(content.constData()), end(at + content.size()) {}

    bool readFile(Messages& messages)
    {
        if (!take(form::head))
            return false;
        if (take(form::emptyList))
            return at == end;
        if (!take(form::listBegin))
            return false;
        do {
            if (!readMessage(messages))
                return false;
        } while (!take(form::listEnd));
        return at == end;
    }

private:
    bool readMessage(Messages& messages)
    {
        int protocolType = 0;
        int messageType = 0;
        if (!take(form::messageBegin) || !takeNumber(protocolType) || !take(form::messageKind) ||
            !takeNumber(messageType) || !take(form::messageAttributesEnd))
            return false;

        itemIds.clear();
        itemTypes.clear();
        while (take(form::itemBegin)) {
            if (!takeNumber(itemIds.emplace_back()) || !take(form::itemType) ||
                !takeNumber(itemTypes.emplace_back()) || !take(form::itemEnd))
                return false;
        }

        int stage = 0;
        QString text;
        if (!take(form::textBegin))
            return false;
        if (take(form::stageBegin) && (!takeNumber(stage) || stage == 0 || !take(form::stageEnd)))
            return false;
        if (!take(form::textAttributesEnd) || !readText(text) || !take(form::messageEnd))
            return false;
        messages.emplace_back(protocolType, messageType, itemIds, itemTypes, text, stage);
        return true;
    }

    bool readText(QString& text)
    {
        if (!readSection(text))
            return false;
        QString next;
        while (at != end && *at == form::sectionBegin[0] && readSection(next))
            text += next;
        return true;
    }

    bool readSection(QString& text)
    {
        if (!take(form::sectionBegin))
            return false;
        const char* const sectionEnd = form::findSectionEnd(at, end);
        if (!sectionEnd || !decoder.decode(at, sectionEnd, text))
            return false;
        at = sectionEnd;
        return take(form::sectionEnd);
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

    const char* at;
    const char* const end;

    // Of the message at hand; they keep their memory from one to the next.
    std::vector<LONGID> itemIds;
    std::vector<int> itemTypes;
    Utf8Decoder decoder;
};

} // namespace

namespace datafile {

std::optional<Messages> readOwnForm(const QByteArray& content)
{
    Messages messages;
    if (!Parser(content).readFile(messages))
        return std::nullopt;
    return messages;
}

} // namespace datafile

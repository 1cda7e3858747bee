#include "Orvel/store/DataFileReader.h"

#include "Orvel/store/DataFileForm.h"

#include <QString>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

using namespace datafile;

/// Decodes `size` bytes as the DOM does; nothing for bytes that the DOM would read otherwise or refuse.
std::optional<QString> decode(const char* begin, const char* end)
{
    // QString drops leading byte order marks, which are text here.
    constexpr char mark[] = "\xEF\xBB\xBF";
    int marks = 0;
    for (; end - begin >= 3 && std::memcmp(begin, mark, 3) == 0; begin += 3)
        ++marks;

    const int size = static_cast<int>(end - begin);
    QString text = QString::fromUtf8(begin, size);
    const auto isSuspect = [](QChar c) { return c.unicode() >= 0xFFFD; };
    if (std::any_of(text.begin(), text.end(), isSuspect)) {
        const bool hasEndMark = text.contains(QChar(0xFFFE)) || text.contains(QChar(0xFFFF));
        if (hasEndMark || text.toUtf8() != QByteArray::fromRawData(begin, size))
            return std::nullopt;
    }
    if (marks > 0)
        return QString(marks, QChar(QChar::ByteOrderMark)) + text;
    // Decoding reserves a character for each byte.
    text.squeeze();
    return text;
}

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

        COVMessage& message = messages.emplace_back(protocolType, messageType, std::vector<LONGID>(),
                                                    std::vector<int>(), QString(), 0);
        while (take(form::itemBegin)) {
            LONGID id = 0;
            int type = 0;
            if (!takeNumber(id) || !take(form::itemType) || !takeNumber(type) || !take(form::itemEnd))
                return false;
            message.itemIds.push_back(id);
            message.itemTypes.push_back(type);
        }
        if (!take(form::textBegin))
            return false;
        if (take(form::stageBegin) &&
            (!takeNumber(message.stage) || message.stage == 0 || !take(form::stageEnd)))
            return false;
        return take(form::textAttributesEnd) && readText(message.text) && take(form::messageEnd);
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
        const char* const sectionEnd = findSectionEnd();
        if (!sectionEnd)
            return false;
        std::optional<QString> decoded = decode(at, sectionEnd);
        if (!decoded)
            return false;
        text = std::move(*decoded);
        at = sectionEnd;
        return take(form::sectionEnd);
    }

    /// The next "]]>"; null when there is none.
    const char* findSectionEnd() const
    {
        const auto size = static_cast<std::size_t>(end - at);
        return static_cast<const char*>(memmem(at, size, form::sectionEnd, sizeof(form::sectionEnd) - 1));
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

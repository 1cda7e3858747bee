#pragma once

#include <cstring>

/// The texts that a data file is made of, in the order in which they stand in it:
///
///     file    = kHead ( kEmptyList | kListBegin message { message } kListEnd )
///     message = kMessageBegin NUMBER kMessageKind NUMBER kMessageAttributesEnd
///               { kItemBegin NUMBER kItemType NUMBER kItemEnd }
///               kTextBegin [ kStageBegin NUMBER kStageEnd ] kTextAttributesEnd section { section }
///               kMessageEnd
///     section = kSectionBegin TEXT kSectionEnd
///
/// NUMBER is a decimal without leading zeros or "-0", TEXT is UTF-8 that does not hold kSectionEnd.
namespace orvel::datafile::form {

constexpr char kHead[] = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                         "<!DOCTYPE zarnik_vok_protocol>\n";
constexpr char kEmptyList[] = "<messagelist/>\n";
constexpr char kListBegin[] = "<messagelist>\n";
constexpr char kListEnd[] = "</messagelist>\n";

constexpr char kMessageBegin[] = "    <li ptype=\"";
constexpr char kMessageKind[] = "\" mtype=\"";
constexpr char kMessageAttributesEnd[] = "\">\n";
constexpr char kMessageEnd[] = "</mess>\n"
                               "    </li>\n";

constexpr char kItemBegin[] = "        <item iid=\"";
constexpr char kItemType[] = "\" itype=\"";
constexpr char kItemEnd[] = "\"/>\n";

constexpr char kTextBegin[] = "        <mess";
constexpr char kStageBegin[] = " sid=\"";
constexpr char kStageEnd[] = "\"";
constexpr char kTextAttributesEnd[] = ">";

constexpr char kSectionBegin[] = "<![CDATA[";
constexpr char kSectionEnd[] = "]]>";

/// Where the first kSectionEnd lies in the bytes from `begin` up to `end`; null when there is none. Goes from
/// one "]" to the next, which texts hardly hold and the machine finds fast.
inline const char* findSectionEnd(const char* begin, const char* end)
{
    constexpr std::size_t size = sizeof(kSectionEnd) - 1;
    while (static_cast<std::size_t>(end - begin) >= size) {
        const auto* const found = static_cast<const char*>(
            std::memchr(begin, kSectionEnd[0], static_cast<std::size_t>(end - begin) - (size - 1)));
        if (!found || std::memcmp(found, kSectionEnd, size) == 0)
            return found;
        begin = found + 1;
    }
    return nullptr;
}

} // namespace orvel::datafile::form

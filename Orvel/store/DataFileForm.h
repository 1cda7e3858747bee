#pragma once

#include <cstring>

/// The texts that a data file is made of, in the order in which they stand in it:
///
///     file    = head ( emptyList | listBegin message { message } listEnd )
///     message = messageBegin NUMBER messageKind NUMBER messageAttributesEnd
///               { itemBegin NUMBER itemType NUMBER itemEnd }
///               textBegin [ stageBegin NUMBER stageEnd ] textAttributesEnd section { section } messageEnd
///     section = sectionBegin TEXT sectionEnd
///
/// NUMBER is a decimal without leading zeros or "-0", TEXT is UTF-8 that does not hold sectionEnd.
namespace orvel::datafile::form {

constexpr char head[] = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                        "<!DOCTYPE zarnik_vok_protocol>\n";
constexpr char emptyList[] = "<messagelist/>\n";
constexpr char listBegin[] = "<messagelist>\n";
constexpr char listEnd[] = "</messagelist>\n";

constexpr char messageBegin[] = "    <li ptype=\"";
constexpr char messageKind[] = "\" mtype=\"";
constexpr char messageAttributesEnd[] = "\">\n";
constexpr char messageEnd[] = "</mess>\n"
                              "    </li>\n";

constexpr char itemBegin[] = "        <item iid=\"";
constexpr char itemType[] = "\" itype=\"";
constexpr char itemEnd[] = "\"/>\n";

constexpr char textBegin[] = "        <mess";
constexpr char stageBegin[] = " sid=\"";
constexpr char stageEnd[] = "\"";
constexpr char textAttributesEnd[] = ">";

constexpr char sectionBegin[] = "<![CDATA[";
constexpr char sectionEnd[] = "]]>";

/// Where the first sectionEnd lies in the bytes from `begin` up to `end`; null when there is none. Goes from
/// one "]" to the next, which texts hardly hold and the machine finds fast.
inline const char* findSectionEnd(const char* begin, const char* end)
{
    constexpr std::size_t size = sizeof(sectionEnd) - 1;
    while (static_cast<std::size_t>(end - begin) >= size) {
        const auto* const found = static_cast<const char*>(
            std::memchr(begin, sectionEnd[0], static_cast<std::size_t>(end - begin) - (size - 1)));
        if (!found || std::memcmp(found, sectionEnd, size) == 0)
            return found;
        begin = found + 1;
    }
    return nullptr;
}

} // namespace orvel::datafile::form

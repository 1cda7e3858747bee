#pragma once

/// The texts that a data file is made of, in the order in which they stand in it:
///
///     file    = head ( emptyList | listBegin message { message } listEnd )
///     message = messageBegin NUMBER messageKind NUMBER messageAttributesEnd
///               { itemBegin NUMBER itemType NUMBER itemEnd }
///               textBegin [ stageBegin NUMBER stageEnd ] textAttributesEnd section { section } messageEnd
///     section = sectionBegin TEXT sectionEnd
///
/// NUMBER is a decimal without leading zeros or "-0", TEXT is UTF-8 that does not hold sectionEnd.
namespace datafile::form {

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

} // namespace datafile::form

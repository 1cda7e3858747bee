#pragma once

#include "Orvel/html/HtmlOutput.h"

/// The mark-up of the collapsible tree. The page's style sheet and script know these tags by heart.
namespace orvel::tree {

inline void openContainer(HtmlOutput& html)
{
    html << QLatin1String("<ul class=\"Container\">\n");
}

inline void closeContainer(HtmlOutput& html)
{
    html << QLatin1String("</ul>\n");
}

/// Opens a node with its toggle; `classes` are the node's state classes.
inline void openNode(QLatin1String classes, HtmlOutput& html)
{
    html << QLatin1String("<li class=\"") << classes
         << QLatin1String("\">\n"
                          "<div class=\"Expand\"></div>\n");
}

inline void closeNode(HtmlOutput& html)
{
    html << QLatin1String("</li>\n");
}

/// A caption with the number of lines below it in parentheses; no number for an empty group.
inline void appendCaption(QStringView caption, std::size_t count, HtmlOutput& html)
{
    html << QLatin1String("<div class=\"Content\">") << caption;
    if (count != 0)
        html << QStringLiteral(" (%1)").arg(count);
    html << QLatin1String("</div>\n");
}

/// A whole node without children. Every leaf is marked as the last one; the style sheet relies on it.
inline void appendLeaf(const QString& styleClass, const QString& text, HtmlOutput& html)
{
    html << QLatin1String("<li class=\"Node ExpandLeaf IsLast\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content ")
         << styleClass << QLatin1String("\">") << text
         << QLatin1String("</div>\n"
                          "</li>\n");
}

} // namespace orvel::tree

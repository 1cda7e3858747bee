#pragma once

#include <QString>

/// The mark-up of the collapsible tree. The page's style sheet and script know these tags by heart.
namespace tree {

inline void openContainer(QString& html)
{
    html += QLatin1String("<ul class=\"Container\">\n");
}

inline void closeContainer(QString& html)
{
    html += QLatin1String("</ul>\n");
}

/// Opens a node with its toggle; `classes` are the node's state classes.
inline void openNode(QLatin1String classes, QString& html)
{
    html += QLatin1String("<li class=\"");
    html += classes;
    html += QLatin1String("\">\n"
                          "<div class=\"Expand\"></div>\n");
}

inline void closeNode(QString& html)
{
    html += QLatin1String("</li>\n");
}

/// A caption with the number of lines below it in parentheses; no number for an empty group.
inline void appendCaption(const QString& caption, std::size_t count, QString& html)
{
    html += QLatin1String("<div class=\"Content\">");
    html += caption;
    if (count != 0)
        html += QStringLiteral(" (%1)").arg(count);
    html += QLatin1String("</div>\n");
}

/// A whole node without children. Every leaf is marked as the last one; the style sheet relies on it.
inline void appendLeaf(const QString& styleClass, const QString& text, QString& html)
{
    html += QLatin1String("<li class=\"Node ExpandLeaf IsLast\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content ");
    html += styleClass;
    html += QLatin1String("\">");
    html += text;
    html += QLatin1String("</div>\n"
                          "</li>\n");
}

} // namespace tree

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
    html += QLatin1String("<li class=\"") + classes +
            QLatin1String("\">\n"
                          "<div class=\"Expand\"></div>\n");
}

inline void closeNode(QString& html)
{
    html += QLatin1String("</li>\n");
}

inline void appendCaption(const QString& caption, QString& html)
{
    html += QLatin1String("<div class=\"Content\">") + caption + QLatin1String("</div>\n");
}

/// " (count)" to put behind a caption; nothing for an empty group.
inline QString countSuffix(std::size_t count)
{
    return count == 0 ? QString() : QStringLiteral(" (%1)").arg(count);
}

} // namespace tree

#include "tests/reference/RegExpLinks.h"

#include <QRegExp>

namespace {

QStringList findAll(QRegExp& expression, const QString& text)
{
    QStringList captures;
    for (int at = expression.indexIn(text); at >= 0;
         at = expression.indexIn(text, at + expression.matchedLength()))
        captures.append(expression.cap(1));
    return captures;
}

} // namespace

namespace reference {

QStringList findAnchors(const QString& text)
{
    QRegExp expression(QStringLiteral("(<a.*</a>)"), Qt::CaseSensitive, QRegExp::RegExp);
    expression.setMinimal(true);
    return findAll(expression, text);
}

std::vector<LONGID> findIds(const QString& text)
{
    QRegExp expression(QStringLiteral("id=(\\d+)"), Qt::CaseSensitive, QRegExp::RegExp);
    std::vector<LONGID> ids;
    for (const QString& anchor : findAnchors(text)) {
        for (const QString& digits : findAll(expression, anchor))
            ids.push_back(digits.toLongLong());
    }
    return ids;
}

} // namespace reference

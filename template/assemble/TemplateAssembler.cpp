#include "TemplateAssembler.h"

#include <QCryptographicHash>
#include <QVector>

#include <algorithm>
#include <stdexcept>

namespace orvel {

namespace {

[[noreturn]] void fail(const QString& message)
{
    throw std::runtime_error(message.toStdString());
}

bool isAscii(const QString& text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
}

/// `text` with every code point beyond ASCII in the form that `escape` gives it.
template<typename Escape>
QString escapeCodePoints(const QString& text, Escape escape)
{
    QString result;
    for (const uint codePoint : text.toUcs4()) {
        if (codePoint < 0x80)
            result += QChar(codePoint);
        else
            result += escape(codePoint);
    }
    return result;
}

QString hashSource(const QString& text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toLatin1(), QCryptographicHash::Sha256);
    return QStringLiteral("'sha256-%1'").arg(QString::fromLatin1(hash.toBase64()));
}

void requireNone(const QString& text, const QString& forbidden, const QString& where)
{
    if (text.contains(forbidden, Qt::CaseInsensitive))
        fail(QStringLiteral("the %1 must not contain \"%2\"").arg(where, forbidden));
}

void fillPlaceholder(QString& page, const QString& name, const QString& value)
{
    if (page.count(name) != 1)
        fail(QStringLiteral("the markup must contain %1 exactly once").arg(name));
    page.replace(name, value);
}

} // namespace

QByteArray TemplateAssembler::assemble(const QString& markup, const QString& style, const QString& script)
{
    const QString styleText = asciiStyle(style.trimmed());
    // In strings and regular expressions an escaped slash is the same, and does not end the script.
    const QString scriptText =
        asciiScript(script.trimmed()).replace(QStringLiteral("</"), QStringLiteral("<\\/"));
    requireNone(styleText, QStringLiteral("</"), QStringLiteral("style"));
    requireNone(scriptText, QStringLiteral("<!--"), QStringLiteral("script"));

    QString page = asciiMarkup(markup);
    if (page.count(QStringLiteral("</div"), Qt::CaseInsensitive) != 1)
        fail(QStringLiteral("the markup must hold exactly one closing div tag"));
    fillPlaceholder(page, QStringLiteral("@policy@"), policy(styleText, scriptText));
    fillPlaceholder(page, QStringLiteral("<!-- @style@ -->"),
                    QStringLiteral("<style>%1</style>").arg(styleText));
    fillPlaceholder(page, QStringLiteral("<!-- @script@ -->"),
                    QStringLiteral("<script>%1</script>").arg(scriptText));

    if (!isAscii(page))
        fail(QStringLiteral("the template is not pure ASCII"));
    if (page.size() > kMaxSize)
        fail(QStringLiteral("the template has %1 bytes, more than %2").arg(page.size()).arg(kMaxSize));
    return page.toLatin1();
}

QString TemplateAssembler::asciiScript(const QString& text)
{
    QString result;
    for (const QChar c : text) {
        if (c.unicode() < 0x80)
            result += c;
        else
            result += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result;
}

QString TemplateAssembler::asciiStyle(const QString& text)
{
    return escapeCodePoints(text, [](uint c) {
        return QStringLiteral("\\%1").arg(c, 6, 16, QLatin1Char('0')) + QLatin1Char(' ');
    });
}

QString TemplateAssembler::asciiMarkup(const QString& text)
{
    return escapeCodePoints(text, [](uint c) { return QStringLiteral("&#%1;").arg(c); });
}

QString TemplateAssembler::policy(const QString& style, const QString& script)
{
    return QStringLiteral("default-src 'none'; script-src %1; worker-src blob:; style-src %2; img-src data:; "
                          "base-uri 'none'; "
                          "form-action 'none'")
        .arg(hashSource(script), hashSource(style));
}

} // namespace orvel

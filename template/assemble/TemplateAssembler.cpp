#include "TemplateAssembler.h"

#include "Squeezer.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

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

QString withoutIndentation(const QString& markup)
{
    QString result;
    for (const QString& line : markup.split(QLatin1Char('\n')))
        if (!line.trimmed().isEmpty())
            result += line.trimmed() + QLatin1Char('\n');
    return result;
}

void requireNone(const QString& text, const QString& forbidden, const QString& where)
{
    if (text.contains(forbidden, Qt::CaseInsensitive))
        fail(QStringLiteral("the %1 must not contain \"%2\"").arg(where, forbidden));
}

/// One scope holds all modules, so that a name declared in two of them would end the whole script.
void requireNewNames(const QString& module, const QString& bundle, const QString& path)
{
    static const QRegularExpression declaration(
        QStringLiteral("^(?:export )?(?:async )?(?:const|let|class|function\\*?) (\\w+)"),
        QRegularExpression::MultilineOption);
    auto declarations = declaration.globalMatch(module);
    while (declarations.hasNext()) {
        const QString name = declarations.next().captured(1);
        const QRegularExpression known(
            QStringLiteral("^(?:async )?(?:const|let|class|function\\*?) %1\\b").arg(name),
            QRegularExpression::MultilineOption);
        if (known.match(bundle).hasMatch())
            fail(QStringLiteral("%1: the name %2 is taken by another module").arg(path, name));
    }
}

void fillPlaceholder(QString& page, const QString& name, const QString& value)
{
    if (page.count(name) != 1)
        fail(QStringLiteral("the markup must contain %1 exactly once").arg(name));
    page.replace(name, value);
}

} // namespace

QByteArray TemplateAssembler::assemble(const QString& markup, const QString& style, const QString& script,
                                       const QStringList& ownNames)
{
    const QString styleText = asciiStyle(Squeezer::squeeze(style, Squeezer::Language::Style));
    // In strings and regular expressions an escaped slash is the same, and does not end the script.
    const QString scriptText = asciiScript(Squeezer::squeeze(script, Squeezer::Language::Script, ownNames))
                                   .replace(QStringLiteral("</"), QStringLiteral("<\\/"));
    requireNone(styleText, QStringLiteral("</"), QStringLiteral("style"));
    requireNone(scriptText, QStringLiteral("<!--"), QStringLiteral("script"));

    QString page = asciiMarkup(withoutIndentation(markup));
    if (page.count(QStringLiteral("</div"), Qt::CaseInsensitive) != 1)
        fail(QStringLiteral("the markup must hold exactly one closing div tag"));
    fillPlaceholder(page, QStringLiteral("@policy@"), policy(styleText, scriptText));
    fillPlaceholder(page, QStringLiteral("<!-- @style@ -->"),
                    QStringLiteral("<style>%1</style>").arg(styleText));
    fillPlaceholder(page, QStringLiteral("<!-- @script@ -->"),
                    QStringLiteral("<script>%1</script>").arg(scriptText));

    if (!isAscii(page))
        fail(QStringLiteral("the template is not pure ASCII"));
    if (page.size() > s_maxSize)
        fail(QStringLiteral("the template has %1 bytes, more than %2").arg(page.size()).arg(s_maxSize));
    return page.toLatin1();
}

QString TemplateAssembler::bundleModules(const QString& path)
{
    QStringList seen;
    QString bundle;
    appendModule(path, seen, bundle);
    return bundle;
}

void TemplateAssembler::appendModule(const QString& path, QStringList& seen, QString& bundle)
{
    const QString key = QFileInfo(path).canonicalFilePath();
    if (!key.isEmpty() && seen.contains(key))
        return;
    seen.append(key);

    static const QRegularExpression importStatement(
        QStringLiteral("^import\\s*\\{[^}]*\\}\\s*from\\s*\"\\./([^\"]+)\";\\n"),
        QRegularExpression::MultilineOption);
    static const QRegularExpression exportKeyword(QStringLiteral("^export "),
                                                  QRegularExpression::MultilineOption);
    static const QRegularExpression leftOver(QStringLiteral("^(?:import|export)\\b.*$"),
                                             QRegularExpression::MultilineOption);

    QString text = readText(path);
    auto imports = importStatement.globalMatch(text);
    while (imports.hasNext())
        appendModule(QFileInfo(path).path() + QLatin1Char('/') + imports.next().captured(1), seen, bundle);
    text.remove(importStatement);
    requireNewNames(text, bundle, path);
    text.remove(exportKeyword);
    const QRegularExpressionMatch unknown = leftOver.match(text);
    if (unknown.hasMatch())
        fail(QStringLiteral("%1: cannot bundle \"%2\"").arg(path, unknown.captured()));
    bundle += text;
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
    return QStringLiteral("default-src 'none'; script-src %1; style-src %2; img-src data:; base-uri 'none'; "
                          "form-action 'none'")
        .arg(hashSource(script), hashSource(style));
}

QString TemplateAssembler::readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("%1: %2").arg(path, file.errorString()));
    return QString::fromUtf8(file.readAll());
}

#include "Squeezer.h"

#include "ShortNames.h"

#include <QHash>
#include <QRegularExpression>

#include <stdexcept>

namespace {

bool isWord(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

/// A keyword of a script, or a shorter one that says the same there.
QString shortFormOf(const QString& word)
{
    static const QHash<QString, QString> shortForms = {{QStringLiteral("const"), QStringLiteral("let")},
                                                       {QStringLiteral("true"), QStringLiteral("!0")},
                                                       {QStringLiteral("false"), QStringLiteral("!1")}};
    return shortForms.value(word, word);
}

} // namespace

QString Squeezer::squeeze(const QString& source, Language language, const QStringList& ownNames)
{
    Squeezer squeezer(source, language);
    squeezer.readTokens();
    if (squeezer.isScript)
        shortenNames(squeezer.tokens, ownNames);
    return squeezer.joined();
}

Squeezer::Squeezer(const QString& source, Language language)
    : text(source)
    , isScript(language == Language::Script)
{}

void Squeezer::readTokens()
{
    while (position < text.size()) {
        const QChar c = at(position);
        if (c.isSpace()) {
            hasBlank = true;
            ++position;
        } else if (startsComment(QLatin1Char('*')))
            skipComment(QStringLiteral("*/"));
        else if (isScript && startsComment(QLatin1Char('/')))
            skipComment(QStringLiteral("\n"));
        else if (startsTemplatePart(c))
            append(Token::Kind::Literal, takeTemplatePart());
        else if (startsLiteral(c))
            append(Token::Kind::Literal, takeLiteral());
        else if (isWord(c) || (isScript && c == QLatin1Char('#')))
            append(Token::Kind::Word, takeWord());
        else
            append(Token::Kind::Sign, takeSign());
    }
}

void Squeezer::append(Token::Kind kind, const QString& token)
{
    tokens.append({token, kind, hasBlank});
    hasBlank = false;
}

QString Squeezer::joined() const
{
    QString result;
    for (const Token& token : tokens) {
        if (token.isAfterBlank && needsBlank(result, token.text.front()))
            result += QLatin1Char(' ');
        // A semicolon behind a parenthesis may be the empty body of a loop.
        const bool mayBeBody = isScript && result.endsWith(QLatin1String(");"));
        if (token.text == QLatin1String("}") && result.endsWith(QLatin1Char(';')) && !mayBeBody)
            result.chop(1);
        result += token.text;
    }
    return result;
}

QChar Squeezer::at(int index) const
{
    return index < text.size() ? text.at(index) : QChar();
}

bool Squeezer::startsLiteral(QChar c) const
{
    if (c == QLatin1Char('"') || c == QLatin1Char('\''))
        return true;
    return isScript && c == QLatin1Char('/') && isExpressionNext();
}

bool Squeezer::startsTemplatePart(QChar c) const
{
    const bool endsExpression = !expressionBraces.isEmpty() && expressionBraces.last() == 0;
    return isScript && (c == QLatin1Char('`') || (c == QLatin1Char('}') && endsExpression));
}

bool Squeezer::startsComment(QChar second) const
{
    return at(position) == QLatin1Char('/') && at(position + 1) == second;
}

void Squeezer::skipComment(const QString& end)
{
    const int found = text.indexOf(end, position + 2);
    if (found < 0)
        throw std::runtime_error("a comment has no end");
    position = found + end.size();
    hasBlank = true;
}

/// A string, or a regular expression, in whose character classes its end mark may stand.
QString Squeezer::takeLiteral()
{
    const int start = position++;
    const QChar end = text.at(start);
    bool inClass = false;
    while (inClass || at(position) != end) {
        if (position >= text.size())
            throw std::runtime_error("a string or expression has no end: " +
                                     text.mid(start, 40).toStdString());
        if (end == QLatin1Char('/') && at(position) == QLatin1Char('['))
            inClass = true;
        else if (at(position) == QLatin1Char(']'))
            inClass = false;
        position += at(position) == QLatin1Char('\\') ? 2 : 1;
    }
    ++position;
    const QString literal = text.mid(start, position - start);
    return isScript && end == QLatin1Char('"') ? packCyrillic(literal) : literal;
}

/// The text of a template string up to an expression in it, or up to its end; the expressions' tokens stand
/// between.
QString Squeezer::takeTemplatePart()
{
    const int start = position;
    if (text.at(position++) == QLatin1Char('}'))
        expressionBraces.removeLast();
    for (; position < text.size(); ++position) {
        const QChar c = at(position);
        const bool startsExpression = c == QLatin1Char('$') && at(position + 1) == QLatin1Char('{');
        if (c == QLatin1Char('`') || startsExpression) {
            position += startsExpression ? 2 : 1;
            if (startsExpression)
                expressionBraces.append(0);
            return text.mid(start, position - start);
        }
        if (c == QLatin1Char('\\'))
            ++position;
    }
    throw std::runtime_error("a template string has no end: " + text.mid(start, 40).toStdString());
}

QString Squeezer::takeSign()
{
    const QChar sign = text.at(position++);
    if (!expressionBraces.isEmpty() && sign == QLatin1Char('{'))
        ++expressionBraces.last();
    if (!expressionBraces.isEmpty() && sign == QLatin1Char('}'))
        --expressionBraces.last();
    return sign;
}

QString Squeezer::takeWord()
{
    const int start = position++;
    while (isWord(at(position)))
        ++position;
    const QString word = text.mid(start, position - start);
    if (isScript)
        return isMemberNext() ? word : shortFormOf(word);
    if (word != QLatin1String("0") || at(position) != QLatin1Char('.'))
        return word;
    ++position;
    return QLatin1Char('.') + takeWord();
}

QString Squeezer::packCyrillic(const QString& text)
{
    static const QRegularExpression run(
        QStringLiteral("[\\x{410}-\\x{451}](?:[\\x{410}-\\x{451} ]*[\\x{410}-\\x{451}])?"));
    constexpr ushort offset = 0x410 - ';';
    QString result;
    int end = 0;
    auto runs = run.globalMatch(text);
    while (runs.hasNext()) {
        const QRegularExpressionMatch match = runs.next();
        result += text.midRef(end, match.capturedStart() - end) + QLatin1Char('~');
        for (const QChar c : match.captured()) {
            const QChar packed = c == QLatin1Char(' ') ? c : QChar(c.unicode() - offset);
            result += packed == QLatin1Char('\\') ? QStringLiteral("\\\\") : QString(packed);
        }
        result += QLatin1Char('~');
        end = match.capturedEnd();
    }
    return result + text.mid(end);
}

bool Squeezer::needsBlank(const QString& before, QChar next) const
{
    if (before.isEmpty())
        return false;
    const QChar last = before.back();
    if (!isScript) {
        static const QString breakers = QStringLiteral("{};,>");
        return last != QLatin1Char(':') && !breakers.contains(last) && !breakers.contains(next);
    }
    const bool isDoubledSign = last == next && (last == QLatin1Char('+') || last == QLatin1Char('-'));
    return isDoubledSign || (isWord(last) && (isWord(next) || next == QLatin1Char('#')));
}

/// Whether a slash at this place begins a regular expression, as opposed to dividing what stands before it.
bool Squeezer::isExpressionNext() const
{
    static const QStringList keywords = {QStringLiteral("return"), QStringLiteral("yield"),
                                         QStringLiteral("typeof"), QStringLiteral("case"),
                                         QStringLiteral("of"),     QStringLiteral("in")};
    if (tokens.isEmpty())
        return true;
    const Token& last = tokens.last();
    if (last.kind == Token::Kind::Sign)
        return QStringLiteral("(,=:[!&|?{};+-*%~^<>").contains(last.text);
    return last.kind == Token::Kind::Word && keywords.contains(last.text);
}

bool Squeezer::isMemberNext() const
{
    return !tokens.isEmpty() && tokens.last().text == QLatin1String(".");
}

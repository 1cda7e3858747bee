#include "ShortNames.h"

#include <QHash>
#include <QSet>

#include <stdexcept>

namespace {

bool isPrivate(const Token& token)
{
    return token.kind == Token::Kind::Word && token.text.startsWith(QLatin1Char('#'));
}

/// What the names of a script are used for.
class NameUse
{
public:
    NameUse(const Tokens& script, const QStringList& ownNames) : tokens(script)
    {
        for (int at = 0; at < tokens.size(); ++at)
            read(at);
        for (const QString& name : ownNames) {
            requireOwn(name);
            declared.insert(name);
            kept.remove(name);
        }
    }

    bool canBeShort(const Token& token) const
    {
        const bool isOwn = token.kind == Token::Kind::Word && declared.contains(token.text);
        return isPrivate(token) || (isOwn && !kept.contains(token.text));
    }

    bool isTaken(const QString& name) const { return words.contains(name); }

private:
    QString textAt(int at) const { return at >= 0 && at < tokens.size() ? tokens.at(at).text : QString(); }

    void requireOwn(const QString& name) const
    {
        if (!words.contains(name))
            throw std::runtime_error("own name " + name.toStdString() + ": not in the script");
        if (texts.contains(name))
            throw std::runtime_error("own name " + name.toStdString() + ": a text in the script, too");
    }

    void read(int at)
    {
        const Token& token = tokens.at(at);
        if (token.kind == Token::Kind::Literal)
            texts.insert(token.text.mid(1, token.text.size() - 2));
        if (token.kind != Token::Kind::Word)
            return;
        words.insert(token.text);
        if (isDeclared(at) && token.text.size() > 1)
            declared.insert(token.text);
        if (mayBeProperty(at))
            kept.insert(token.text);
    }

    bool isDeclared(int at) const
    {
        static const QStringList declarators = {QStringLiteral("let"), QStringLiteral("class"),
                                                QStringLiteral("function")};
        const int before = textAt(at - 1) == QLatin1String("*") ? at - 2 : at - 1;
        return declarators.contains(textAt(before)) || isParameter(at);
    }

    /// A name right behind the opening parenthesis or a comma of what is followed by an arrow or a body.
    bool isParameter(int at) const
    {
        static const QStringList statements = {QStringLiteral("if"), QStringLiteral("for"),
                                               QStringLiteral("while"), QStringLiteral("switch")};
        const int opening = openingAround(at);
        int closing = at;
        for (int depth = -1; depth < 0 && closing < tokens.size();)
            depth += stepOf(++closing);
        if (textAt(opening) != QLatin1String("(") || textAt(closing) != QLatin1String(")"))
            return false;
        QString before = textAt(at - 1);
        if (opening != at - 1 && before != QLatin1String(",") && before != QLatin1String("."))
            return false;
        const QString after = textAt(closing + 1) + textAt(closing + 2);
        return after == QLatin1String("=>") ||
               (after.startsWith(QLatin1Char('{')) && !statements.contains(textAt(opening - 1)));
    }

    /// Where the bracket around a token opens.
    int openingAround(int at) const
    {
        for (int depth = 1; depth > 0 && at > 0;)
            depth += stepOf(--at);
        return at;
    }

    /// By how much a token changes the depth of brackets, read forwards or backwards.
    int stepOf(int at) const
    {
        static const QString brackets = QStringLiteral("([{}])");
        const QString text = textAt(at);
        const int index =
            text.size() == 1 && tokens.at(at).kind == Token::Kind::Sign ? brackets.indexOf(text) : -1;
        return index < 0 ? 0 : index < 3 ? -1 : 1;
    }

    /// A member, a key, or one of the names between braces that may be either.
    bool mayBeProperty(int at) const
    {
        static const QStringList openers = {QStringLiteral("{"), QStringLiteral(",")};
        static const QStringList closers = {QStringLiteral("}"), QStringLiteral(","), QStringLiteral("=")};
        const QString before = textAt(at - 1);
        const QString after = textAt(at + 1);
        const bool isSpread = before == QLatin1String(".") && textAt(at - 2) == QLatin1String(".");
        if (before == QLatin1String(".") && !isSpread)
            return true;
        if (after == QLatin1String(":"))
            return true;
        return openers.contains(before) && closers.contains(after) &&
               textAt(openingAround(at)) == QLatin1String("{");
    }

    const Tokens& tokens;
    // What a made name could be by chance, and must not.
    QSet<QString> words = {QStringLiteral("do"), QStringLiteral("if"), QStringLiteral("in")};
    QSet<QString> declared;
    QSet<QString> kept;
    QSet<QString> texts;
};

/// a, b, … z, aa, ba, …
QString nameOfNumber(int number)
{
    QString name;
    for (; number >= 0; number = number / 26 - 1)
        name += QChar('a' + number % 26);
    return name;
}

} // namespace

void shortenNames(Tokens& script, const QStringList& ownNames)
{
    const NameUse use(script, ownNames);
    QHash<QString, QString> shortNames;
    int privates = 0;
    int others = 0;
    for (Token& token : script) {
        if (!use.canBeShort(token))
            continue;
        QString& name = shortNames[token.text];
        if (name.isEmpty() && isPrivate(token))
            name = QLatin1Char('#') + nameOfNumber(privates++);
        while (name.isEmpty() || (!isPrivate(token) && use.isTaken(name)))
            name = nameOfNumber(others++);
        token.text = name;
    }
}

#pragma once

#include "Token.h"

#include <QStringList>

/// Makes a source small: takes out comments, blanks and semicolons before a brace; in scripts also shortens
/// names and writes `let` for `const`, `!0` for `true`. Strings and regular expressions stay as they are, but
/// for Cyrillic in the double-quoted strings of a script: as escapes a letter would
/// cost six bytes, so runs of it are packed into ASCII, and the script unpacks its texts.
///
/// Scripts must end their statements with semicolons, since line breaks go too.
class Squeezer
{
public:
    enum class Language { Script, Style };

    /// The squeezed form of `source`; of a script, with its `ownNames` short wherever they stand (see
    /// shortenNames). Throws std::runtime_error when a comment or string has no end.
    static QString squeeze(const QString& source, Language language, const QStringList& ownNames = {});

    /// `text` with each run of Cyrillic letters and blanks between two tildes, a letter as one character.
    static QString packCyrillic(const QString& text);

private:
    Squeezer(const QString& source, Language language);

    void readTokens();
    QString joined() const;
    QChar at(int index) const;
    bool startsComment(QChar second) const;
    /// Whether a text or a regular expression begins with the character at hand.
    bool startsLiteral(QChar c) const;
    /// Whether a template string begins there, or goes on behind an expression in it.
    bool startsTemplatePart(QChar c) const;
    void skipComment(const QString& end);
    void append(Token::Kind kind, const QString& token);
    QString takeLiteral();
    QString takeTemplatePart();
    QString takeSign();
    QString takeWord();
    bool isExpressionNext() const;
    bool isMemberNext() const;
    bool needsBlank(const QString& before, QChar next) const;

    QString text;
    Tokens tokens;
    int position = 0;
    /// For each template string around the place, how many braces are open in its expression.
    QVector<int> expressionBraces;
    bool isScript;
    bool hasBlank = false;
};

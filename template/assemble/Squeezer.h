#pragma once

#include <QHash>
#include <QString>

/// Makes a source small: takes out comments, blanks and semicolons before a brace; in scripts also shortens
/// the private names of classes and writes `let` for `const`. Strings, template strings and regular
/// expressions stay as they are, but for Cyrillic in the double-quoted strings of a script: as escapes a
/// letter would cost six bytes, so runs of it are packed into ASCII, and the script unpacks its texts.
///
/// Scripts must end their statements with semicolons, since line breaks go too, and must not use private
/// names in template strings.
class Squeezer
{
public:
    enum class Language { Script, Style };

    /// The squeezed form of `source`. Throws std::runtime_error when a comment or string has no end.
    static QString squeeze(const QString& source, Language language);

    /// `text` with each run of Cyrillic letters and blanks between two tildes, a letter as one character.
    static QString packCyrillic(const QString& text);

private:
    Squeezer(const QString& source, Language language);

    QString run();
    QChar at(int index) const;
    bool startsComment(QChar second) const;
    /// Whether a text, a template or a regular expression begins with the character at hand.
    bool startsLiteral(QChar c) const;
    void skipComment(const QString& end);
    QString takeLiteral();
    QString takeWord();
    QString takePrivateName();
    void append(const QString& token);
    bool needsBlank(QChar next) const;
    bool isExpressionNext() const;

    QString text;
    QString result;
    QHash<QString, QString> privateNames;
    int position = 0;
    bool isScript;
    bool hasBlank = false;
};

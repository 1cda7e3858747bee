#pragma once

#include <QString>
#include <QVector>

/// A piece of a source as Squeezer takes it apart.
struct Token
{
    /// A word is a name, a keyword or a number; a private name of a script is a word with its "#".
    enum class Kind { Word, Literal, Sign };

    QString text;
    Kind kind;
    bool isAfterBlank;
};

using Tokens = QVector<Token>;

#pragma once

#include <QString>
#include <QStringList>

/// Makes the one self-contained page template out of its markup, style and script sources.
///
/// The result is pure ASCII, because the template is read with the platform's default codec, and holds
/// exactly one closing div tag, because the generated content goes before the last one. Every operation
/// throws std::runtime_error with a message for the developer when a source breaks a rule.
class TemplateAssembler
{
public:
    /// Largest size of an assembled template, in bytes.
    static constexpr int s_maxSize = 60 * 1000;

    /// The whole template. `markup` holds the placeholders "@policy@" (an attribute's value) and, where the
    /// elements go, "<!-- @style@ -->" and "<!-- @script@ -->", once each. `ownNames` are the properties that
    /// only the script's own objects have.
    static QByteArray assemble(const QString& markup, const QString& style, const QString& script,
                               const QStringList& ownNames = {});

    /// The script module at `path` after all modules that it imports, each once, without the import
    /// statements and export keywords: one scope holds them all.
    static QString bundleModules(const QString& path);

    /// ASCII forms of a text inside a script, a style sheet and markup.
    static QString asciiScript(const QString& text);
    static QString asciiStyle(const QString& text);
    static QString asciiMarkup(const QString& text);

    /// Content of the Content-Security-Policy meta tag that lets exactly this style and this script work.
    static QString policy(const QString& style, const QString& script);

    /// Reads a UTF-8 file whole.
    static QString readText(const QString& path);

private:
    static void appendModule(const QString& path, QStringList& seen, QString& bundle);
};

#pragma once

#include <QByteArray>
#include <QString>

namespace orvel {

/// Puts the style and the script into the page's markup, which makes the one self-contained page template.
///
/// The result is pure ASCII, because the template is read with the platform's default codec, and holds
/// exactly one closing div tag, because the generated content goes before the last one.
class TemplateAssembler
{
public:
    /// Largest size of an assembled template, in bytes.
    static constexpr int kMaxSize = 100 * 1000;

    /// The whole template.
    /// @param markup holds the placeholders "@policy@" (an attribute's value) and, where the elements go,
    ///        "<!-- @style@ -->" and "<!-- @script@ -->", once each
    /// @throws std::runtime_error with a message for the developer when a source breaks a rule
    static QByteArray assemble(const QString& markup, const QString& style, const QString& script);

    /// ASCII forms of a text inside a script, a style sheet and markup.
    static QString asciiScript(const QString& text);
    static QString asciiStyle(const QString& text);
    static QString asciiMarkup(const QString& text);

    /// Content of the Content-Security-Policy meta tag that lets exactly this style and this script work.
    static QString policy(const QString& style, const QString& script);
};

} // namespace orvel

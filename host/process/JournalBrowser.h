#pragma once

#include <QTextBrowser>

/// A browser that loads nothing that its text names, neither images nor style sheets, from wherever: a line
/// may come from a file of somebody else's, and to read what it names can take for ever.
class JournalBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;

    /// An empty image or text. Qt would go and look for itself behind an invalid one.
    QVariant loadResource(int type, const QUrl& name) override;
};

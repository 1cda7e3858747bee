#pragma once

#include <QObject>
#include <QStringList>
#include <QUrl>

/// Stands in for the system's browser while it exists: keeps what is opened instead of showing it.
class OpenedUrls : public QObject
{
    Q_OBJECT

public:
    /// For addresses of these schemes.
    explicit OpenedUrls(const QStringList& urlSchemes = {QStringLiteral("file")});
    ~OpenedUrls() override;

    /// In the order of opening.
    QList<QUrl> getUrls() const { return urls; }
    /// The local paths of what was opened.
    QStringList getPaths() const;

    Q_INVOKABLE void open(const QUrl& url);

private:
    QStringList schemes;
    QList<QUrl> urls;
};

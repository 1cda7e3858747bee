#pragma once

#include <QTreeWidget>

struct ProtocolSummary;

/// The latest protocol of every kind of run, with its counts of errors, warnings and messages.
class ProtocolList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ProtocolList(QWidget* parent = nullptr);

    void setSummary(const ProtocolSummary& summary);

signals:
    /// The user wants to see the page of that type.
    void protocolRequested(int protocolType);
};

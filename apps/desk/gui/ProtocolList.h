#pragma once

#include <QTreeWidget>

namespace orvel::desk {

struct ProtocolSummary;

/// The latest protocol of every kind of run, with its counts of errors, warnings and messages.
class ProtocolList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ProtocolList(QWidget* parent = nullptr);

    void setSummary(const ProtocolSummary& summary);

Q_SIGNALS:
    /// The user wants to see the page of that type.
    void protocolRequested(int protocolType);
};

} // namespace orvel::desk

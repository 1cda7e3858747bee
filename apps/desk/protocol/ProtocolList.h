#pragma once

#include "apps/desk/document/ProtocolSummary.h"

#include <QTreeWidget>

#include <vector>

namespace orvel::desk {

/// The latest protocol of every kind of run, with its counts of errors, warnings and messages and when it
/// ended; the latest one first.
class ProtocolList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ProtocolList(QWidget* parent = nullptr);

    void setSummary(const ProtocolSummary& summary);
    /// Marks the protocols of these types as those of another state of the network.
    void setOutdated(const std::vector<int>& types);
    /// Makes the protocol of that type the current one, if there is one.
    void choose(int protocolType);

Q_SIGNALS:
    /// The protocol of that type is the current one.
    void protocolChosen(int protocolType);
    /// The user wants to see the page of that type.
    void protocolRequested(int protocolType);

private:
    void addType(int type, const ProtocolSummary::Counts& counts);
    void showOutdated();

    std::vector<int> outdatedTypes;
};

} // namespace orvel::desk

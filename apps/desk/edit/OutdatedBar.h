#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace orvel::desk {

class Document;

/// Says above the table that its results belong to another state of the network; hidden while they don't.
class OutdatedBar : public QFrame
{
    Q_OBJECT

public:
    /// The document outlives the bar.
    explicit OutdatedBar(Document& openDocument, QWidget* parent = nullptr);

    /// While a run works, it need not be asked for again.
    void setRunPossible(bool isPossible);

Q_SIGNALS:
    /// What was run is to be run again.
    void runRequested();

private:
    void showState();

    Document& document;
    QLabel* label;
    QPushButton* button;
};

} // namespace orvel::desk

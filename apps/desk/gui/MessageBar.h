#pragma once

#include <QFrame>

class QLabel;

namespace orvel::desk {

/// A word to the user at the top of a window that waits for no answer; hidden until there is one.
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent = nullptr);

    /// Shows the text, which is plain, in place of an earlier one.
    void showMessage(const QString& text);
    QString getMessage() const;

private:
    QLabel* label;
};

} // namespace orvel::desk

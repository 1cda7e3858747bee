#pragma once

#include <QDialog>

namespace orvel::desk {

/// Tells what each run does.
class HelpDialog : public QDialog
{
    Q_OBJECT

public:
    explicit HelpDialog(QWidget* parent = nullptr);

    /// Shows a dialog that is gone once it or the window is closed.
    static HelpDialog& showBeside(const QWidget* window);
};

} // namespace orvel::desk

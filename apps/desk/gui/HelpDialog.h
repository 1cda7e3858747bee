#pragma once

#include <QDialog>

namespace orvel::desk {

/// Tells what each run does.
class HelpDialog : public QDialog
{
    Q_OBJECT

public:
    explicit HelpDialog(QWidget* parent = nullptr);
};

} // namespace orvel::desk

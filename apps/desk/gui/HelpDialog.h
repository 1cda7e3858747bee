#pragma once

#include <QDialog>

/// Tells what each run does.
class HelpDialog : public QDialog
{
    Q_OBJECT

public:
    explicit HelpDialog(QWidget* parent = nullptr);
};

#pragma once

#include "apps/desk/print/PrintSubject.h"

#include <QDialog>

#include <vector>

class QListWidget;
class QPushButton;

namespace orvel::desk {

/// Asks what is to be printed, and where to.
class PrintDialog : public QDialog
{
    Q_OBJECT

public:
    enum class Target { Printer, File, Viewer };

    /// @param chosen  the subject that is meant at first, if it is available
    PrintDialog(const std::vector<PrintSubject>& subjects, int chosen, QWidget* parent);

    QListWidget& getList() { return *list; }

Q_SIGNALS:
    /// The user wants a subject, by its place in the list, there.
    void requested(int subject, orvel::desk::PrintDialog::Target target);

private:
    void updateButtons();

    QListWidget* list;
    std::vector<QPushButton*> buttons;
};

} // namespace orvel::desk

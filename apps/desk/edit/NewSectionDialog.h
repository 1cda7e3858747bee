#pragma once

#include "apps/desk/document/NetworkChange.h"

#include <QDialog>

class QLabel;
class QLineEdit;

namespace orvel::desk {

/// Asks for a measurement that is to be added to the network.
class NewSectionDialog : public QDialog
{
    Q_OBJECT

public:
    /// @param pointNames  of the network, offered while a name is typed
    NewSectionDialog(const QStringList& pointNames, const QString& from, const QString& to,
                     QWidget* parent = nullptr);

    /// What was asked for, after the dialog was accepted.
    const networkchange::NewSection& getSection() const { return section; }

    void accept() override;

private:
    /// Why there is no measurement in the fields; empty if there is one.
    QString read();

    networkchange::NewSection section;
    QLineEdit* from;
    QLineEdit* to;
    QLineEdit* difference;
    QLineEdit* distance;
    QLineEdit* stations;
    QLineEdit* sigma;
    QLabel* problem;
};

} // namespace orvel::desk

#pragma once

#include "apps/desk/print/PrintDialog.h"
#include "apps/desk/print/PrintSubject.h"
#include "apps/desk/print/ReportPicture.h"
#include "apps/desk/reports/DeskReports.h"

#include <QObject>

#include <memory>
#include <vector>

class QWidget;

namespace orvel::desk {

class Document;
class ItemTable;
class PlotPanel;
class ProtocolPanel;

/// Prints what a window has: reports, the table as it is shown, the lines of the protocol, the picture of the
/// network, a plot. The pages of the reports get the picture that their sheets have.
class DeskPrinting : public QObject
{
    Q_OBJECT

public:
    /// All are parts of the window, which owns the object.
    DeskPrinting(Document& openDocument, ItemTable& itemTable, ProtocolPanel& linePanel,
                 const PlotPanel& plotPanel, QWidget* window);

    /// Asks what is to be printed, and does it.
    void showDialog();

    /// What can be printed now.
    std::vector<PrintSubject> listSubjects() const;

Q_SIGNALS:
    /// Something that the user should know.
    void told(const QString& text);

private:
    PrintSubject makeTableSubject() const;
    PrintSubject makeLinesSubject() const;
    PrintSubject makeReportSubject(const deskreports::Report& report) const;
    PrintSubject makePictureSubject() const;
    PrintSubject makePlotSubject() const;
    void perform(const PrintSubject& subject, PrintDialog::Target target);
    void print(const PrintSubject::Maker& make);
    void saveFile(const PrintSubject::Maker& make, const QString& title);
    void view(const PrintSubject::Maker& make);
    bool write(const PrintSubject::Maker& make, const QString& path);

    const Document& document;
    ItemTable& table;
    ProtocolPanel& lines;
    const PlotPanel& plots;
    std::shared_ptr<ReportPicture> picture;
    QWidget* window;
};

} // namespace orvel::desk

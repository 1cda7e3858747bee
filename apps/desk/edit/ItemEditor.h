#pragma once

#include "host/model/LongId.h"

#include <QObject>

#include <optional>
#include <vector>

class QInputDialog;
class QWidget;

namespace orvel::desk {

class Document;
class ItemTable;

/// What can be done by hand with the selected rows of the item table, with the questions that it needs. All
/// of it goes by the document's undo stack.
class ItemEditor : public QObject
{
    Q_OBJECT

public:
    /// Both outlive the editor.
    ItemEditor(Document& openDocument, ItemTable& itemTable, QWidget* parent);

    /// Switches the selected sections off, after asking why; on, if all of them are off.
    void switchSections();
    /// Gives the selected sections one standard deviation.
    void setSigma();
    /// Makes benchmarks of the selected points; asks for the height of a single one.
    void holdPoints();
    void freePoints();
    void addSection();
    void deleteSections();

Q_SIGNALS:
    /// Nothing was changed; tells why, in a sentence of plain text.
    void refused(const QString& reason);

private:
    std::vector<LONGID> getSelectedSections() const;
    std::vector<LONGID> getSelectedPoints() const;
    QString nameSections(const std::vector<LONGID>& ids) const;
    bool ask(QInputDialog& dialog, const QString& title, const QString& label) const;
    void takePlace(int row);
    std::optional<double> askHeight(LONGID id) const;

    Document& document;
    ItemTable& table;
    QWidget* window;
};

} // namespace orvel::desk

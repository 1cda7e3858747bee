#pragma once

#include "apps/desk/Desk.h"
#include "host/delegates/CProjectItemModel.h"

namespace orvel::desk {

class Document;

/// The points of the project, in the columns of the item table.
class PointTableModel : public CProjectItemModel
{
    Q_OBJECT

public:
    /// The document outlives the model.
    explicit PointTableModel(Document& openDocument, QObject* parent = nullptr);

    /// The first cell of that point; invalid if there is none.
    QModelIndex findPoint(LONGID id) const;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QVariant getValue(const QModelIndex& index) const;
    void showProtocols();

    Document& document;
    // Of all points, who share them.
    const QString fixedPointText = Desk::tr("исходный репер");
    const QString pointText = Desk::tr("пункт");
};

} // namespace orvel::desk

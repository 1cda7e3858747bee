#pragma once

#include "apps/desk/Desk.h"
#include "host/delegates/CProjectItemModel.h"

namespace orvel::desk {

class Document;
class LevellingPoint;

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
    /// Takes the text of an editor.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    /// A value was not taken; tells why, in a sentence of plain text.
    void editRefused(const QString& reason);

private:
    const LevellingPoint& getPoint(const QModelIndex& index) const;
    bool isOutdated(const QModelIndex& index) const;
    QVariant getValue(const QModelIndex& index) const;
    void showProtocols();
    void showResults();

    Document& document;
    // Of all points, who share them.
    const QString fixedPointText = Desk::tr("исходный репер");
    const QString pointText = Desk::tr("пункт");
};

} // namespace orvel::desk

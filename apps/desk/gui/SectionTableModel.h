#pragma once

#include "host/model/LongId.h"

#include <QAbstractTableModel>

#include <vector>

namespace orvel::desk {

class Document;
class LevellingSection;

/// The measured sections of the project, in the columns of the item table.
class SectionTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The document outlives the model.
    explicit SectionTableModel(Document& openDocument, QObject* parent = nullptr);

    /// The section of the row; null for an index that isn't of this model.
    const LevellingSection* getSection(const QModelIndex& index) const;
    /// The first cells of the sections among the items, from top to bottom.
    QModelIndexList findSections(const std::vector<LONGID>& ids) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Takes the text of an editor.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    /// A value was not taken; tells why, in a sentence of plain text.
    void editRefused(const QString& reason);

private:
    int getTraits(const LevellingSection& section) const;
    QVariant getValue(const LevellingSection& section, int column) const;
    void setSections(const std::vector<LevellingSection*>& networkSections);
    void takeSections();
    void showEdited(const std::vector<LONGID>& ids);
    void showProtocols();
    void showColumns(int first, int last, const QVector<int>& roles = {});

    Document& document;
    std::vector<LevellingSection*> sections;
    // Of all sections, who share them.
    const QString typeText;
    const QString offText;
};

} // namespace orvel::desk

#pragma once

#include "apps/desk/protocol/ProtocolTree.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <memory>

namespace orvel::desk {

/// The lines of a protocol as a tree: stages, kinds, lines.
class ProtocolTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit ProtocolTreeModel(QObject* parent = nullptr);

    /// What the lines of a kind are called together.
    static QString nameKind(COVMessage::MessageType kind);
    /// Told by its shape as well as by its colour.
    static QIcon getKindIcon(COVMessage::MessageType kind);

    /// Shows other lines.
    void setLines(std::shared_ptr<const ProtocolLines> protocolLines, ProtocolTree lineTree);
    const ProtocolTree& getTree() const { return tree; }

    /// The line of an index; null for a branch.
    const ProtocolLine* getLine(const QModelIndex& index) const;
    /// The place of a line in its protocol; -1 for a branch.
    int getPlace(const QModelIndex& index) const;
    /// The index of a branch by its number in the tree.
    QModelIndex getBranchIndex(int branch) const;
    /// Which one of its kind a line is, from 1, and how many there are.
    std::pair<std::size_t, std::size_t> countOfKind(const QModelIndex& index) const;
    /// The index of a line by its place, if it is shown.
    QModelIndex findPlace(int place) const;
    /// The next line of that kind behind an index, or before it, and beyond the end from the other end again.
    /// None if there is none.
    QModelIndex findNext(const QModelIndex& from, COVMessage::MessageType kind, bool isForward) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    int getBranchAt(const QModelIndex& index) const;
    QString describeBranch(const ProtocolTree::Branch& branch) const;

    std::shared_ptr<const ProtocolLines> lines;
    ProtocolTree tree;
};

} // namespace orvel::desk

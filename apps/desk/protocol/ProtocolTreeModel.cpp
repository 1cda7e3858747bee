#include "apps/desk/protocol/ProtocolTreeModel.h"

#include "apps/desk/Desk.h"

#include <QApplication>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace orvel::desk {

QString ProtocolTreeModel::nameKind(COVMessage::MessageType kind)
{
    if (kind == COVMessage::Error)
        return Desk::tr("Ошибки");
    return kind == COVMessage::Warning ? Desk::tr("Предупреждения") : Desk::tr("Сообщения");
}

QIcon ProtocolTreeModel::getKindIcon(COVMessage::MessageType kind)
{
    const auto icon = kind == COVMessage::Error     ? QStyle::SP_MessageBoxCritical
                      : kind == COVMessage::Warning ? QStyle::SP_MessageBoxWarning
                                                    : QStyle::SP_MessageBoxInformation;
    return QApplication::style()->standardIcon(icon);
}

ProtocolTreeModel::ProtocolTreeModel(QObject* parent)
    : QAbstractItemModel(parent)
    , lines(std::make_shared<const ProtocolLines>())
{}

void ProtocolTreeModel::setLines(std::shared_ptr<const ProtocolLines> protocolLines, ProtocolTree lineTree)
{
    beginResetModel();
    lines = std::move(protocolLines);
    tree = std::move(lineTree);
    endResetModel();
}

// An index holds the branch that it stands in, or -1 on the first level.

/// The branch that an index shows; -1 for a line and for none.
int ProtocolTreeModel::getBranchAt(const QModelIndex& index) const
{
    if (!index.isValid())
        return -1;
    const auto around = static_cast<int>(index.internalId());
    const std::vector<int>& branches =
        around < 0 ? tree.top : tree.branches[static_cast<std::size_t>(around)].branches;
    const auto row = static_cast<std::size_t>(index.row());
    return row < branches.size() ? branches[row] : -1;
}

QModelIndex ProtocolTreeModel::getBranchIndex(int branch) const
{
    if (branch < 0)
        return {};
    const ProtocolTree::Branch& shown = tree.branches[static_cast<std::size_t>(branch)];
    return createIndex(shown.row, 0, static_cast<quintptr>(static_cast<qintptr>(shown.parent)));
}

const ProtocolLine* ProtocolTreeModel::getLine(const QModelIndex& index) const
{
    const int place = getPlace(index);
    return place < 0 ? nullptr : &lines->lines[static_cast<std::size_t>(place)];
}

int ProtocolTreeModel::getPlace(const QModelIndex& index) const
{
    if (!index.isValid() || getBranchAt(index) >= 0)
        return -1;
    const auto around = static_cast<std::size_t>(index.internalId());
    return tree.branches[around].lines[static_cast<std::size_t>(index.row())];
}

QModelIndex ProtocolTreeModel::findPlace(int place) const
{
    quintptr around = 0;
    for (const ProtocolTree::Branch& branch : tree.branches) {
        const auto found = std::lower_bound(branch.lines.begin(), branch.lines.end(), place);
        if (found != branch.lines.end() && *found == place)
            return createIndex(static_cast<int>(found - branch.lines.begin()), 0, around);
        ++around;
    }
    return {};
}

std::pair<std::size_t, std::size_t> ProtocolTreeModel::countOfKind(const QModelIndex& index) const
{
    const ProtocolLine* line = getLine(index);
    std::size_t number = 0;
    std::size_t all = 0;
    int place = 0;
    for (const ProtocolTree::Branch& branch : tree.branches) {
        if (line != nullptr && branch.kind == line->kind) {
            if (place == static_cast<int>(index.internalId()))
                number = all + static_cast<std::size_t>(index.row()) + 1;
            all += branch.lines.size();
        }
        ++place;
    }
    return {number, all};
}

QModelIndex ProtocolTreeModel::findNext(const QModelIndex& from, COVMessage::MessageType kind,
                                        bool isForward) const
{
    // Branches stand in the order in which they are shown, and lines of a kind in branches of that kind.
    const auto position = [this](const QModelIndex& index) {
        const int branch = getBranchAt(index);
        return branch >= 0 ? std::make_pair(branch, -1)
                           : std::make_pair(static_cast<int>(index.internalId()), index.row());
    };
    const std::pair<int, int> start = from.isValid() ? position(from) : std::make_pair(-1, -1);
    QModelIndex first;
    QModelIndex last;
    QModelIndex before;
    for (int branch = 0; branch < static_cast<int>(tree.branches.size()); ++branch) {
        const ProtocolTree::Branch& each = tree.branches[static_cast<std::size_t>(branch)];
        if (each.kind != kind)
            continue;
        const auto count = static_cast<int>(each.lines.size());
        const auto at = [this, branch](int row) {
            return createIndex(row, 0, static_cast<quintptr>(branch));
        };
        if (!first.isValid())
            first = at(0);
        last = at(count - 1);
        const int behind = branch < start.first ? count : branch > start.first ? 0 : start.second + 1;
        if (isForward && behind < count)
            return at(behind);
        const int earlier = branch < start.first ? count - 1 : branch > start.first ? -1 : start.second - 1;
        if (earlier >= 0)
            before = at(earlier);
    }
    if (isForward)
        return first;
    return before.isValid() ? before : last;
}

QModelIndex ProtocolTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, static_cast<quintptr>(static_cast<qintptr>(getBranchAt(parent))));
}

QModelIndex ProtocolTreeModel::parent(const QModelIndex& child) const
{
    return child.isValid() ? getBranchIndex(static_cast<int>(child.internalId())) : QModelIndex();
}

int ProtocolTreeModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return static_cast<int>(tree.top.size());
    const int branch = parent.column() == 0 ? getBranchAt(parent) : -1;
    if (branch < 0)
        return 0;
    const ProtocolTree::Branch& shown = tree.branches[static_cast<std::size_t>(branch)];
    return static_cast<int>(shown.branches.size() + shown.lines.size());
}

int ProtocolTreeModel::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

QVariant ProtocolTreeModel::data(const QModelIndex& index, int role) const
{
    const int branch = getBranchAt(index);
    if (branch >= 0) {
        const ProtocolTree::Branch& shown = tree.branches[static_cast<std::size_t>(branch)];
        if (role == Qt::DisplayRole)
            return describeBranch(shown);
        if (role == Qt::DecorationRole && shown.kind)
            return getKindIcon(*shown.kind);
        return {};
    }
    const ProtocolLine* line = getLine(index);
    if (line == nullptr)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return line->text;
    case Qt::ToolTipRole:
        // As it is, and in several lines.
        return QStringLiteral("<p>%1</p>").arg(line->text.toHtmlEscaped());
    case Qt::DecorationRole:
        return getKindIcon(line->kind);
    case Qt::AccessibleTextRole:
        return QStringLiteral("%1: %2").arg(nameKind(line->kind), line->text);
    default:
        return {};
    }
}

QString ProtocolTreeModel::describeBranch(const ProtocolTree::Branch& branch) const
{
    QString name;
    if (branch.kind) {
        name = nameKind(*branch.kind);
    } else {
        const auto caption = lines->stageCaption.find(*branch.stage);
        name = caption == lines->stageCaption.end() ? Desk::tr("Вне этапов") : caption->second;
    }
    return QStringLiteral("%1 (%2)").arg(name, QString::number(branch.count));
}

} // namespace orvel::desk

#include "apps/desk/gui/SectionTableModel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/edit/CellEdit.h"
#include "apps/desk/edit/CellLook.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/runs/NumberTexts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <unordered_set>

namespace orvel::desk {

SectionTableModel::SectionTableModel(Document& openDocument, QObject* parent)
    : QAbstractTableModel(parent)
    , document(openDocument)
    , sections(openDocument.getSections())
    , typeText(getTypeText(kSectionItemType))
    , offText(Desk::tr("%1, отключена").arg(typeText))
{
    connect(&document, &Document::networkReplaced, this, &SectionTableModel::takeSections);
    connect(&document, &Document::itemsEdited, this, &SectionTableModel::showEdited);
    connect(&document, &Document::surveyRulesChanged, this, [this] {
        showColumns(0, itemcolumns::Report, {Qt::DisplayRole, Qt::ToolTipRole});
    });
    connect(&document, &Document::resultsChanged, this,
            [this] { showColumns(itemcolumns::Residual, itemcolumns::Redundancy); });
    connect(&document, &Document::summaryChanged, this, &SectionTableModel::showProtocols);
    connect(&document, &Document::outdatedChanged, this,
            [this] { showColumns(itemcolumns::Residual, itemcolumns::Redundancy); });
}

const LevellingSection* SectionTableModel::getSection(const QModelIndex& index) const
{
    if (!index.isValid() || index.model() != this || index.row() >= rowCount())
        return nullptr;
    return sections[static_cast<std::size_t>(index.row())];
}

QModelIndexList SectionTableModel::findSections(const std::vector<LONGID>& ids) const
{
    const std::unordered_set<LONGID> wanted(ids.begin(), ids.end());
    QModelIndexList found;
    int row = 0;
    for (const LevellingSection* section : sections) {
        if (wanted.count(section->getId()) > 0)
            found.append(index(row, 0));
        ++row;
    }
    return found;
}

int SectionTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(sections.size());
}

int SectionTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : itemcolumns::kCount;
}

QVariant SectionTableModel::data(const QModelIndex& index, int role) const
{
    const LevellingSection* section = getSection(index);
    if (!section)
        return QVariant();
    if (role == itemcolumns::ItemIdRole)
        return section->getId();
    if (role == Qt::EditRole)
        return celledits::getText(*section, index.column());
    const bool isOutdated = index.column() >= itemcolumns::Residual &&
                            index.column() <= itemcolumns::Redundancy && document.areResultsOutdated();
    const QVariant look = celllook::present(role, section->isOff(), isOutdated);
    if (look.isValid())
        return look;
    if (role == itemcolumns::TraitsRole)
        return getTraits(*section);
    if (section->isOff() && role == Qt::ToolTipRole && index.column() == itemcolumns::Type)
        return itemlook::describeOff(section->getOffReason());
    if (itemlook::isAsked(index.column(), role))
        return itemlook::present(section->getName(), document.getSummary().findWorst(section->getId()), role);
    return itemcolumns::present(index.column(), getValue(*section, index.column()),
                                NumberFormat(document.getToleranceRules()), role);
}

QVariant SectionTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return itemcolumns::getTitle(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags SectionTableModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags itemFlags = QAbstractTableModel::flags(index);
    if (index.isValid())
        itemFlags |= Qt::ItemNeverHasChildren;
    const LevellingSection* section = getSection(index);
    if (section &&
        (index.column() == itemcolumns::Report || celledits::isEditable(document, *section, index.column())))
        itemFlags |= Qt::ItemIsEditable;
    return itemFlags;
}

int SectionTableModel::getTraits(const LevellingSection& section) const
{
    const bool isOverLimit = document.getSummary().findWorst(section.getId()) == COVMessage::Error;
    return itemcolumns::SectionTrait | (isOverLimit ? itemcolumns::OverLimitTrait : 0) |
           (section.isOff() ? itemcolumns::OffTrait : 0);
}

bool SectionTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const LevellingSection* section = getSection(index);
    if (role != Qt::EditRole || !section || !celledits::isEditable(document, *section, index.column()))
        return false;
    const celledits::Outcome outcome = celledits::edit(document, *section, index.column(), value.toString());
    if (!outcome.isTaken)
        Q_EMIT editRefused(outcome.problem);
    return outcome.isTaken;
}

QVariant SectionTableModel::getValue(const LevellingSection& section, int column) const
{
    const levelling::Section& measured = section.getSection();
    const LevellingSection::Result* result = section.getResult() ? &*section.getResult() : nullptr;
    switch (column) {
    case itemcolumns::Name:
        return section.getName();
    case itemcolumns::Type:
        return section.isOff() ? offText : typeText;
    case itemcolumns::Severity:
        return itemcolumns::toVariant(document.getSummary().findWorst(section.getId()));
    case itemcolumns::Sigma:
        return measured.sigma;
    case itemcolumns::Difference:
        return measured.difference;
    case itemcolumns::Length:
        return itemcolumns::toVariant(measured.distance);
    case itemcolumns::Stations:
        return itemcolumns::toVariant(measured.stations);
    case itemcolumns::Residual:
        return result ? QVariant(result->residual) : QVariant();
    case itemcolumns::NormalisedResidual:
        return result && result->normalisedResidual ? QVariant(std::abs(*result->normalisedResidual))
                                                    : QVariant();
    case itemcolumns::Redundancy:
        return result ? itemcolumns::toVariant(result->redundancy) : QVariant();
    case itemcolumns::Lines:
        return document.getSummary().linesOfItem.value(section.getId());
    case itemcolumns::Source:
        return itemcolumns::toVariant(document.getSources().value(measured.source));
    case itemcolumns::SourceLine:
        return measured.line > 0 ? QVariant(measured.line) : QVariant();
    case itemcolumns::Date:
        return itemcolumns::toVariant(measured.date);
    case itemcolumns::Note:
        return itemcolumns::toVariant(measured.note);
    case itemcolumns::Report:
        return document.getModel().isItemMentioned(section.getId());
    default:
        return QVariant();
    }
}

void SectionTableModel::setSections(const std::vector<LevellingSection*>& networkSections)
{
    beginResetModel();
    sections = networkSections;
    endResetModel();
}

/// Takes the sections that the document has now. Where few rows came or went the others stay, with whatever
/// views know of them; the sections from before still live.
void SectionTableModel::takeSections()
{
    constexpr int mostRows = 1000;
    const std::vector<LevellingSection*> taken = document.getSections();
    const auto isSame = [](const LevellingSection* a, const LevellingSection* b) {
        return a->getId() == b->getId();
    };
    const auto front = std::mismatch(sections.begin(), sections.end(), taken.begin(), taken.end(), isSame);
    const auto first = front.first - sections.begin();
    const auto back = std::mismatch(sections.rbegin(), std::make_reverse_iterator(front.first),
                                    taken.rbegin(), std::make_reverse_iterator(front.second), isSame);
    const auto removed = back.first.base() - front.first;
    const auto added = back.second.base() - front.second;
    if (removed > mostRows || added > mostRows) {
        setSections(taken);
        return;
    }
    const auto row = static_cast<int>(first);
    if (removed > 0) {
        beginRemoveRows({}, row, row + static_cast<int>(removed) - 1);
        sections.assign(taken.begin(), front.second);
        sections.insert(sections.end(), back.second.base(), taken.end());
        endRemoveRows();
    }
    if (added > 0)
        beginInsertRows({}, row, row + static_cast<int>(added) - 1);
    sections = taken;
    if (added > 0)
        endInsertRows();
}

void SectionTableModel::showColumns(int first, int last, const QVector<int>& roles)
{
    if (!sections.empty())
        Q_EMIT dataChanged(index(0, first), index(rowCount() - 1, last), roles);
}

/// Tells of all rows between the edited ones, in one go.
void SectionTableModel::showEdited(const std::vector<LONGID>& ids)
{
    const std::unordered_set<LONGID> edited(ids.begin(), ids.end());
    const auto isEdited = [&edited](const LevellingSection* section) {
        return edited.count(section->getId()) > 0;
    };
    const auto first = std::find_if(sections.begin(), sections.end(), isEdited);
    if (first == sections.end())
        return;
    const auto last = std::find_if(sections.rbegin(), sections.rend(), isEdited).base() - 1;
    Q_EMIT dataChanged(index(static_cast<int>(first - sections.begin()), 0),
                       index(static_cast<int>(last - sections.begin()), itemcolumns::Report));
}

void SectionTableModel::showProtocols()
{
    showColumns(itemcolumns::Severity, itemcolumns::Severity);
    showColumns(itemcolumns::Lines, itemcolumns::Report);
    showColumns(0, itemcolumns::Report, itemlook::getRoles());
}

} // namespace orvel::desk

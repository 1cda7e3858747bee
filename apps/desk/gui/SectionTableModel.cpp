#include "apps/desk/gui/SectionTableModel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace orvel::desk {

SectionTableModel::SectionTableModel(Document& openDocument, QObject* parent)
    : QAbstractTableModel(parent)
    , document(openDocument)
    , sections(openDocument.getSections())
    , typeText(getTypeText(kSectionItemType))
    , offText(Desk::tr("%1, отключена").arg(typeText))
{
    connect(&document, &Document::networkAboutToBeReplaced, this, [this] { setSections({}); });
    connect(&document, &Document::networkReplaced, this, [this] { setSections(document.getSections()); });
    connect(&document, &Document::itemsEdited, this, &SectionTableModel::showEdited);
    connect(&document, &Document::surveyRulesChanged, this, [this] {
        showColumns(0, itemcolumns::Report, {Qt::DisplayRole, Qt::ToolTipRole});
    });
    connect(&document, &Document::resultsChanged, this,
            [this] { showColumns(itemcolumns::Residual, itemcolumns::Redundancy); });
    connect(&document, &Document::summaryChanged, this, &SectionTableModel::showProtocols);
}

const LevellingSection* SectionTableModel::getSection(const QModelIndex& index) const
{
    if (!index.isValid() || index.model() != this || index.row() >= rowCount())
        return nullptr;
    return sections[static_cast<std::size_t>(index.row())];
}

QModelIndex SectionTableModel::findSection(LONGID id) const
{
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [id](const LevellingSection* section) { return section->getId() == id; });
    return found == sections.end() ? QModelIndex() : index(static_cast<int>(found - sections.begin()), 0);
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
    if (role == itemcolumns::TraitsRole)
        return getTraits(*section);
    if (section->isOff() && role == Qt::ForegroundRole)
        return itemlook::getOffColor(QGuiApplication::palette());
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
    if (index.isValid() && index.column() == itemcolumns::Report)
        itemFlags |= Qt::ItemIsEditable;
    return itemFlags;
}

int SectionTableModel::getTraits(const LevellingSection& section) const
{
    const bool isOverLimit = document.getSummary().findWorst(section.getId()) == COVMessage::Error;
    return itemcolumns::SectionTrait | (isOverLimit ? itemcolumns::OverLimitTrait : 0) |
           (section.isOff() ? itemcolumns::OffTrait : 0);
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
        return itemcolumns::toVariant(document.getSnapshot().network.sources.value(measured.source));
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

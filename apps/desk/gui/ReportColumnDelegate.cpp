#include "apps/desk/gui/ReportColumnDelegate.h"

#include "Orvel/integration/OrvelGUIExtension.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/SectionTableModel.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"
#include "host/model/ItemTypes.h"
#include "host/window/ProjectWindow.h"

#include <QAbstractProxyModel>
#include <QConcatenateTablesProxyModel>

namespace orvel::desk {

namespace {

/// The cell of the table that lies below all sorting and joining.
QModelIndex findSource(QModelIndex index)
{
    while (index.isValid()) {
        if (const auto* proxy = qobject_cast<const QAbstractProxyModel*>(index.model()))
            index = proxy->mapToSource(index);
        else if (const auto* joined = qobject_cast<const QConcatenateTablesProxyModel*>(index.model()))
            index = joined->mapToSource(index);
        else
            break;
    }
    return index;
}

} // namespace

ReportColumnDelegate::ReportColumnDelegate(ProjectWindow* projectWindow, QObject* parent)
    : QStyledItemDelegate(parent)
    , window(projectWindow)
    , registeredDelegate(ItemDelegateFactory::instance()->createDelegate(
          kWarningReportDelegate, projectWindow->getModel(), kWarningReportProperty, this))
{}

QWidget* ReportColumnDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                            const QModelIndex& index) const
{
    const QModelIndex source = findSource(index);
    const auto* sectionTable = qobject_cast<const SectionTableModel*>(source.model());
    if (!sectionTable)
        return registeredDelegate ? registeredDelegate->createEditor(parent, option, source) : nullptr;

    const LevellingSection* section = sectionTable->getSection(source);
    OrvelGUIExtension* viewer = OrvelGUIExtension::find(*window);
    if (section && viewer && window->getModel()->isItemMentioned(section->getId())) {
        // The viewer asks an element for its id only.
        CModelElement standIn;
        standIn.setId(section->getId());
        viewer->showItemOrvel(&standIn);
    }
    return nullptr;
}

QString ReportColumnDelegate::displayText(const QVariant& /*value*/, const QLocale& /*locale*/) const
{
    return QString();
}

} // namespace orvel::desk

#include "Orvel/integration/CReportDelegate.h"

#include "Orvel/integration/OrvelGUIExtension.h"
#include "host/delegates/CProjectItemModel.h"
#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"
#include "host/window/ProjectWindow.h"

#include <QComboBox>

CReportDelegate::CReportDelegate(QObject* parent) : CItemDelegate(parent)
{}

QWidget* CReportDelegate::createEditor(QWidget* /*parent*/, const QStyleOptionViewItem& /*option*/,
                                       const QModelIndex& index) const
{
    const auto* itemModel = dynamic_cast<const CProjectItemModel*>(index.model());
    if (!itemModel)
        return nullptr;
    CModelElement* item = itemModel->getItem(index);
    if (!item)
        return nullptr;
    const CProjectModel* projectModel = itemModel->getProjectModel();
    if (!projectModel->isItemMentioned(item->getId()))
        return nullptr;
    const ProjectWindow* window = ProjectWindow::getProjectWindow(projectModel->getProject());
    if (!window)
        return nullptr;
    if (OrvelGUIExtension* viewer = OrvelGUIExtension::find(*window))
        viewer->showItemOrvel(item);
    return nullptr;
}

QString CReportDelegate::displayText(const QVariant& /*value*/, const QLocale& /*locale*/) const
{
    return QString();
}

QVariant CReportDelegate::getEditorValue(QWidget* editor) const
{
    const auto* comboBox = qobject_cast<QComboBox*>(editor);
    return comboBox ? comboBox->itemData(comboBox->currentIndex(), Qt::UserRole) : QVariant();
}

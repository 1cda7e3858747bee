#include "Orvel/html/ProjectItemLinks.h"

#include "host/enums/EnumData.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CItemManager.h"
#include "host/model/ItemTypes.h"
#include "host/model/ModelRevision.h"

namespace orvel {

QString makeItemLink(const QString& scheme, const QString& typeText, LONGID id, const QString& encodedProject,
                     const QString& text)
{
    return QStringLiteral("<a href=\"%1://locate-item?type=%2&id=%3&project=%4\">%5</a>")
        .arg(scheme, typeText, QString::number(id), encodedProject, text);
}

qor::ItemLinksPtr ProjectItemLinks::make(const CProjectModel& model, const QString& scheme,
                                         const QString& encodedProject)
{
    const std::shared_ptr<ProjectItemLinks> links(new ProjectItemLinks);
    links->revision = modelrevision::get();
    links->scheme = scheme;
    links->encodedProject = encodedProject;
    links->types = {model.getTreeItemTypes(), model.getSystemItemTypes()};
    const auto* tervoModel = dynamic_cast<const CCommonTervoModel*>(&model);
    const tervo::IItemManager* objects = tervoModel ? tervoModel->getTervoObject() : nullptr;
    if (objects) {
        const auto* manager = dynamic_cast<const tervo::CItemManager*>(objects);
        if (!manager)
            return nullptr;
        links->types.push_back(manager->getTypes());
    }
    return links;
}

bool ProjectItemLinks::isCurrent() const
{
    return revision == modelrevision::get();
}

std::wstring ProjectItemLinks::makeLink(LONGID id, const std::wstring& text) const
{
    const QString typeText = QString::fromStdString(getEnumData(getType(id)).getTextInternal());
    return makeItemLink(scheme, typeText, id, encodedProject, QString::fromStdWString(text)).toStdWString();
}

int ProjectItemLinks::getType(LONGID id) const
{
    for (const ItemTypeIndex& index : types) {
        if (const std::optional<int> type = index.find(id))
            return *type;
    }
    return kGeneralItemType;
}

} // namespace orvel

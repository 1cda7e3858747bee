#include "host/window/ProjectGUI.h"

#include "host/window/GUIExtension.h"

#include <algorithm>
#include <iterator>

ProjectGUI::ProjectGUI(CProjectModel* projectModel) : model(projectModel)
{}

ProjectGUI::~ProjectGUI()
{
    for (const auto& [key, sameKey] : extensions) {
        for (const QPointer<GUIExtension>& extension : sameKey)
            delete extension;
    }
}

CProjectModel* ProjectGUI::getModel() const
{
    return model;
}

void ProjectGUI::addExtension(int key, GUIExtension* extension)
{
    extensions[key].emplace_back(extension);
}

std::vector<GUIExtension*> ProjectGUI::getExtensions(int key) const
{
    std::vector<GUIExtension*> alive;
    const auto found = extensions.find(key);
    if (found == extensions.end())
        return alive;
    std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(alive),
                 [](const QPointer<GUIExtension>& extension) { return !extension.isNull(); });
    return alive;
}

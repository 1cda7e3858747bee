#pragma once

#include "host/model/IItemLinks.h"
#include "host/model/ItemIndex.h"

#include <QString>

#include <vector>

class CProjectModel;

namespace orvel {

/// The item link, in which everything stands as it is given: \p typeText the type's internal name,
/// \p encodedProject the percent-encoded name of the project.
QString makeItemLink(const QString& scheme, const QString& typeText, LONGID id, const QString& encodedProject,
                     const QString& text);

/// The item links of a protocol as they are when this is made, for use in any thread.
class ProjectItemLinks : public qor::IItemLinks
{
public:
    /// @return null for a model that keeps objects whose types can't be taken over
    static qor::ItemLinksPtr make(const CProjectModel& model, const QString& scheme,
                                  const QString& encodedProject);

    bool isCurrent() const override;
    std::wstring makeLink(LONGID id, const std::wstring& text) const override;

private:
    ProjectItemLinks() = default;

    int getType(LONGID id) const;

    quint64 revision = 0;
    QString scheme;
    QString encodedProject;
    std::vector<ItemTypeIndex> types; // asked in this order
};

} // namespace orvel

#pragma once

#include "Orvel/orvel_export.h"
#include "host/window/ProjectWindowGUIExtension.h"

class CModelElement;
class COrvel;
class ProjectGUI;

/// The protocol viewer of a project window: makes pages and opens them in the system's browser.
///
/// Keeps no state: every call looks the protocol up afresh and makes a new page.
class ORVEL_EXPORT OrvelGUIExtension : public ProjectWindowGUIExtension
{
    Q_OBJECT

public:
    /// The viewer of @p window, which outlives it; @p parent owns it.
    OrvelGUIExtension(ProjectWindow* window, QObject* parent);

    /// The first viewer that `gui` holds; null when there is none.
    static OrvelGUIExtension* find(const ProjectGUI& gui);

    /// The project's protocol; null when the model has none.
    COrvel* getOrvel() const;

public Q_SLOTS:
    /// Shows every line that mentions the item. Does nothing without a protocol or without an item.
    void showItemOrvel(CModelElement* pEl);
    /// Shows the page of a protocol type. Does nothing without a protocol or when the page can't be written.
    void showOrvel(int protocolType);
};

#pragma once

#include "Orvel/store/COrvel.h"
#include "host/app/SDIApplication.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/window/ProjectWindow.h"
#include "tests/integration/OpenedUrls.h"

#include <QStringList>

class OrvelGUIExtension;

/// The application with windows, with its warnings kept instead of shown.
class CollectingSDIApplication : public SDIApplication
{
public:
    using SDIApplication::SDIApplication;

    QStringList getWarnings() const { return warnings; }
    /// The objects on whose behalf the warnings came, one per warning.
    QObjectList getWarningParents() const { return warningParents; }

protected:
    void showWarning(const QString& message, QObject* parent) override;

private:
    QStringList warnings;
    QObjectList warningParents;
};

/// A project with its window in an application, as they are before any plug-in extends them. The tests add
/// what they need. One exists at a time.
struct WindowFixture
{
    WindowFixture();
    ~WindowFixture();

    /// Adds a protocol, as the plug-in does.
    COrvel& addProtocol();
    /// Adds a protocol viewer, as the plug-in does.
    OrvelGUIExtension& addViewer();
    CModelElement* addItem(LONGID id);
    /// A run of the protocol that writes one message. Its text links to the item, unless the id is 0.
    void runProtocol(int protocolType, const QString& text, LONGID itemId = 0);

    /// The path of a file in the application's temporary folder.
    QString tempPath(const QString& fileName) const;
    /// The files in the temporary folder that match "protocol_*.html".
    QStringList getPages() const;

    CollectingSDIApplication application;
    CProject project;
    CCommonTervoModel model;
    ProjectWindow window;
    OpenedUrls opened;
};

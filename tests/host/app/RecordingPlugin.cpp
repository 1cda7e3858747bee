// A plug-in that notes what it is asked to extend. Built several times, each with a name of its own.

#include "host/app/Application.h"
#include "host/app/IAppExtension.h"
#include "host/model/CProjectModel.h"
#include "host/model/IModelExtension.h"
#include "host/window/GUIExtension.h"
#include "host/window/ProjectGUI.h"

#include <QStringList>

namespace {

const QString kName = QStringLiteral(PLUGIN_NAME);

void note(QObject* object, const QString& what)
{
    const char* property = "calls";
    object->setProperty(property, object->property(property).toStringList() << kName + what);
}

} // namespace

class RecordingPlugin : public QObject,
                        public IAppExtension,
                        public IModelExtension,
                        public ProjectGUI::IExtender
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.orvel.test")
    Q_INTERFACES(IAppExtension IModelExtension ProjectGUI::IExtender)

public:
    bool extendApplication(Application* app) override
    {
        note(app, QStringLiteral(" extends"));
        return !PLUGIN_REFUSES;
    }

    void unextendApplication(Application* app) override { note(app, QStringLiteral(" unextends")); }
    void extendModel(CProjectModel* model) override { note(model, QString()); }

    void extendProjectGUI(ProjectGUI* gui) override
    {
        auto* extension = new GUIExtension(gui, nullptr);
        extension->setObjectName(kName);
        gui->addExtension(1, extension);
    }
};

#include "RecordingPlugin.moc"

// A plug-in with none of the host's interfaces.

#include <QObject>
#include <QtPlugin>

class ForeignPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.orvel.test.foreign")
};

#include "ForeignPlugin.moc"

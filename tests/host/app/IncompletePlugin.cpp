// A plug-in that calls a function which no library has.

#include <QObject>
#include <QtPlugin>

extern "C" void functionOfNoLibrary();

class IncompletePlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.orvel.test.incomplete")

public:
    IncompletePlugin() { functionOfNoLibrary(); }
};

#include "IncompletePlugin.moc"

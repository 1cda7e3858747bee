#include "host/window/Display.h"

#include <QApplication>

bool hasDisplay()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

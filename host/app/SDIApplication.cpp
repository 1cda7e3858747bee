#include "host/app/SDIApplication.h"

#include "host/window/Display.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace {

QWidget* findWindow(QObject* object)
{
    for (; object != nullptr; object = object->parent()) {
        if (auto* widget = qobject_cast<QWidget*>(object))
            return widget->window();
    }
    return nullptr;
}

} // namespace

SDIApplication::SDIApplication(const QString& scheme, QObject* parent)
    : Application(parent)
    , uriScheme(scheme)
{}

SDIApplication::~SDIApplication() = default;

void SDIApplication::showWarning(const QString& message, QObject* parent)
{
    if (!hasDisplay()) {
        Application::showWarning(message, parent);
        return;
    }
    // Not a nested event loop: whoever warns may be in the middle of something.
    auto* box = new QMessageBox(QMessageBox::Warning, QCoreApplication::translate("Host", "Предупреждение"),
                                message, QMessageBox::Ok, findWindow(parent));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

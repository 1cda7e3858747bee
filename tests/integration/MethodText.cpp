#include "tests/integration/MethodText.h"

#include <QMetaMethod>

namespace {

QString getAccessText(const QMetaMethod& method)
{
    switch (method.access()) {
    case QMetaMethod::Private:
        return QStringLiteral("private");
    case QMetaMethod::Protected:
        return QStringLiteral("protected");
    case QMetaMethod::Public:
        break;
    }
    return QStringLiteral("public");
}

QString getKindText(const QMetaMethod& method)
{
    switch (method.methodType()) {
    case QMetaMethod::Signal:
        return QStringLiteral("signal");
    case QMetaMethod::Slot:
        return QStringLiteral("slot");
    case QMetaMethod::Constructor:
        return QStringLiteral("constructor");
    case QMetaMethod::Method:
        break;
    }
    return QStringLiteral("method");
}

QString getParameterText(const QMetaMethod& method)
{
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i)
        parameters.append(
            QString::fromLatin1(method.parameterTypes().at(i) + ' ' + method.parameterNames().at(i)));
    return parameters.join(QStringLiteral(", "));
}

} // namespace

QStringList describeMethods(const QMetaObject& metaObject)
{
    QStringList methods;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        methods.append(QStringLiteral("%1 %2 %3 %4(%5)")
                           .arg(getAccessText(method), getKindText(method),
                                QString::fromLatin1(method.typeName()), QString::fromLatin1(method.name()),
                                getParameterText(method)));
    }
    return methods;
}

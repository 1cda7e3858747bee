#include "host/files/CTranslater.h"

#include <QCoreApplication>
#include <QString>
#include <QTranslator>

#include <memory>

CTranslater& CTranslater::GetInstance()
{
    static CTranslater translater;
    return translater;
}

std::wstring CTranslater::translate(const char* context, const char* text) const
{
    return QCoreApplication::translate(context, text).toStdWString();
}

bool CTranslater::loadTranslation(const QString& path)
{
    QCoreApplication* application = QCoreApplication::instance();
    auto translator = std::make_unique<QTranslator>();
    if (!application || !translator->load(path))
        return false;
    translator->setParent(application);
    return QCoreApplication::installTranslator(translator.release());
}

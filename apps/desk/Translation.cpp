#include "apps/desk/Translation.h"

#include "host/app/Application.h"
#include "host/files/CTranslater.h"

#include <QLibraryInfo>
#include <QLocale>

namespace orvel::desk {

void installLanguage(const QString& language)
{
    if (!language.isEmpty())
        QLocale::setDefault(QLocale(language));
    if (QLocale().language() == QLocale::English) {
        CTranslater::GetInstance().loadTranslation(
            Application::locateData(QStringLiteral("translations/orvel_en.qm")));
        return;
    }
    // The texts of Qt's own dialogs, where the system has them.
    CTranslater::GetInstance().loadTranslation(QLibraryInfo::location(QLibraryInfo::TranslationsPath) +
                                               QStringLiteral("/qtbase_ru.qm"));
}

} // namespace orvel::desk

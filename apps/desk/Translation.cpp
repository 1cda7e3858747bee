#include "apps/desk/Translation.h"

#include "host/app/Application.h"
#include "host/files/CTranslater.h"

#include <QLibraryInfo>
#include <QLocale>

namespace orvel::desk {

void installLanguage(const QString& language)
{
    if (language == QLatin1String("ru") || language == QLatin1String("en"))
        QLocale::setDefault(QLocale(language));
    // A system that names no language at all has the language of the texts themselves.
    const QLocale::Language used = QLocale().language();
    if (used != QLocale::Russian && used != QLocale::C) {
        CTranslater::GetInstance().loadTranslation(
            Application::locateData(QStringLiteral("translations/orvel_en.qm")));
        return;
    }
    // The texts of Qt's own dialogs, where the system has them.
    CTranslater::GetInstance().loadTranslation(QLibraryInfo::location(QLibraryInfo::TranslationsPath) +
                                               QStringLiteral("/qtbase_ru.qm"));
}

} // namespace orvel::desk

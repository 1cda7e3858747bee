#include "apps/desk/Translation.h"

#include "host/app/Application.h"
#include "host/files/CTranslater.h"

#include <QLibraryInfo>
#include <QLocale>
#include <QStringList>

namespace orvel::desk {

namespace {

/// The locale of the texts: the first that is asked for of those that there are texts in, else English.
QLocale chooseLocale(const QString& language)
{
    QStringList names = QLocale::system().uiLanguages();
    names.prepend(language);
    for (const QString& name : names) {
        const QLocale locale(name);
        if (locale.language() == QLocale::Russian || locale.language() == QLocale::English)
            return locale;
    }
    return QLocale(QLocale::English);
}

} // namespace

void installLanguage(const QString& language)
{
    // Numbers in Qt's own fields are written as in the texts around them, whatever the system has.
    QLocale::setDefault(chooseLocale(language));
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

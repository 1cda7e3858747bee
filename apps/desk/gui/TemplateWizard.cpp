#include "apps/desk/gui/TemplateWizard.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ScreenSize.h"
#include "apps/desk/gui/TemplatePages.h"

namespace orvel::desk {

TemplateWizard::TemplateWizard(const QStringList& files, QWidget* parent)
    : QWizard(parent)
    , filePage(new TemplateFilePage(*this, files))
    , columnsPage(new TemplateColumnsPage(*this))
    , namePage(new TemplateNamePage(*this))
{
    setWindowTitle(Desk::tr("Импорт по шаблону"));
    // The plain style has the colours of the palette, the others have some of their own.
    setWizardStyle(QWizard::ClassicStyle);
    setOption(QWizard::NoBackButtonOnStartPage);
    setButtonText(QWizard::BackButton, Desk::tr("< &Назад"));
    setButtonText(QWizard::NextButton, Desk::tr("&Дальше >"));
    setButtonText(QWizard::FinishButton, Desk::tr("&Импортировать"));
    setButtonText(QWizard::CancelButton, Desk::tr("&Отмена"));
    addPage(filePage);
    addPage(columnsPage);
    addPage(namePage);
    resizeToScreen(*this, {940, 620});
}

QStringList TemplateWizard::getFiles() const
{
    return filePage->getFiles();
}

void TemplateWizard::accept()
{
    // Enter in a field of an earlier page is no answer to the last one.
    if (currentPage() == namePage)
        QWizard::accept();
    else
        next();
}

} // namespace orvel::desk

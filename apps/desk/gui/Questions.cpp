#include "apps/desk/gui/Questions.h"

#include "apps/desk/Desk.h"
#include "host/process/CProcessMonitor.h"

#include <QMessageBox>
#include <QPushButton>

namespace orvel::desk {

namespace questions {

Changes askForChanges(QWidget* parent, const QString& projectName)
{
    QMessageBox box(QMessageBox::Question, Desk::tr("Несохранённые изменения"),
                    Desk::tr("Сохранить изменения в проекте «%1»?").arg(projectName), QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Desk::tr("Без сохранения результаты и протоколы будут потеряны."));
    QPushButton* saveButton = box.addButton(Desk::tr("&Сохранить"), QMessageBox::AcceptRole);
    QPushButton* discardButton = box.addButton(Desk::tr("&Не сохранять"), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(Desk::tr("&Отмена"), QMessageBox::RejectRole));
    box.setDefaultButton(saveButton);
    box.exec();
    if (box.clickedButton() == saveButton)
        return Changes::Save;
    return box.clickedButton() == discardButton ? Changes::Discard : Changes::Keep;
}

Overwrite askToOverwrite(QWidget* parent, const QString& path)
{
    QMessageBox box(
        QMessageBox::Warning, Desk::tr("Файл изменён"),
        Desk::tr("Другая программа изменила файл «%1» после того, как он был открыт. Записать поверх?")
            .arg(path),
        QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Desk::tr("То, что она записала, будет потеряно."));
    QPushButton* overwriteButton = box.addButton(Desk::tr("&Записать поверх"), QMessageBox::DestructiveRole);
    QPushButton* elsewhereButton = box.addButton(Desk::tr("Сохранить &как…"), QMessageBox::AcceptRole);
    QPushButton* cancelButton = box.addButton(Desk::tr("&Отмена"), QMessageBox::RejectRole);
    box.setDefaultButton(elsewhereButton);
    box.setEscapeButton(cancelButton);
    box.exec();
    if (box.clickedButton() == overwriteButton)
        return Overwrite::Yes;
    return box.clickedButton() == elsewhereButton ? Overwrite::Elsewhere : Overwrite::No;
}

Import askToImport(QWidget* parent, const QString& projectName, std::size_t handChanges)
{
    QMessageBox box(QMessageBox::Question, Desk::tr("Импорт измерений"),
                    Desk::tr("Заменить сеть проекта «%1» или добавить к ней?").arg(projectName),
                    QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    QString losses = Desk::tr("Результаты и протоколы обработки прежней сети будут потеряны.");
    if (handChanges > 0)
        losses += QLatin1Char(' ') + Desk::tr("При замене пропадут и изменения, сделанные вручную: %1.")
                                         .arg(QString::number(handChanges));
    box.setInformativeText(losses);
    QPushButton* replaceButton = box.addButton(Desk::tr("&Заменить"), QMessageBox::DestructiveRole);
    QPushButton* addButton = box.addButton(Desk::tr("&Добавить"), QMessageBox::AcceptRole);
    QPushButton* cancelButton = box.addButton(Desk::tr("&Отмена"), QMessageBox::RejectRole);
    box.setDefaultButton(cancelButton);
    box.setEscapeButton(cancelButton);
    box.exec();
    if (box.clickedButton() == replaceButton)
        return Import::Replace;
    return box.clickedButton() == addButton ? Import::Add : Import::Cancel;
}

bool mayStopRun(QWidget* parent, CProcessMonitor& monitor)
{
    QMessageBox box(QMessageBox::Question, Desk::tr("Идёт обработка"),
                    Desk::tr("Остановить обработку и закрыть окно?"), QMessageBox::NoButton, parent);
    QPushButton* stopButton = box.addButton(Desk::tr("О&становить"), QMessageBox::DestructiveRole);
    QPushButton* cancelButton = box.addButton(Desk::tr("П&родолжить"), QMessageBox::RejectRole);
    box.setDefaultButton(cancelButton);
    box.setEscapeButton(cancelButton);
    // Nothing to ask any more once the run is over.
    QObject::connect(&monitor, &CProcessMonitor::runFinished, &box, [&] { stopButton->click(); });
    box.exec();
    return box.clickedButton() == stopButton;
}

} // namespace questions

} // namespace orvel::desk

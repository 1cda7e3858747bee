#include "apps/desk/print/PrintDialog.h"

#include "apps/desk/Desk.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvel::desk {

PrintDialog::PrintDialog(const std::vector<PrintSubject>& subjects, int chosen, QWidget* parent)
    : QDialog(parent)
    , list(new QListWidget(this))
{
    setWindowTitle(Desk::tr("Печать"));
    auto* label = new QLabel(Desk::tr("&Что печатать:"), this);
    label->setBuddy(list);
    list->setAccessibleName(Desk::tr("Что печатать"));
    list->setWordWrap(true);
    for (const PrintSubject& subject : subjects) {
        auto* item = new QListWidgetItem(subject.title, list);
        if (subject.isAvailable)
            continue;
        item->setText(QStringLiteral("%1 — %2").arg(subject.title, subject.reason));
        item->setFlags(Qt::NoItemFlags);
    }
    auto* box = new QDialogButtonBox(this);
    const auto add = [&](const QString& text, Target target) {
        QPushButton* button = box->addButton(text, QDialogButtonBox::ActionRole);
        connect(button, &QPushButton::clicked, this,
                [this, target] { Q_EMIT requested(list->currentRow(), target); });
        buttons.push_back(button);
    };
    add(Desk::tr("&Печать…"), Target::Printer);
    add(Desk::tr("&Сохранить в файл…"), Target::File);
    add(Desk::tr("П&росмотр"), Target::Viewer);
    buttons.front()->setDefault(true);
    box->addButton(Desk::tr("&Закрыть"), QDialogButtonBox::RejectRole);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list, &QListWidget::currentRowChanged, this, &PrintDialog::updateButtons);
    connect(list, &QListWidget::itemActivated, buttons.front(), &QPushButton::click);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list, 1);
    layout->addWidget(box);
    list->setCurrentRow(chosen);
    updateButtons();
    resize(520, 360);
}

void PrintDialog::updateButtons()
{
    const QListWidgetItem* item = list->currentItem();
    for (QPushButton* button : buttons)
        button->setEnabled(item && (item->flags() & Qt::ItemIsEnabled));
}

} // namespace orvel::desk

#include "apps/desk/edit/ItemEditor.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/edit/CellEdit.h"
#include "apps/desk/edit/NewSectionDialog.h"
#include "apps/desk/gui/ItemTable.h"

#include <QInputDialog>
#include <QLabel>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace orvel::desk {

namespace {

/// The reasons that stand in the project already, to be chosen again.
QStringList listReasons(const Document& document)
{
    QStringList reasons{QString()};
    for (const HandChange& change : document.getHandChanges()) {
        if (change.kind == HandChange::Kind::SectionOff && !reasons.contains(change.reason))
            reasons.append(change.reason);
    }
    return reasons;
}

template<typename IsWanted>
std::vector<LONGID> filter(const std::vector<LONGID>& ids, IsWanted isWanted)
{
    std::vector<LONGID> wanted;
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(wanted), isWanted);
    return wanted;
}

} // namespace

ItemEditor::ItemEditor(Document& openDocument, ItemTable& itemTable, QWidget* parent)
    : QObject(parent)
    , document(openDocument)
    , table(itemTable)
    , window(parent)
{}

std::vector<LONGID> ItemEditor::getSelectedSections() const
{
    return filter(table.getSelectedItems(),
                  [this](LONGID id) { return document.findSection(id) != nullptr; });
}

std::vector<LONGID> ItemEditor::getSelectedPoints() const
{
    return filter(table.getSelectedItems(), [this](LONGID id) { return document.findPoint(id) != nullptr; });
}

/// The name of a single section, or the count of several.
QString ItemEditor::nameSections(const std::vector<LONGID>& ids) const
{
    return ids.size() == 1 ? document.findSection(ids.front())->getName()
                           : Desk::tr("секций: %1").arg(QString::number(ids.size()));
}

bool ItemEditor::ask(QInputDialog& dialog, const QString& title, const QString& label) const
{
    dialog.setWindowTitle(title);
    dialog.setLabelText(label);
    // Names of points may look like mark-up.
    dialog.findChild<QLabel*>()->setTextFormat(Qt::PlainText);
    dialog.setOkButtonText(Desk::tr("Готово"));
    dialog.setCancelButtonText(Desk::tr("Отмена"));
    return dialog.exec() == QDialog::Accepted;
}

void ItemEditor::switchSections()
{
    std::vector<LONGID> ids = getSelectedSections();
    if (ids.empty()) {
        Q_EMIT refused(Desk::tr("Отключаются измерения: выделите секции."));
        return;
    }
    const auto isOff = [this](LONGID id) { return document.findSection(id)->isOff(); };
    const bool areOff = std::all_of(ids.begin(), ids.end(), isOff);
    // Those that are off already keep the reason for which they are.
    if (!areOff)
        ids = filter(ids, [&isOff](LONGID id) { return !isOff(id); });
    const QString which = nameSections(ids);
    const int row = table.currentIndex().row();
    if (areOff) {
        document.applyChange(Desk::tr("включение %1").arg(which), networkchange::switchOn(document, ids));
        takePlace(row);
        return;
    }
    QInputDialog dialog(window);
    dialog.setComboBoxItems(listReasons(document));
    dialog.setComboBoxEditable(true);
    if (ask(dialog, Desk::tr("Отключить измерения"),
            Desk::tr("Отключается %1. Почему (можно оставить пустым):").arg(which)))
        document.applyChange(Desk::tr("отключение %1").arg(which),
                             networkchange::switchOff(document, ids, dialog.textValue().simplified()));
    takePlace(row);
}

void ItemEditor::setSigma()
{
    const std::vector<LONGID> ids = getSelectedSections();
    if (ids.empty()) {
        Q_EMIT refused(Desk::tr("СКО задаётся измерениям: выделите секции."));
        return;
    }
    QInputDialog dialog(window);
    dialog.setTextValue(celledits::toText(document.findSection(ids.front())->getSection().sigma));
    if (!ask(dialog, Desk::tr("СКО измерений"),
             Desk::tr("СКО выделенных секций (%1), мм:").arg(QString::number(ids.size()))))
        return;
    const std::optional<double> sigma = celledits::parseNumber(dialog.textValue());
    if (!sigma || *sigma <= 0.0) {
        Q_EMIT refused(Desk::tr("СКО «%1» — не число больше нуля. Введите миллиметры, как 2,5.")
                           .arg(dialog.textValue()));
        return;
    }
    document.applyChange(Desk::tr("СКО секций: %1").arg(QString::number(ids.size())),
                         networkchange::changeSections(document, ids, [&sigma](levelling::Section& section) {
                             networkchange::setSigma(section, *sigma);
                         }));
}

/// Asks for the height at which a point is held, until it is one or the user gives up.
std::optional<double> ItemEditor::askHeight(LONGID id) const
{
    const LevellingPoint& point = *document.findPoint(id);
    const std::optional<double> known =
        point.getPoint().height ? point.getPoint().height : point.getPosition().height;
    QInputDialog dialog(window);
    if (known)
        dialog.setTextValue(celledits::toText(*known));
    QString label = Desk::tr("Отметка репера %1, м:").arg(point.getName());
    while (ask(dialog, Desk::tr("Исходный репер"), label)) {
        if (const std::optional<double> height = celledits::parseNumber(dialog.textValue()))
            return height;
        label = Desk::tr("«%1» — не число. Отметка репера %2 в метрах, как 123,4567:")
                    .arg(dialog.textValue(), point.getName());
    }
    return std::nullopt;
}

void ItemEditor::holdPoints()
{
    const std::vector<LONGID> ids = filter(
        getSelectedPoints(), [this](LONGID id) { return !document.findPoint(id)->getPoint().isBenchmark(); });
    if (ids.empty()) {
        Q_EMIT refused(Desk::tr("Исходными реперами становятся определяемые пункты: выделите их."));
        return;
    }
    if (ids.size() == 1) {
        const std::optional<double> height = askHeight(ids.front());
        if (height)
            document.applyChange(
                Desk::tr("исходный репер %1").arg(document.findPoint(ids.front())->getName()),
                networkchange::changePoints(document, ids, [&height](levelling::Point& point) {
                    point.fixed = true;
                    point.height = height;
                }));
        return;
    }
    const auto isUnknown = [this](LONGID id) { return !document.findPoint(id)->getPoint().height; };
    if (std::any_of(ids.begin(), ids.end(), isUnknown)) {
        Q_EMIT refused(
            Desk::tr("Исходному реперу нужна отметка, а у пункта %1 её нет. Сделайте его репером отдельно.")
                .arg(document.findPoint(*std::find_if(ids.begin(), ids.end(), isUnknown))->getName()));
        return;
    }
    document.applyChange(
        Desk::tr("исходные реперы: %1").arg(QString::number(ids.size())),
        networkchange::changePoints(document, ids, [](levelling::Point& point) { point.fixed = true; }));
}

void ItemEditor::freePoints()
{
    const std::vector<LONGID> ids =
        filter(getSelectedPoints(), [this](LONGID id) { return document.findPoint(id)->getPoint().fixed; });
    if (ids.empty()) {
        Q_EMIT refused(Desk::tr("Освобождаются исходные реперы с удержанной отметкой: выделите их."));
        return;
    }
    const QString which = ids.size() == 1 ? document.findPoint(ids.front())->getName()
                                          : Desk::tr("реперов: %1").arg(QString::number(ids.size()));
    document.applyChange(
        Desk::tr("освобождение %1").arg(which),
        networkchange::changePoints(document, ids, [](levelling::Point& point) { point.fixed = false; }));
}

void ItemEditor::addSection()
{
    QStringList names;
    for (const LevellingPoint* point : document.getPoints())
        names.append(point->getName());
    // Two points that are selected are its ends.
    const std::vector<LONGID> selected = getSelectedPoints();
    const auto nameOf = [&](std::size_t index) {
        return index < selected.size() ? document.findPoint(selected[index])->getName() : QString();
    };
    NewSectionDialog dialog(names, nameOf(0), nameOf(1), window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const NetworkChange change = networkchange::addSection(document, dialog.getSection());
    const LONGID id = change.addedSections.front().item->getId();
    const QString name = change.addedSections.front().item->getName();
    if (document.applyChange(Desk::tr("новое измерение %1").arg(name), change))
        table.selectItem(id);
}

void ItemEditor::deleteSections()
{
    const std::vector<LONGID> ids = getSelectedSections();
    if (ids.empty()) {
        Q_EMIT refused(Desk::tr("Удаляются измерения: выделите секции."));
        return;
    }
    const int row = table.currentIndex().row();
    document.applyChange(Desk::tr("удаление %1").arg(nameSections(ids)),
                         networkchange::deleteSections(document, ids));
    takePlace(row);
}

/// Where the current row is gone, deleted or hidden by the choice of rows, the next one takes its place.
void ItemEditor::takePlace(int row)
{
    if (!table.currentIndex().isValid())
        table.setCurrentIndex(table.model()->index(std::min(row, table.model()->rowCount() - 1), 0));
}

} // namespace orvel::desk

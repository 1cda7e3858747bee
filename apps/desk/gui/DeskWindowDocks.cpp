// What the window is made of, and how it is laid out.

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/edit/ItemEditor.h"
#include "apps/desk/edit/OutdatedBar.h"
#include "apps/desk/gui/AboutBox.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/ItemFilterBar.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/TableColumns.h"
#include "apps/desk/picture/PictureDock.h"
#include "apps/desk/picture/PicturePanel.h"
#include "apps/desk/plots/PlotPanel.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "apps/desk/tolerances/ClassIndicator.h"

#include <QAction>
#include <QDockWidget>
#include <QItemSelectionModel>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace {

bool contains(const std::vector<LONGID>& ids, LONGID id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

/// The section with the largest normalised residual, the first one as long as there are none.
LONGID findWorst(const Document& document, const std::vector<LONGID>& ids)
{
    const auto size = [&document](LONGID id) {
        const LevellingSection* section = document.findSection(id);
        const bool isJudged = section && section->getResult() && section->getResult()->normalisedResidual;
        return isJudged ? std::abs(*section->getResult()->normalisedResidual) : 0.0;
    };
    return *std::max_element(ids.begin(), ids.end(),
                             [&size](LONGID a, LONGID b) { return size(a) < size(b); });
}

} // namespace

QWidget* DeskWindow::createCentralWidget()
{
    auto* central = new QWidget(this);
    messageBar = new MessageBar(central);
    table = new ItemTable(*document, this, central);
    filterBar = new ItemFilterBar(*table, central);
    itemEditor = new ItemEditor(*document, *table, this);
    outdatedBar = new OutdatedBar(*document, central);
    connect(itemEditor, &ItemEditor::refused, messageBar, &MessageBar::showMessage);
    connect(table, &ItemTable::editRefused, messageBar, &MessageBar::showMessage);
    connect(outdatedBar, &OutdatedBar::runRequested, this, &DeskWindow::runAgain);
    connect(table, &ItemTable::rowsChanged, this, &DeskWindow::updateActions);
    connect(table, &ItemTable::selectedItemsChanged, this, &DeskWindow::followSelection);
    connect(table, &ItemTable::currentItemChanged, this, &DeskWindow::followSelection);
    connect(table, &ItemTable::copied, this, [this](int rowCount) {
        statusBar()->showMessage(Desk::tr("Скопировано строк: %1").arg(QString::number(rowCount)), 5000);
    });
    table->addItemAction(actions->getAction(DeskActions::Command::ShowItemProtocol));
    for (QAction* action : actions->getItemActions())
        table->addItemAction(action);
    table->setPageShower([this](const std::function<void()>& show) { pages->showPage(show); });

    auto* findAction = new QAction(this);
    findAction->setShortcut(QKeySequence::Find);
    connect(findAction, &QAction::triggered, filterBar, &ItemFilterBar::startSearch);
    QMainWindow::addAction(findAction);

    auto* layout = new QVBoxLayout(central);
    layout->addWidget(messageBar);
    layout->addWidget(filterBar);
    layout->addWidget(outdatedBar);
    layout->addWidget(table, 1);
    return central;
}

void DeskWindow::createProtocolDock()
{
    protocolDock = new QDockWidget(Desk::tr("Последние протоколы"), this);
    protocolDock->setObjectName(QStringLiteral("protocols"));
    auto* parts = new QSplitter(protocolDock);
    protocols = new ProtocolList(parts);
    protocolPanel = new ProtocolPanel(*document, parts);
    parts->setSizes({380, 620});
    protocolDock->setWidget(parts);
    addDockWidget(Qt::BottomDockWidgetArea, protocolDock);
    resizeDocks({protocolDock}, {220}, Qt::Vertical);
    connect(protocols, &ProtocolList::protocolRequested, pages, &DeskPages::showProtocol);
    connect(protocols, &ProtocolList::protocolChosen, protocolPanel, &ProtocolPanel::showProtocol);
    connect(protocolPanel, &ProtocolPanel::itemsRequested, this, &DeskWindow::selectItemsOfLine);
    connect(protocolPanel, &ProtocolPanel::lineRequested, this, [this](int type, const QString& text) {
        if (!isRunWorking())
            pages->showLine(type, text);
    });
    connect(table, &ItemTable::currentItemChanged, protocolPanel,
            [this] { protocolPanel->setCurrentItem(table->getCurrentItem()); });
    actions->addToProtocolMenu(protocolDock->toggleViewAction());
    auto* showLines = new QAction(Desk::tr("В &строках протокола"), this);
    connect(showLines, &QAction::triggered, this, [this] {
        protocolDock->show();
        protocolPanel->showAboutCurrent();
    });
    table->addItemAction(showLines);
}

/// Selects what a line is about, for the keys that change it: all its sections, of which a misclosure or a
/// gross error is made, or where it names none the first point. The keyboard stays with the lines. Search and
/// choice do not hide what they mean, and where it is gone nothing else stays selected.
void DeskWindow::selectItemsOfLine(const std::vector<LONGID>& ids)
{
    std::vector<LONGID> wanted;
    for (const LONGID id : ids) {
        if (document->findSection(id) && !contains(wanted, id))
            wanted.push_back(id);
    }
    if (wanted.empty())
        wanted.push_back(ids.front());
    LONGID current = table->getCurrentItem();
    // Lines about the current item are not to become those about another while somebody reads them.
    const bool stays =
        contains(wanted, current) || (protocolPanel->isAboutCurrent() && contains(ids, current));
    if (!stays)
        current = findWorst(*document, wanted);
    if (table->selectItems(wanted, current, ItemTable::Focus::Stays))
        return;
    filterBar->clear();
    if (table->selectItems(wanted, current, ItemTable::Focus::Stays))
        return;
    table->selectionModel()->clear();
    messageBar->showMessage(Desk::tr("Этого пункта или этой секции в проекте больше нет."));
}

void DeskWindow::createPlotDock()
{
    auto* dock = new QDockWidget(Desk::tr("Графики"), this);
    dock->setObjectName(QStringLiteral("plots"));
    plotPanel = new PlotPanel(*document, dock);
    dock->setWidget(plotPanel);
    // One above the other leaves neither enough room.
    tabifyDockWidget(pictureDock, dock);
    dock->hide();
    dock->toggleViewAction()->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+G")));
    for (QDockWidget* one : {dock, static_cast<QDockWidget*>(pictureDock)})
        connect(one->toggleViewAction(), &QAction::triggered, one, &QWidget::raise);
    actions->addToViewMenu(dock->toggleViewAction());
    connect(plotPanel, &PlotPanel::itemRequested, this, [this](LONGID id) { locateItem(id); });
}

void DeskWindow::createClassIndicator()
{
    auto* indicator = new ClassIndicator(*document, statusBar());
    statusBar()->addPermanentWidget(indicator);
    connect(indicator, &QAbstractButton::clicked, this, &DeskWindow::editTolerances);
    connect(document, &Document::surveyRulesChanged, actions,
            [this] { actions->showRules(document->getSurveyRules()); });
}

void DeskWindow::createPictureDock()
{
    pictureDock = new picture::PictureDock(*document, *table, this);
    addDockWidget(Qt::RightDockWidgetArea, pictureDock);
    pictureDock->hide();
    connect(&pictureDock->getPanel(), &picture::PicturePanel::itemChosen, this, [this](LONGID id) {
        // The keyboard stays with the picture, unless the search hides the item.
        if (!table->selectItem(id, ItemTable::Focus::Stays))
            locateItem(id);
    });
    actions->addToViewMenu(pictureDock->toggleViewAction());
    auto* showInPicture = new QAction(Desk::tr("На с&хеме"), this);
    connect(showInPicture, &QAction::triggered, pictureDock, [this] {
        pictureDock->show();
        pictureDock->raise();
    });
    table->addItemAction(showInPicture);
}

void DeskWindow::restoreLayout()
{
    const QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
    table->getColumns().restore(settings.value(QStringLiteral("window/tableColumns")).toByteArray());
}

void DeskWindow::saveLayout() const
{
    QSettings settings;
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/state"), saveState());
    settings.setValue(QStringLiteral("window/tableColumns"), table->getColumns().save());
}

void DeskWindow::childEvent(QChildEvent* event)
{
    ProjectWindow::childEvent(event);
    // The main window makes these by itself for docks that share a place.
    auto* tabs = event->polished() ? qobject_cast<QTabBar*>(event->child()) : nullptr;
    if (tabs)
        tabs->setAccessibleName(Desk::tr("Панели"));
}

} // namespace orvel::desk

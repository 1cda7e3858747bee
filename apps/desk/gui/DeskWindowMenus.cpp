#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/RecentFiles.h"

#include <QAction>
#include <QActionGroup>
#include <QMenuBar>
#include <QToolBar>

namespace orvel::desk {

QAction* DeskWindow::addAction(QMenu* menu, const QString& text, const QIcon& icon,
                               const QKeySequence& shortcut, void (DeskWindow::*slot)()) const
{
    QAction* action = menu->addAction(icon, text);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

void DeskWindow::createActions()
{
    createFileMenu();
    createRunMenu();
    createProtocolMenu();
    createReportMenu();
    createHelpMenu();
}

void DeskWindow::createFileMenu()
{
    QMenu* menu = menuBar()->addMenu(Desk::tr("&Файл"));
    idleActions.push_back(addAction(menu, Desk::tr("&Новый проект"), makeIcon(Glyph::New), QKeySequence::New,
                                    &DeskWindow::newRequested));
    idleActions.push_back(addAction(menu, Desk::tr("&Открыть…"), makeIcon(Glyph::Open), QKeySequence::Open,
                                    &DeskWindow::chooseAndOpen));
    recentMenu = menu->addMenu(Desk::tr("Н&едавние файлы"));
    connect(recentMenu, &QMenu::aboutToShow, this, &DeskWindow::fillRecentMenu);
    idleActions.push_back(recentMenu->menuAction());
    menu->addSeparator();
    saveAction = addAction(menu, Desk::tr("&Сохранить"), makeIcon(Glyph::Save), QKeySequence::Save,
                           &DeskWindow::saveWithoutAnswer);
    idleActions.push_back(saveAction);
    QAction* saveAs = menu->addAction(Desk::tr("Сохранить &как…"));
    saveAs->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    connect(saveAs, &QAction::triggered, this, [this] { chooseAndSave(); });
    idleActions.push_back(saveAs);
    menu->addSeparator();
    importAction = addAction(menu, Desk::tr("&Импорт сети…"), makeIcon(Glyph::Import),
                             QKeySequence(QStringLiteral("Ctrl+I")), &DeskWindow::chooseAndImport);
    importAction->setStatusTip(Desk::tr("Прочитать нивелирную сеть из файла .gkf"));
    idleActions.push_back(importAction);
    exportAction = addAction(menu, Desk::tr("&Экспорт высот…"), makeIcon(Glyph::Export),
                             QKeySequence(QStringLiteral("Ctrl+E")), &DeskWindow::chooseAndExport);
    exportAction->setStatusTip(Desk::tr("Записать уравненные высоты и их СКО в файл CSV"));
    resultActions.push_back(exportAction);
    menu->addSeparator();
    QAction* quit = menu->addAction(Desk::tr("&Выход"));
    quit->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void DeskWindow::createRunMenu()
{
    QMenu* menu = menuBar()->addMenu(Desk::tr("&Обработка"));
    compileAction = addAction(menu, Desk::tr("&Предобработка"), makeIcon(Glyph::Compile),
                              QKeySequence(Qt::Key_F5), &DeskWindow::compile);
    compileAction->setStatusTip(Desk::tr("Проверить связность сети, повторные измерения и невязки"));
    adjustAction = addAction(menu, Desk::tr("&Уравнивание"), makeIcon(Glyph::Adjust),
                             QKeySequence(Qt::Key_F6), &DeskWindow::adjust);
    adjustAction->setStatusTip(Desk::tr("Вычислить высоты по методу наименьших квадратов"));
    analyseAction = addAction(menu, Desk::tr("&L1-анализ"), makeIcon(Glyph::L1Analysis),
                              QKeySequence(Qt::Key_F7), &DeskWindow::analyse);
    analyseAction->setStatusTip(Desk::tr("Найти грубые ошибки измерений"));
    networkActions = {compileAction, adjustAction, analyseAction};
    menu->addSeparator();
    createClassMenu(menu);
    menu->addSeparator();
    addAction(menu, Desk::tr("Окно &выполнения"), QIcon(), QKeySequence(QStringLiteral("Ctrl+J")),
              &DeskWindow::showMonitor);
}

void DeskWindow::createClassMenu(QMenu* menu)
{
    QMenu* classMenu = menu->addMenu(Desk::tr("&Класс нивелирования"));
    classMenu->setStatusTip(Desk::tr("Задаёт допустимые невязки k·√L"));
    auto* group = new QActionGroup(this);
    for (const auto levellingClass :
         {LevellingClass::I, LevellingClass::II, LevellingClass::III, LevellingClass::IV}) {
        QAction* action = classMenu->addAction(
            Desk::tr("Класс %1: %2 мм·√L")
                .arg(getClassName(levellingClass), QString::number(getToleranceFactor(levellingClass))));
        action->setCheckable(true);
        action->setChecked(document->getLevellingClass() == levellingClass);
        group->addAction(action);
        connect(action, &QAction::triggered, this,
                [this, levellingClass] { document->setLevellingClass(levellingClass); });
    }
    idleActions.push_back(classMenu->menuAction());
}

void DeskWindow::createProtocolMenu()
{
    protocolMenu = menuBar()->addMenu(Desk::tr("&Протоколы"));
    int number = 0;
    for (const int type : {int(enums::Import), int(enums::Compile), int(enums::Adjust),
                           int(enums::L1Analysis), int(enums::Export)}) {
        QAction* action = protocolMenu->addAction(makeIcon(Glyph::Protocol), getTypeText(type));
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+%1").arg(++number)));
        connect(action, &QAction::triggered, this, [this, type] { showProtocol(type); });
        idleActions.push_back(action);
    }
    protocolMenu->addSeparator();
    itemProtocolAction =
        addAction(protocolMenu, Desk::tr("О &выделенном пункте или секции"), makeIcon(Glyph::Search),
                  QKeySequence(QStringLiteral("Ctrl+P")), &DeskWindow::showCurrentItemProtocol);
    idleActions.push_back(itemProtocolAction);
}

void DeskWindow::createReportMenu()
{
    QMenu* menu = menuBar()->addMenu(Desk::tr("&Ведомости"));
    for (const int type : {kHeightCatalogue, kResidualList}) {
        QAction* action = menu->addAction(makeIcon(Glyph::Report), getTypeText(type));
        connect(action, &QAction::triggered, this, [this, type] { showReport(type); });
        resultActions.push_back(action);
    }
}

void DeskWindow::createHelpMenu()
{
    QMenu* menu = menuBar()->addMenu(Desk::tr("&Справка"));
    addAction(menu, Desk::tr("&Что делает каждая обработка"), makeIcon(Glyph::Help),
              QKeySequence::HelpContents, &DeskWindow::showHelp);
    addAction(menu, Desk::tr("&О программе"), QIcon(), QKeySequence(), &DeskWindow::showAbout);
}

void DeskWindow::createToolBar()
{
    QToolBar* bar = addToolBar(Desk::tr("Панель инструментов"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addAction(importAction);
    bar->addSeparator();
    bar->addActions({compileAction, adjustAction, analyseAction});
    bar->addSeparator();
    bar->addAction(exportAction);
    // On the bar there is no room for dots and mnemonics.
    importAction->setIconText(Desk::tr("Импорт"));
    exportAction->setIconText(Desk::tr("Экспорт"));
}

void DeskWindow::fillRecentMenu()
{
    recentMenu->clear();
    for (const QString& path : recentfiles::get()) {
        // An ampersand in a menu would be taken for the mark of a mnemonic.
        QString text = path;
        QAction* action = recentMenu->addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        connect(action, &QAction::triggered, this, [this, path] { openFile(path); });
    }
    if (recentMenu->isEmpty())
        recentMenu->addAction(Desk::tr("Пока нет"))->setEnabled(false);
}

} // namespace orvel::desk

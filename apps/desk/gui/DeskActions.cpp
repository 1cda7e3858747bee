#include "apps/desk/gui/DeskActions.h"

#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/runs/RunKinds.h"
#include "apps/desk/runs/Tolerances.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolBar>

#include <algorithm>

namespace orvel::desk {

namespace {

Glyph getGlyph(int protocolType)
{
    switch (protocolType) {
    case enums::Compile:
        return Glyph::Compile;
    case enums::Adjust:
        return Glyph::Adjust;
    case enums::L1Analysis:
        return Glyph::L1Analysis;
    default:
        return Glyph::Protocol;
    }
}

} // namespace

DeskActions::DeskActions(QMainWindow& owner, const SurveyRules& rules) : QObject(&owner), window(owner)
{
    createFileMenu();
    createEditMenu();
    createRunMenu();
    createClassMenu(runMenu, rules);
    createProtocolMenu();
    createReportMenu();
    viewMenu = window.menuBar()->addMenu(Desk::tr("&Вид"));
    createHelpMenu();
    createToolBar();
}

void DeskActions::update(const Situation& situation)
{
    for (const auto& [action, need] : needs)
        action->setEnabled(isMet(need, situation));
    const auto name = [](QAction* action, const QString& plain, const QString& what) {
        action->setText(what.isEmpty()
                            ? plain
                            : QStringLiteral("%1: %2").arg(
                                  plain, QString(what).replace(QLatin1Char('&'), QLatin1String("&&"))));
    };
    name(actions[Command::Undo], Desk::tr("&Отменить"), situation.undoText);
    name(actions[Command::Redo], Desk::tr("&Вернуть"), situation.redoText);
    for (const auto& [type, action] : protocolActions) {
        const auto& outdated = situation.outdatedTypes;
        const bool isOutdated = std::find(outdated.begin(), outdated.end(), type) != outdated.end();
        action->setText(isOutdated ? Desk::tr("%1 (устарело)").arg(getTypeText(type)) : getTypeText(type));
    }
}

std::vector<QAction*> DeskActions::getItemActions() const
{
    std::vector<QAction*> list;
    for (const Command command : {Command::EditValue, Command::SwitchSections, Command::SetSigma,
                                  Command::HoldPoints, Command::FreePoints, Command::DeleteSections})
        list.push_back(actions.at(command));
    return list;
}

void DeskActions::addToProtocolMenu(QAction* action)
{
    protocolMenu->addAction(action);
}

void DeskActions::showRules(const SurveyRules& rules)
{
    for (const auto& [levellingClass, action] : classActions) {
        const QString factor = tolerances::describeFactor(rules.tolerances.of(levellingClass).loops);
        action->setText(QStringLiteral("%1: %2").arg(describeClass(levellingClass), factor));
        action->setChecked(levellingClass == rules.levellingClass);
    }
}

void DeskActions::addToViewMenu(QAction* action)
{
    viewMenu->addAction(action);
}

bool DeskActions::isMet(Need need, const Situation& situation)
{
    if (need == Need::Nothing)
        return true;
    if (situation.isRunWorking)
        return false;
    switch (need) {
    case Need::Network:
        return situation.hasNetwork;
    case Need::Results:
        return situation.hasResults;
    case Need::Item:
        return situation.hasCurrentItem;
    case Need::Selection:
        return situation.hasSelection;
    case Need::Outdated:
        return !situation.outdatedTypes.empty();
    case Need::Undo:
        return !situation.undoText.isEmpty();
    case Need::Redo:
        return !situation.redoText.isEmpty();
    default:
        return true;
    }
}

void DeskActions::createFileMenu()
{
    QMenu* menu = window.menuBar()->addMenu(Desk::tr("&Файл"));
    add(menu, Command::New, Need::Idle, Desk::tr("&Новый проект"), makeIcon(Glyph::New), QKeySequence::New);
    add(menu, Command::Open, Need::Idle, Desk::tr("&Открыть…"), makeIcon(Glyph::Open), QKeySequence::Open);
    recentMenu = menu->addMenu(Desk::tr("Н&едавние файлы"));
    connect(recentMenu, &QMenu::aboutToShow, this, &DeskActions::fillRecentMenu);
    needs.emplace_back(recentMenu->menuAction(), Need::Idle);
    menu->addSeparator();
    add(menu, Command::Save, Need::Idle, Desk::tr("&Сохранить"), makeIcon(Glyph::Save), QKeySequence::Save);
    add(menu, Command::SaveAs, Need::Idle, Desk::tr("Сохранить &как…"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    menu->addSeparator();
    add(menu, Command::Import, Need::Idle, Desk::tr("&Импорт сети…"), makeIcon(Glyph::Import),
        QKeySequence(QStringLiteral("Ctrl+I")))
        ->setStatusTip(Desk::tr("Прочитать файлы .gkf, цифровых нивелиров и тахеометров (GSI, M5)"));
    add(menu, Command::ImportTable, Need::Idle, Desk::tr("Импорт по ша&блону…"), makeIcon(Glyph::Import),
        QKeySequence(QStringLiteral("Ctrl+Shift+I")))
        ->setStatusTip(Desk::tr("Прочитать текстовый файл, выбрав, что в его столбцах"));
    add(menu, Command::Export, Need::Network, Desk::tr("&Экспорт…"), makeIcon(Glyph::Export),
        QKeySequence(QStringLiteral("Ctrl+E")))
        ->setStatusTip(Desk::tr("Записать уравненные высоты или сеть в файл"));
    menu->addSeparator();
    add(menu, Command::Print, Need::Network, Desk::tr("&Печать…"), QIcon(), QKeySequence::Print)
        ->setStatusTip(Desk::tr("Печатать таблицу, строки протокола или ведомость, или записать их в PDF"));
    menu->addSeparator();
    add(menu, Command::Quit, Need::Nothing, Desk::tr("&Выход"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+Q")));
}

void DeskActions::createEditMenu()
{
    QMenu* menu = window.menuBar()->addMenu(Desk::tr("&Правка"));
    add(menu, Command::Undo, Need::Undo, Desk::tr("&Отменить"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+Z")));
    add(menu, Command::Redo, Need::Redo, Desk::tr("&Вернуть"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+Shift+Z")))
        ->setShortcuts(
            {QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});
    menu->addSeparator();
    add(menu, Command::EditValue, Need::Item, Desk::tr("&Изменить значение"), QIcon(),
        QKeySequence(QStringLiteral("F2")))
        ->setStatusTip(
            Desk::tr("Превышение, длина и СКО секции, отметка исходного репера — прямо в таблице"));
    add(menu, Command::SwitchSections, Need::Selection, Desk::tr("О&тключить или включить измерения"),
        QIcon(), QKeySequence(QStringLiteral("F4")))
        ->setStatusTip(Desk::tr("Отключённые секции остаются в проекте, но обработки о них не знают"));
    add(menu, Command::SetSigma, Need::Selection, Desk::tr("&СКО выделенных измерений…"), QIcon(),
        QKeySequence());
    menu->addSeparator();
    add(menu, Command::HoldPoints, Need::Selection, Desk::tr("Сделать исходным &репером…"), QIcon(),
        QKeySequence());
    add(menu, Command::FreePoints, Need::Selection, Desk::tr("Осво&бодить репер"), QIcon(), QKeySequence());
    menu->addSeparator();
    add(menu, Command::AddSection, Need::Idle, Desk::tr("&Добавить измерение…"), QIcon(),
        QKeySequence(QStringLiteral("Ins")));
    add(menu, Command::DeleteSections, Need::Selection, Desk::tr("&Удалить измерения"), QIcon(),
        QKeySequence::Delete);
}

void DeskActions::createRunMenu()
{
    runMenu = window.menuBar()->addMenu(Desk::tr("&Обработка"));
    for (const RunKind& kind : runs::getKinds()) {
        QAction* action = runMenu->addAction(makeIcon(getGlyph(kind.protocolType)), kind.menuText);
        action->setShortcut(QKeySequence(kind.shortcut));
        action->setStatusTip(kind.statusTip);
        connect(action, &QAction::triggered, this,
                [this, type = kind.protocolType] { Q_EMIT runRequested(type); });
        runActions[kind.protocolType] = action;
        needs.emplace_back(action, Need::Network);
    }
    runMenu->addSeparator();
    add(runMenu, Command::RunAgain, Need::Outdated, Desk::tr("В&ыполнить устаревшие снова"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+R")))
        ->setStatusTip(Desk::tr("Обработки, после которых сеть или класс изменены, одна за другой"));
    runMenu->addSeparator();
}

void DeskActions::createClassMenu(QMenu* menu, const SurveyRules& rules)
{
    QMenu* classMenu = menu->addMenu(Desk::tr("&Класс нивелирования"));
    classMenu->setStatusTip(Desk::tr("Задаёт допустимые невязки k·√L"));
    auto* group = new QActionGroup(this);
    for (const LevellingClass levellingClass : kLevellingClasses) {
        QAction* action = classMenu->addAction(QString());
        action->setCheckable(true);
        group->addAction(action);
        classActions[levellingClass] = action;
        connect(action, &QAction::triggered, this,
                [this, levellingClass] { Q_EMIT classChosen(levellingClass); });
    }
    showRules(rules);
    needs.emplace_back(classMenu->menuAction(), Need::Idle);
    add(menu, Command::EditTolerances, Need::Idle, Desk::tr("&Допуски…"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+T")))
        ->setStatusTip(Desk::tr("Задать свои допуски, уровень критериев и число знаков"));
    menu->addSeparator();
    add(menu, Command::ShowMonitor, Need::Nothing, Desk::tr("Окно &выполнения"), QIcon(),
        QKeySequence(QStringLiteral("Ctrl+J")));
}

void DeskActions::createProtocolMenu()
{
    protocolMenu = window.menuBar()->addMenu(Desk::tr("&Протоколы"));
    for (const int type : getProtocolTypes()) {
        QAction* action = protocolMenu->addAction(makeIcon(Glyph::Protocol), getTypeText(type));
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+%1").arg(getTypeDigit(type))));
        connect(action, &QAction::triggered, this, [this, type] { Q_EMIT protocolRequested(type); });
        protocolActions[type] = action;
        needs.emplace_back(action, Need::Idle);
    }
    protocolMenu->addSeparator();
    add(protocolMenu, Command::ShowItemProtocol, Need::Item, Desk::tr("О &выделенном пункте или секции"),
        makeIcon(Glyph::Search), QKeySequence(QStringLiteral("Ctrl+L")));
    protocolMenu->addSeparator();
    add(protocolMenu, Command::NextProblem, Need::Nothing, Desk::tr("С&ледующая ошибка"), QIcon(),
        QKeySequence(QStringLiteral("F8")))
        ->setStatusTip(
            Desk::tr("Перейти в строках протокола к следующей ошибке, а если их нет — к предупреждению"));
    add(protocolMenu, Command::PreviousProblem, Need::Nothing, Desk::tr("&Предыдущая ошибка"), QIcon(),
        QKeySequence(QStringLiteral("Shift+F8")));
    protocolMenu->addSeparator();
}

void DeskActions::createReportMenu()
{
    QMenu* menu = window.menuBar()->addMenu(Desk::tr("&Ведомости"));
    for (const deskreports::Report& report : deskreports::getReports()) {
        QAction* action = menu->addAction(makeIcon(Glyph::Report), report.title);
        connect(action, &QAction::triggered, this,
                [this, type = report.type] { Q_EMIT reportRequested(type); });
        needs.emplace_back(action, report.needsResults ? Need::Results : Need::Network);
    }
}

void DeskActions::createHelpMenu()
{
    QMenu* menu = window.menuBar()->addMenu(Desk::tr("&Справка"));
    add(menu, Command::ShowHelp, Need::Nothing, Desk::tr("&Что делает каждая обработка"),
        makeIcon(Glyph::Help), QKeySequence::HelpContents);
    add(menu, Command::ShowAbout, Need::Nothing, Desk::tr("&О программе"), QIcon(), QKeySequence());
}

void DeskActions::createToolBar()
{
    QToolBar* bar = window.addToolBar(Desk::tr("Панель инструментов"));
    bar->setObjectName(QStringLiteral("toolBar"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addAction(actions[Command::Import]);
    bar->addSeparator();
    bar->addActions({runActions[enums::Compile], runActions[enums::Adjust], runActions[enums::L1Analysis]});
    bar->addSeparator();
    bar->addAction(actions[Command::Export]);
    // On the bar there is no room for dots and mnemonics.
    actions[Command::Import]->setIconText(Desk::tr("Импорт"));
    actions[Command::Export]->setIconText(Desk::tr("Экспорт"));
}

QAction* DeskActions::add(QMenu* menu, Command command, Need need, const QString& text, const QIcon& icon,
                          const QKeySequence& shortcut)
{
    QAction* action = menu->addAction(icon, text);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, [this, command] { Q_EMIT triggered(command); });
    actions[command] = action;
    needs.emplace_back(action, need);
    return action;
}

void DeskActions::fillRecentMenu()
{
    recentMenu->clear();
    for (const QString& path : recentfiles::get()) {
        // An ampersand in a menu would be taken for the mark of a mnemonic.
        QString text = path;
        QAction* action = recentMenu->addAction(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        connect(action, &QAction::triggered, this, [this, path] { Q_EMIT fileRequested(path); });
    }
    if (recentMenu->isEmpty())
        recentMenu->addAction(Desk::tr("Пока нет"))->setEnabled(false);
}

} // namespace orvel::desk

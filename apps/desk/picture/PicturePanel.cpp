#include "apps/desk/picture/PicturePanel.h"

#include "Orvel/Toolkit.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/picture/ItemText.h"
#include "apps/desk/picture/PictureFile.h"
#include "apps/desk/picture/PictureView.h"
#include "host/app/Application.h"
#include "host/files/WholeFile.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QToolBar>
#include <QVBoxLayout>

#include <utility>

namespace orvel::desk::picture {

PicturePanel::PicturePanel(const Document& projectDocument, QWidget* parent)
    : QWidget(parent)
    , document(projectDocument)
    , view(new PictureView(this))
    , hint(new QLabel(this))
{
    auto* bar = new QToolBar(this);
    createControls(*bar);
    hint->setTextInteractionFlags(Qt::NoTextInteraction);
    bar->addWidget(hint);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(view, 1);
    setFocusProxy(view);
    view->setDescriber([this](LONGID id) { return describeItem(document, id); });
    view->setEmptyText(Desk::tr("В проекте нет ни одного пункта"));
    connect(view, &PictureView::itemChosen, this, &PicturePanel::itemChosen);
    connect(&document, &Document::networkReplaced, this, &PicturePanel::refresh);
    connect(&document, &Document::itemsEdited, this, &PicturePanel::refresh);
    connect(&document, &Document::resultsChanged, this, &PicturePanel::refresh);
    connect(&document, &Document::surveyRulesChanged, this, &PicturePanel::refresh);
    connect(&document, &Document::summaryChanged, this, &PicturePanel::refresh);
    connect(this, &PicturePanel::laidOut, this, &PicturePanel::takeLayout, Qt::QueuedConnection);
    connect(this, &PicturePanel::loopsFound, this, &PicturePanel::takeLoops, Qt::QueuedConnection);
}

PicturePanel::~PicturePanel()
{
    isStopped = true;
}

void PicturePanel::createControls(QToolBar& bar)
{
    const auto add = [&bar](const QString& text, const QString& explanation) {
        QAction* action = bar.addAction(text);
        action->setToolTip(explanation);
        return action;
    };
    connect(add(Desk::tr("Вся сеть"), Desk::tr("Показать всю сеть (Home)")), &QAction::triggered, view,
            &PictureView::showAll);
    connect(add(QStringLiteral("+"), Desk::tr("Крупнее (+ или колесо мыши)")), &QAction::triggered, view,
            &PictureView::zoomIn);
    connect(add(QStringLiteral("−"), Desk::tr("Мельче (− или колесо мыши)")), &QAction::triggered, view,
            &PictureView::zoomOut);
    connect(add(Desk::tr("К выделенному"), Desk::tr("Показать выделенное посередине (пробел)")),
            &QAction::triggered, view, &PictureView::centreCurrentItem);
    loopsAction = add(Desk::tr("Невязки"), Desk::tr("Показать ходы и полигоны с невязкой больше допуска"));
    loopsAction->setCheckable(true);
    connect(loopsAction, &QAction::toggled, this, &PicturePanel::showLoops);
    connect(add(Desk::tr("Сохранить…"), Desk::tr("Сохранить схему в файл SVG или PDF")), &QAction::triggered,
            this, &PicturePanel::chooseAndSave);
    connect(add(Desk::tr("Печать…"), Desk::tr("Напечатать схему")), &QAction::triggered, this,
            &PicturePanel::print);
}

void PicturePanel::setCurrentItem(LONGID id)
{
    view->setCurrentItem(id);
}

/// Has the picture follow the document, if anybody sees it. What changes meanwhile is taken afterwards.
void PicturePanel::refresh()
{
    isStale = true;
    areLoopsStale = true;
    if (!isVisible())
        return;
    PlanGraph newGraph = PlanGraph::of(document);
    if (isLayingOut) {
        // Nobody waits for the places of a network that is gone.
        isStopped = isStopped || !(newGraph == graph);
        return;
    }
    isStale = false;
    if (layout && newGraph == graph)
        showPicture();
    else
        startLayout(std::move(newGraph));
}

void PicturePanel::startLayout(PlanGraph newGraph)
{
    graph = std::move(newGraph);
    isLayingOut = true;
    isNewLayout = true;
    isStopped = false;
    layingOut = std::async(std::launch::async, [this, sought = graph] {
        std::optional<Layout> found = layOut(sought, [this] { return isStopped.load(); });
        Q_EMIT laidOut();
        return found;
    });
    updateHint();
}

void PicturePanel::takeLayout()
{
    isLayingOut = false;
    layout = layingOut.get();
    // Places of another network than the present one would have its points somewhere or nowhere.
    if (isStale)
        refresh();
    else
        showPicture();
}

void PicturePanel::showPicture()
{
    view->setPicture(NetworkPicture::make(document, *layout), !std::exchange(isNewLayout, false));
    updateHint();
    if (loopsAction->isChecked())
        showLoops();
    Q_EMIT shown();
}

/// Has the loops over the limit sought, or hides them.
void PicturePanel::showLoops()
{
    if (!loopsAction->isChecked()) {
        view->setLoops({});
        updateHint();
        return;
    }
    if (isFindingLoops)
        return;
    areLoopsStale = false;
    isFindingLoops = true;
    findingLoops = std::async(std::launch::async,
                              [this, snapshot = document.shareSnapshot(), rules = document.getSurveyRules()] {
                                  std::vector<OverLimitLoop> loops = findOverLimitLoops(*snapshot, rules);
                                  Q_EMIT loopsFound();
                                  return loops;
                              });
    updateHint();
}

void PicturePanel::takeLoops()
{
    isFindingLoops = false;
    const std::vector<OverLimitLoop> loops = findingLoops.get();
    if (!loopsAction->isChecked())
        return;
    if (areLoopsStale) {
        showLoops();
        return;
    }
    view->setLoops(loops);
    updateHint();
}

void PicturePanel::updateHint()
{
    if (isLayingOut)
        hint->setText(Desk::tr("Схема составляется…"));
    else if (isFindingLoops)
        hint->setText(Desk::tr("Невязки вычисляются…"));
    else if (loopsAction->isChecked())
        hint->setText(
            Desk::tr("Невязок больше допуска: %1").arg(QString::number(view->getPicture().loops.size())));
    else
        hint->clear();
}

void PicturePanel::chooseAndSave()
{
    const QString path = filedialogs::chooseDrawingTarget(this, Desk::tr("Сохранить схему сети"),
                                                          document.getProject().getName());
    if (path.isEmpty())
        return;
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, this); });
    catcher.run([&] { save(path); });
}

void PicturePanel::save(const QString& path) const
{
    const bool isPdf = QFileInfo(path).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
    files::writeAll(path, isPdf ? renderPdf(view->getPicture()) : renderSvgFile(view->getPicture()));
}

void PicturePanel::print()
{
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted)
        paintPage(view->getPicture(), printer, printer.resolution());
}

void PicturePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (isStale)
        refresh();
}

} // namespace orvel::desk::picture

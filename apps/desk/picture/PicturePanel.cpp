#include "apps/desk/picture/PicturePanel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/PictureSaving.h"
#include "apps/desk/picture/ItemText.h"
#include "apps/desk/picture/PictureFile.h"
#include "apps/desk/picture/PictureView.h"

#include <QAction>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <utility>

namespace orvel::desk::picture {

PicturePanel::PicturePanel(const Document& projectDocument, QWidget* parent)
    : QWidget(parent)
    , document(projectDocument)
    , view(new PictureView(this))
    , hint(new QLabel(this))
    , followTimer(new QTimer(this))
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
    followTimer->setSingleShot(true);
    connect(followTimer, &QTimer::timeout, this, &PicturePanel::follow);
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

/// The document has changed.
void PicturePanel::refresh()
{
    isStale = true;
    if (isVisible()) {
        followTimer->start(0);
        return;
    }
    layoutWork.stop();
    loopWork.stop();
}

/// Has the picture follow the document, if anybody sees it.
void PicturePanel::follow()
{
    if (!isStale || !isVisible())
        return;
    isStale = false;
    PlanGraph newGraph = PlanGraph::of(document);
    const bool isSameGraph = newGraph == graph;
    if (layout && isSameGraph)
        showPicture();
    else if (!layoutWork.isWorking() || !isSameGraph)
        startLayout(std::move(newGraph));
}

void PicturePanel::startLayout(PlanGraph newGraph)
{
    graph = std::move(newGraph);
    layout.reset();
    layoutWork.start([this, sought = graph](const BackgroundWork::IsStopped& isStopped) {
        auto found = layOut(sought, isStopped).value_or(Layout());
        return [this, found = std::move(found)] { takeLayout(found); };
    });
    updateHint();
}

void PicturePanel::takeLayout(const Layout& found)
{
    layout = found;
    Q_EMIT laidOut();
    // Places of another network than the present one would have its points somewhere or nowhere.
    if (!isStale)
        showPicture();
}

void PicturePanel::showPicture()
{
    const bool isSamePlace = view->getPicture().hasPlaces(layout->places);
    view->setPicture(NetworkPicture::make(document, *layout), isSamePlace);
    showLoops();
    Q_EMIT shown();
}

/// Whether the loops that were sought last are those of the document as it is.
bool PicturePanel::areLoopsOfDocument() const
{
    const SurveyRules rules = document.getSurveyRules();
    return loopNetwork.lock() == document.shareSnapshot() &&
           loopRules.levellingClass == rules.levellingClass && loopRules.tolerances == rules.tolerances;
}

/// Shows the loops over the limit, or has them sought, or hides them.
void PicturePanel::showLoops()
{
    if (!loopsAction->isChecked()) {
        loopWork.stop();
        view->setLoops({});
    } else if (!areLoopsOfDocument() || !(loops || loopWork.isWorking())) {
        findLoops();
    } else if (loops) {
        view->setLoops(*loops);
    }
    updateHint();
}

void PicturePanel::findLoops()
{
    const std::shared_ptr<const NetworkSnapshot> snapshot = document.shareSnapshot();
    loopNetwork = snapshot;
    loopRules = document.getSurveyRules();
    loops.reset();
    loopWork.start([this, snapshot, rules = loopRules](const BackgroundWork::IsStopped& isStopped) {
        std::vector<OverLimitLoop> found = findOverLimitLoops(*snapshot, rules, isStopped);
        return [this, found = std::move(found)] {
            loops = found;
            view->setLoops(*loops);
            updateHint();
        };
    });
}

void PicturePanel::updateHint()
{
    if (layoutWork.isWorking())
        hint->setText(Desk::tr("Схема составляется…"));
    else if (loopWork.isWorking())
        hint->setText(Desk::tr("Невязки вычисляются…"));
    else if (loopsAction->isChecked())
        hint->setText(
            Desk::tr("Невязок больше допуска: %1").arg(QString::number(view->getPicture().loops.size())));
    else
        hint->clear();
}

void PicturePanel::chooseAndSave()
{
    picturesaving::chooseAndSave(this, Desk::tr("Сохранить схему сети"), document.getProject().getName(),
                                 [this](const QString& path) { save(path); });
}

void PicturePanel::save(const QString& path) const
{
    const NetworkPicture& picture = view->getPicture();
    picturesaving::write(
        path, [&] { return renderSvgFile(picture); }, [&] { return renderPdf(picture); });
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

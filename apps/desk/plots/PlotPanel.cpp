#include "apps/desk/plots/PlotPanel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/PictureSaving.h"
#include "apps/desk/plots/PlotView.h"
#include "apps/desk/process/BackgroundWork.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel::desk {

PlotPanel::PlotPanel(const Document& projectDocument, QWidget* parent)
    : QWidget(parent)
    , document(projectDocument)
    , startTimer(new QTimer(this))
    , tabs(new QTabWidget(this))
    , place(new QLabel(this))
    , saveButton(new QToolButton(this))
{
    tabs->setDocumentMode(true);
    tabs->setAccessibleName(Desk::tr("Графики"));
    for (const plots::Kind kind : plots::kKinds)
        addPage(kind);
    place->setWordWrap(true);
    place->setTextFormat(Qt::PlainText);
    saveButton->setText(Desk::tr("Сохранить…"));
    saveButton->setToolTip(Desk::tr("Сохранить график как SVG или PDF"));
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(place, 1);
    bottom->addWidget(saveButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(tabs, 1);
    layout->addLayout(bottom);
    connect(saveButton, &QToolButton::clicked, this, &PlotPanel::chooseFile);
    connect(tabs, &QTabWidget::currentChanged, this, &PlotPanel::updateControls);
    for (const auto change : {&Document::networkReplaced, &Document::resultsChanged,
                              &Document::summaryChanged, &Document::surveyRulesChanged})
        connect(&document, change, this, &PlotPanel::refresh);
    connect(&document, &Document::itemsEdited, this, &PlotPanel::refresh);
    connect(&document, &Document::outdatedChanged, this, &PlotPanel::updateControls);
    startTimer->setSingleShot(true);
    connect(startTimer, &QTimer::timeout, this, &PlotPanel::start);
    updateControls();
}

bool PlotPanel::isWorking() const
{
    return std::any_of(plots::kKinds.begin(), plots::kKinds.end(),
                       [this](plots::Kind kind) { return isWorking(kind); });
}

bool PlotPanel::isWorking(plots::Kind kind) const
{
    return isStale || pages[kind].work->isWorking();
}

void PlotPanel::addPage(plots::Kind kind)
{
    Page& page = pages[kind];
    page.stack = new QStackedWidget;
    page.empty = new QLabel(Desk::tr("Графики строятся…"));
    page.empty->setAlignment(Qt::AlignCenter);
    page.empty->setWordWrap(true);
    page.view = new PlotView;
    page.work = new BackgroundWork(this);
    page.stack->addWidget(page.empty);
    page.stack->addWidget(page.view);
    const std::array titles{Desk::tr("Гистограмма"), Desk::tr("Поправки"), Desk::tr("Невязки"),
                            Desk::tr("Прямо и обратно")};
    tabs->addTab(page.stack, titles[kind]);
    connect(page.view, &PlotView::currentChanged, this, &PlotPanel::tellOfMark);
    connect(page.view, &PlotView::markActivated, this, [this, view = page.view](int mark) {
        const LONGID item = view->getContent().marks[static_cast<std::size_t>(mark)].item;
        if (item != 0)
            Q_EMIT itemRequested(item);
    });
}

const PlotPanel::Page& PlotPanel::getPage() const
{
    return pages[static_cast<std::size_t>(tabs->currentIndex())];
}

void PlotPanel::showPlot(plots::Kind kind)
{
    tabs->setCurrentIndex(kind);
}

plots::Source PlotPanel::collect() const
{
    plots::Source source;
    source.snapshot = document.shareSnapshot();
    source.rules = document.getSurveyRules();
    source.worstOfItem = document.getSummary().worstOfItem;
    const std::vector<LevellingSection*> sections = document.getSections();
    source.residuals.reserve(sections.size());
    for (const LevellingSection* section : sections) {
        if (const auto& result = section->getResult())
            source.residuals.push_back({section->getId(), section->getName(), section->getSection().distance,
                                        result->residual, result->normalisedResidual});
    }
    return source;
}

/// The project has changed: what is being made is not wanted any more.
void PlotPanel::refresh()
{
    isStale = true;
    for (const Page& page : pages)
        page.work->stop();
    if (isVisible())
        startTimer->start(0);
}

/// Has the plots made, if anybody sees them.
void PlotPanel::start()
{
    if (!isStale || !isVisible())
        return;
    isStale = false;
    const auto source = std::make_shared<const plots::Source>(collect());
    for (const plots::Kind kind : plots::kKinds) {
        pages[kind].work->start([this, kind, source](const BackgroundWork::IsStopped& isStopped) {
            const auto content = std::make_shared<const PlotContent>(plots::make(kind, source, isStopped));
            return [this, kind, content] { showContent(kind, content); };
        });
    }
}

void PlotPanel::showContent(plots::Kind kind, const std::shared_ptr<const PlotContent>& content)
{
    const Page& page = pages[kind];
    page.view->setContent(content);
    page.empty->setText(content->emptyText);
    page.stack->setCurrentWidget(content->marks.empty() ? static_cast<QWidget*>(page.empty) : page.view);
    updateControls();
}

void PlotPanel::tellOfMark(int mark)
{
    place->setText(getPage().view->describeMark(mark));
}

void PlotPanel::updateControls()
{
    const PlotView& view = *getPage().view;
    saveButton->setEnabled(!view.getContent().marks.empty());
    if (view.getCurrent() >= 0)
        tellOfMark(view.getCurrent());
    else if (document.areResultsOutdated())
        place->setText(Desk::tr("Сеть изменена после уравнивания: поправки прежние"));
    else
        place->clear();
}

const PlotContent& PlotPanel::getPlot() const
{
    return getPage().view->getContent();
}

QByteArray PlotPanel::toSvg() const
{
    return getPage().view->toSvg();
}

void PlotPanel::save(const QString& path) const
{
    const PlotView& view = *getPage().view;
    picturesaving::write(
        path, [&] { return view.toSvg(); }, [&] { return view.toPdf(); });
}

void PlotPanel::chooseFile()
{
    picturesaving::chooseAndSave(this, Desk::tr("Сохранить график"), getPlot().title,
                                 [this](const QString& path) { save(path); });
}

void PlotPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (isStale)
        refresh();
}

} // namespace orvel::desk

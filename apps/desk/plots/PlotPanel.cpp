#include "apps/desk/plots/PlotPanel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/plots/PlotView.h"
#include "host/app/Application.h"
#include "host/files/Error.h"
#include "host/files/WholeFile.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvel::desk {

PlotPanel::PlotPanel(const Document& projectDocument, QWidget* parent)
    : QWidget(parent)
    , document(projectDocument)
    , tabs(new QTabWidget(this))
    , place(new QLabel(this))
    , saveButton(new QToolButton(this))
{
    tabs->setDocumentMode(true);
    tabs->setAccessibleName(Desk::tr("Графики"));
    for (std::size_t kind = 0; kind < plots::kCount; ++kind)
        addPage(static_cast<plots::Kind>(kind));
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
    connect(this, &PlotPanel::made, this, &PlotPanel::take, Qt::QueuedConnection);
    updateControls();
}

PlotPanel::~PlotPanel() = default;

void PlotPanel::addPage(plots::Kind kind)
{
    Page& page = pages[kind];
    page.stack = new QStackedWidget;
    page.empty = new QLabel(Desk::tr("Графики строятся…"));
    page.empty->setAlignment(Qt::AlignCenter);
    page.empty->setWordWrap(true);
    page.view = new PlotView;
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
    const auto& worst = document.getSummary().worstOfItem;
    for (const LevellingSection* section : document.getSections()) {
        if (const auto& result = section->getResult())
            source.residuals.push_back(
                {section->getId(), section->getName(), section->getSection().distance, result->residual,
                 result->normalisedResidual,
                 worst.value(section->getId(), COVMessage::Message) == COVMessage::Error});
    }
    return source;
}

void PlotPanel::refresh()
{
    isStale = true;
    if (!isVisible() || isMaking)
        return;
    isStale = false;
    isMaking = true;
    const auto make = [this, source = collect()] {
        auto contents = plots::make(source);
        Q_EMIT made();
        return contents;
    };
    making = std::async(std::launch::async, make);
}

void PlotPanel::take()
{
    isMaking = false;
    const auto contents = making.get();
    if (isStale) {
        refresh();
        return;
    }
    for (std::size_t kind = 0; kind < plots::kCount; ++kind) {
        const Page& page = pages[kind];
        page.view->setContent(contents[kind]);
        page.empty->setText(contents[kind].emptyText);
        const bool isEmpty = contents[kind].marks.empty();
        page.stack->setCurrentWidget(isEmpty ? static_cast<QWidget*>(page.empty) : page.view);
    }
    updateControls();
}

void PlotPanel::tellOfMark(int mark)
{
    place->setText(getPage().view->getContent().marks[static_cast<std::size_t>(mark)].text);
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

void PlotPanel::save(const QString& path) const
{
    const bool isPdf = path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
    files::writeAll(path, isPdf ? getPage().view->toPdf() : getPage().view->toSvg());
}

void PlotPanel::chooseFile()
{
    const QString path = filedialogs::chooseDrawingTarget(this, Desk::tr("Сохранить график"),
                                                          getPage().view->getContent().title);
    if (path.isEmpty())
        return;
    try {
        save(path);
    } catch (const exceptions::Error& error) {
        Application::warning(QString::fromStdWString(error.getText()), this);
    }
}

void PlotPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (isStale)
        refresh();
}

} // namespace orvel::desk

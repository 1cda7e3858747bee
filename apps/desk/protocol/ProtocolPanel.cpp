#include "apps/desk/protocol/ProtocolPanel.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/SearchField.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace {

// A branch with so many lines is not unfolded unasked.
constexpr std::size_t kFoldedFrom = 1000;

} // namespace

ProtocolPanel::ProtocolPanel(const Document& projectDocument, QWidget* parent)
    : QWidget(parent)
    , document(projectDocument)
    , model(new ProtocolTreeModel(this))
    , view(new QTreeView(this))
    , place(new QLabel(this))
{
    createView();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(createControls());
    layout->addWidget(view, 1);
    setFocusProxy(view);
    connect(&document, &Document::summaryChanged, this, &ProtocolPanel::forgetLines);
}

QLayout* ProtocolPanel::createControls()
{
    auto* layout = new QHBoxLayout;
    for (const COVMessage::MessageType kind : ProtocolTree::kKinds) {
        auto* button = new QToolButton(this);
        button->setCheckable(true);
        button->setChecked(true);
        button->setAutoRaise(true);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setIcon(ProtocolTreeModel::getKindIcon(kind));
        connect(button, &QToolButton::toggled, this, &ProtocolPanel::refresh);
        kindButtons[kind] = button;
        layout->addWidget(button);
    }
    aboutItem = new QToolButton(this);
    aboutItem->setText(Desk::tr("О выделенном"));
    aboutItem->setToolTip(
        Desk::tr("Показывать только строки о пункте или секции, которые выделены в таблице"));
    aboutItem->setCheckable(true);
    aboutItem->setAutoRaise(true);
    connect(aboutItem, &QToolButton::toggled, this, &ProtocolPanel::refresh);
    layout->addWidget(aboutItem);
    const QString hint = Desk::tr("Поиск в строках протокола");
    search = new SearchField(hint, hint, this);
    connect(search, &QLineEdit::textChanged, this, &ProtocolPanel::refresh);
    connect(search, &QLineEdit::returnPressed, view, QOverload<>::of(&QWidget::setFocus));
    layout->addWidget(search, 1);
    layout->addWidget(place);
    updateCounts();
    return layout;
}

void ProtocolPanel::createView()
{
    view->setModel(model);
    view->setAccessibleName(Desk::tr("Строки протокола"));
    view->setHeaderHidden(true);
    // Rows that need not be measured: there may be a hundred thousand.
    view->setUniformRowHeights(true);
    view->setTextElideMode(Qt::ElideRight);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setExpandsOnDoubleClick(false);
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, &ProtocolPanel::tellOfItem);
    connect(view, &QTreeView::activated, this, [this](const QModelIndex& index) {
        if (const ProtocolLine* line = model->getLine(index))
            Q_EMIT lineRequested(protocolType, line->text);
        else
            view->setExpanded(index, !view->isExpanded(index));
    });
}

void ProtocolPanel::showProtocol(int type)
{
    if (type == protocolType)
        return;
    protocolType = type;
    // Lines of the other one would be taken for this one's.
    model->setLines(std::make_shared<const ProtocolLines>(), ProtocolTree());
    updateCounts();
    forgetLines();
}

void ProtocolPanel::setCurrentItem(LONGID id)
{
    currentItem = id;
    if (aboutItem->isChecked())
        refresh();
}

void ProtocolPanel::showAboutCurrent()
{
    aboutItem->setChecked(true);
    view->setFocus();
}

bool ProtocolPanel::isAboutCurrent() const
{
    return aboutItem->isChecked();
}

ProtocolFilter ProtocolPanel::getFilter() const
{
    ProtocolFilter filter;
    for (const auto& [kind, button] : kindButtons) {
        if (!button->isChecked())
            filter.hiddenKinds.insert(kind);
    }
    filter.words = search->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (aboutItem->isChecked())
        filter.item = currentItem;
    return filter;
}

void ProtocolPanel::forgetLines()
{
    lines.reset();
    refresh();
}

/// Has what is asked for made, if anybody sees it.
void ProtocolPanel::refresh()
{
    isStale = true;
    if (!isVisible()) {
        work.stop();
        return;
    }
    isStale = false;
    work.start([this, packed = document.sharePackedData(), type = protocolType, known = lines,
                filter = getFilter()](const BackgroundWork::IsStopped& isStopped) -> BackgroundWork::Take {
        auto newLines =
            known ? known : std::make_shared<const ProtocolLines>(ProtocolLines::read(packed.unpack(), type));
        if (isStopped())
            return {};
        auto tree = std::make_shared<ProtocolTree>(ProtocolTree::make(*newLines, filter));
        return [this, newLines, tree] { take(newLines, std::move(*tree)); };
    });
}

void ProtocolPanel::take(const std::shared_ptr<const ProtocolLines>& newLines, ProtocolTree tree)
{
    const bool isSameProtocol = lines == newLines;
    const int current = isSameProtocol ? model->getPlace(view->currentIndex()) : -1;
    lines = newLines;
    model->setLines(newLines, std::move(tree));
    expand();
    updateCounts();
    const QModelIndex kept = model->findPlace(current);
    if (current >= 0 && kept.isValid()) {
        const QSignalBlocker blocker(view->selectionModel());
        view->setCurrentIndex(kept);
        view->scrollTo(kept, QAbstractItemView::PositionAtCenter);
    }
    if (aboutItem->isChecked() && model->getTree().counts.empty())
        place->setText(Desk::tr("О выделенном здесь строк нет"));
    Q_EMIT shown();
    if (const std::optional<bool> step = std::exchange(awaitedStep, std::nullopt))
        goToProblem(*step);
}

/// Unfolds what is short, and the first branch of problems however long.
void ProtocolPanel::expand()
{
    const auto& branches = model->getTree().branches;
    int number = 0;
    for (const ProtocolTree::Branch& branch : branches) {
        const bool isGroup = !branch.kind;
        const bool isProblem = branch.kind && *branch.kind != COVMessage::Message;
        if (isGroup || isProblem || branch.count < kFoldedFrom)
            view->expand(model->getBranchIndex(number));
        ++number;
    }
}

void ProtocolPanel::updateCounts()
{
    const auto& counts = model->getTree().counts;
    for (const auto& [kind, button] : kindButtons) {
        const auto count = counts.find(kind);
        const QString number = QString::number(count == counts.end() ? 0 : count->second);
        const QString description = QStringLiteral("%1: %2").arg(ProtocolTreeModel::nameKind(kind), number);
        button->setText(number);
        button->setToolTip(description);
        button->setAccessibleName(description);
    }
}

void ProtocolPanel::goToProblem(bool isForward)
{
    if (isWorking()) {
        awaitedStep = isForward;
        return;
    }
    for (const COVMessage::MessageType kind : {COVMessage::Error, COVMessage::Warning}) {
        const QModelIndex next = model->findNext(view->currentIndex(), kind, isForward);
        if (!next.isValid())
            continue;
        view->setCurrentIndex(next);
        view->scrollTo(next, QAbstractItemView::PositionAtCenter);
        const auto [number, all] = model->countOfKind(next);
        place->setText(Desk::tr("%1 из %2").arg(QString::number(number), QString::number(all)));
        return;
    }
    place->setText(Desk::tr("ошибок и предупреждений нет"));
}

void ProtocolPanel::tellOfItem(const QModelIndex& index)
{
    place->clear();
    const ProtocolLine* line = model->getLine(index);
    if (line != nullptr && !line->items.empty() && line->items.front() != 0)
        Q_EMIT itemsRequested(line->items);
}

void ProtocolPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (isStale)
        refresh();
}

} // namespace orvel::desk

#pragma once

#include "apps/desk/plots/PlotContent.h"

#include <QWidget>

#include <array>
#include <future>

class QLabel;
class QStackedWidget;
class QTabWidget;
class QToolButton;

namespace orvel::desk {

class Document;
class PlotView;

/// The plots of a project: normalised residuals, residuals by length, misclosures and discrepancies beside
/// their limits.
///
/// They are made in another thread, and only while somebody sees the panel.
class PlotPanel : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the panel.
    explicit PlotPanel(const Document& projectDocument, QWidget* parent = nullptr);
    /// Waits for the other thread, if that is at work.
    ~PlotPanel() override;

    /// Whether what is shown is not yet what the project has.
    bool isWorking() const { return isMaking || isStale; }
    PlotView& getView(plots::Kind kind) { return *pages[kind].view; }
    void showPlot(plots::Kind kind);
    /// Saves the plot that is shown as SVG, or as PDF where the file's suffix says so.
    ///
    /// @throws exceptions::Error
    void save(const QString& path) const;

Q_SIGNALS:
    /// The user wants to see that item.
    void itemRequested(LONGID id);
    /// From the other thread: it has made the plots.
    void made();

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Page
    {
        QStackedWidget* stack = nullptr;
        QLabel* empty = nullptr;
        PlotView* view = nullptr;
    };

    void addPage(plots::Kind kind);
    const Page& getPage() const;
    void refresh();
    void take();
    void tellOfMark(int mark);
    void updateControls();
    void chooseFile();
    plots::Source collect() const;

    const Document& document;
    bool isStale = true;
    bool isMaking = false;
    QTabWidget* tabs;
    std::array<Page, plots::kCount> pages;
    QLabel* place;
    QToolButton* saveButton;

    // Last: whoever destroys the panel waits for the other thread first.
    std::future<std::array<PlotContent, plots::kCount>> making;
};

} // namespace orvel::desk

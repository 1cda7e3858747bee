#pragma once

#include "apps/desk/plots/PlotContent.h"

#include <QWidget>

#include <array>

class QLabel;
class QStackedWidget;
class QTabWidget;
class QTimer;
class QToolButton;

namespace orvel::desk {

class BackgroundWork;
class Document;
class PlotView;

/// The plots of a project: normalised residuals, residuals by length, misclosures and discrepancies beside
/// their limits.
///
/// Each is made in a thread of its own, and only while somebody sees the panel: those of residuals need not
/// wait for the search of the loops.
class PlotPanel : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the panel.
    explicit PlotPanel(const Document& projectDocument, QWidget* parent = nullptr);
    /// Whether what is shown is not yet what the project has.
    bool isWorking() const;
    bool isWorking(plots::Kind kind) const;
    PlotView& getView(plots::Kind kind) { return *pages[kind].view; }
    void showPlot(plots::Kind kind);
    /// There is a plot on the page that is shown.
    bool hasPlot() const { return !getPlot().marks.empty(); }
    const PlotContent& getPlot() const;
    /// The plot that is shown, as SVG.
    QByteArray toSvg() const;
    /// Saves it as SVG, or as PDF where the file's suffix says so.
    ///
    /// @throws exceptions::Error
    void save(const QString& path) const;

Q_SIGNALS:
    /// The user wants to see that item.
    void itemRequested(LONGID id);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Page
    {
        QStackedWidget* stack = nullptr;
        QLabel* empty = nullptr;
        PlotView* view = nullptr;
        BackgroundWork* work = nullptr;
    };

    void addPage(plots::Kind kind);
    const Page& getPage() const;
    void refresh();
    void start();
    void showContent(plots::Kind kind, const std::shared_ptr<const PlotContent>& content);
    void tellOfMark(int mark);
    void updateControls();
    void chooseFile();
    plots::Source collect() const;

    const Document& document;
    bool isStale = true; ///< nobody has begun to make what the project has
    QTimer* startTimer;  ///< several changes are taken together
    QTabWidget* tabs;
    std::array<Page, plots::kCount> pages;
    QLabel* place;
    QToolButton* saveButton;
};

} // namespace orvel::desk

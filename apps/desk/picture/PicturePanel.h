#pragma once

#include "apps/desk/picture/Layout.h"
#include "apps/desk/picture/OverLimitLoops.h"
#include "host/model/LongId.h"

#include <QWidget>

#include <atomic>
#include <future>
#include <optional>

class QLabel;
class QToolBar;

namespace orvel::desk {

class Document;

namespace picture {

class PictureView;

/// The picture of the project's network, with its commands. Places are sought in another thread, and only
/// while somebody sees the panel.
class PicturePanel : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the panel.
    explicit PicturePanel(const Document& projectDocument, QWidget* parent = nullptr);
    /// Stops the other thread, if that is at work, and waits for it.
    ~PicturePanel() override;

    PictureView& getView() { return *view; }
    /// Marks the item that is chosen elsewhere.
    void setCurrentItem(LONGID id);
    /// Whether what is shown is not yet what it should be.
    bool isWorking() const { return isLayingOut || isFindingLoops || isStale; }

    /// Writes the picture into a file, as SVG or as PDF by its suffix.
    ///
    /// @throws qor::CFileException
    void save(const QString& path) const;

Q_SIGNALS:
    /// The user has chosen the item in the picture.
    void itemChosen(LONGID id);
    /// The picture shows the network as it is.
    void shown();
    /// From the other threads: they have made what they were asked for.
    void laidOut();
    void loopsFound();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void createControls(QToolBar& bar);
    void refresh();
    void startLayout(PlanGraph graph);
    void takeLayout();
    void showPicture();
    void showLoops();
    void takeLoops();
    void updateHint();
    void chooseAndSave();
    void print();

    const Document& document;
    PictureView* view;
    QLabel* hint;
    QAction* loopsAction = nullptr;

    PlanGraph graph;              ///< that places were last sought for
    std::optional<Layout> layout; ///< of the graph
    bool isStale = true;
    bool isLayingOut = false;
    bool isNewLayout = false; ///< nobody has seen its places yet
    bool isFindingLoops = false;
    bool areLoopsStale = false; ///< the network has changed since they were sought

    std::atomic<bool> isStopped = false;
    // Last: whoever destroys the panel waits for the other threads first.
    std::future<std::optional<Layout>> layingOut;
    std::future<std::vector<OverLimitLoop>> findingLoops;
};

} // namespace picture

} // namespace orvel::desk

#pragma once

#include "apps/desk/document/ToleranceRules.h"
#include "apps/desk/picture/Layout.h"
#include "apps/desk/picture/OverLimitLoops.h"
#include "apps/desk/process/BackgroundWork.h"
#include "host/model/LongId.h"

#include <QWidget>

#include <memory>
#include <optional>

class QLabel;
class QTimer;
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
    PictureView& getView() { return *view; }
    /// Marks the item that is chosen elsewhere.
    void setCurrentItem(LONGID id);
    /// Whether what is shown is not yet what it should be.
    bool isWorking() const { return isStale || layoutWork.isWorking() || loopWork.isWorking(); }

    /// Writes the picture into a file, as SVG or as PDF by its suffix.
    ///
    /// @throws qor::CFileException
    void save(const QString& path) const;

Q_SIGNALS:
    /// The user has chosen the item in the picture.
    void itemChosen(LONGID id);
    /// The picture shows the network as it is.
    void shown();
    /// Places were found.
    void laidOut();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void createControls(QToolBar& bar);
    void refresh();
    void follow();
    void startLayout(PlanGraph newGraph);
    void takeLayout(const Layout& found);
    void showPicture();
    void showLoops();
    bool areLoopsOfDocument() const;
    void findLoops();
    void updateHint();
    void chooseAndSave();
    void print();

    const Document& document;
    PictureView* view;
    QLabel* hint;
    QAction* loopsAction = nullptr;
    bool isStale = true; ///< the document has changed since the picture followed it last
    QTimer* followTimer; ///< several changes are taken together

    PlanGraph graph;              ///< that places were last sought for
    std::optional<Layout> layout; ///< of the graph
    BackgroundWork layoutWork;

    // That loops were last sought for, and what was found.
    std::weak_ptr<const NetworkSnapshot> loopNetwork;
    SurveyRules loopRules;
    std::optional<std::vector<OverLimitLoop>> loops;
    BackgroundWork loopWork;
};

} // namespace picture

} // namespace orvel::desk

#pragma once

#include "apps/desk/process/BackgroundWork.h"
#include "apps/desk/protocol/ProtocolTree.h"

#include <QWidget>

#include <map>
#include <memory>
#include <optional>

class QLineEdit;
class QLabel;
class QToolButton;
class QTreeView;

namespace orvel::desk {

class Document;
class ProtocolTreeModel;

/// The lines of a protocol inside the desk: a tree by stage and kind, to be searched and gone through.
///
/// Lines are read and found in another thread, and only while somebody sees the panel.
class ProtocolPanel : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the panel.
    explicit ProtocolPanel(const Document& projectDocument, QWidget* parent = nullptr);
    /// Shows the protocol of that type.
    void showProtocol(int type);
    int getProtocolType() const { return protocolType; }
    /// The item that "about the selected one" means.
    void setCurrentItem(LONGID id);
    /// Shows the lines about that item only.
    void showAboutCurrent();
    /// Whether these only are shown.
    bool isAboutCurrent() const;
    /// Goes to the next error, or where there is none to the next warning; back with `isForward` false. Does
    /// so as soon as the lines are there.
    void goToProblem(bool isForward);
    /// Whether what is shown is not yet what was asked for.
    bool isWorking() const { return isStale || work.isWorking(); }

    QTreeView& getView() { return *view; }
    QLineEdit& getSearch() { return *search; }

Q_SIGNALS:
    /// The user has turned to a line about these items; some may be gone.
    void itemsRequested(const std::vector<LONGID>& ids);
    /// The user wants to see the line on the page.
    void lineRequested(int protocolType, const QString& text);
    /// What was asked for is shown.
    void shown();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLayout* createControls();
    void createView();
    ProtocolFilter getFilter() const;
    void forgetLines();
    void refresh();
    void take(const std::shared_ptr<const ProtocolLines>& newLines, ProtocolTree tree);
    void expand();
    void updateCounts();
    void tellOfItem(const QModelIndex& index);

    const Document& document;
    int protocolType = 0;
    LONGID currentItem = 0;
    std::shared_ptr<const ProtocolLines> lines; ///< null until they are read
    bool isStale = true;                        ///< nobody has begun to make what is asked for
    std::optional<bool> awaitedStep;            ///< to the next problem or back, when the lines are there

    std::map<COVMessage::MessageType, QToolButton*> kindButtons;
    QLineEdit* search = nullptr;
    QToolButton* aboutItem = nullptr;
    ProtocolTreeModel* model;
    QTreeView* view;
    QLabel* place;

    BackgroundWork work;
};

} // namespace orvel::desk

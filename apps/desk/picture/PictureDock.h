#pragma once

#include <QDockWidget>

namespace orvel::desk {

class Document;
class ItemTable;

namespace picture {

class PicturePanel;

/// The picture of the network beside the item table: what is chosen in the one is marked in the other.
class PictureDock : public QDockWidget
{
    Q_OBJECT

public:
    /// Document and table outlive the dock.
    PictureDock(const Document& document, const ItemTable& table, QWidget* parent = nullptr);

    PicturePanel& getPanel() { return *panel; }

private:
    PicturePanel* panel;
};

} // namespace picture

} // namespace orvel::desk

#pragma once

#include <QWidget>

class QActionGroup;
class QLabel;
class QToolBar;

namespace orvel::desk {

class ItemTable;
class SearchField;

/// The line above the item table: words to look for, which kinds of item are shown, and how many that are.
class ItemFilterBar : public QWidget
{
    Q_OBJECT

public:
    /// The table outlives the bar.
    explicit ItemFilterBar(ItemTable& itemTable, QWidget* parent = nullptr);

    SearchField& getSearch() { return *search; }
    /// Turns the keyboard to the search.
    void startSearch();
    /// Shows all items.
    void clear();

private:
    QToolBar* createChoices();
    void showCount();

    ItemTable& table;
    SearchField* search;
    QActionGroup* choices; ///< one of them is checked; its data are the traits that it asks for
    QLabel* count;
};

} // namespace orvel::desk

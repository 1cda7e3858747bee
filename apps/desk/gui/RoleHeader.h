#pragma once

#include "levelling/TableTemplate.h"

#include <QHeaderView>

#include <vector>

class QComboBox;

namespace orvel::desk {

/// The header of a table whose columns have roles: below its title, each column has a list to choose from.
class RoleHeader : public QHeaderView
{
    Q_OBJECT

public:
    /// The columns with roles are those from the first one on.
    explicit RoleHeader(int firstColumn, QWidget* parent = nullptr);

    /// Gives so many columns lists, in which these are chosen.
    void setRoles(const std::vector<levelling::ColumnRole>& roles);
    const std::vector<QComboBox*>& getLists() const { return lists; }

    QSize sizeHint() const override;

Q_SIGNALS:
    /// @param column  counted from the first one that has a role
    void roleChosen(int column, levelling::ColumnRole role);

protected:
    void updateGeometries() override;

private:
    QComboBox* makeList(int column);
    void place();

    const int first;
    std::vector<QComboBox*> lists;
};

} // namespace orvel::desk

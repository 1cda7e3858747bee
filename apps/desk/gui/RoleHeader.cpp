#include "apps/desk/gui/RoleHeader.h"

#include "apps/desk/Desk.h"
#include "apps/desk/templates/TemplateTexts.h"

#include <QComboBox>
#include <QSignalBlocker>

#include <algorithm>

namespace orvel::desk {

using levelling::ColumnRole;

RoleHeader::RoleHeader(int firstColumn, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent)
    , first(firstColumn)
{
    setDefaultAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setSectionsMovable(false);
    connect(this, &QHeaderView::sectionResized, this, &RoleHeader::place);
}

void RoleHeader::setRoles(const std::vector<ColumnRole>& roles)
{
    while (lists.size() < roles.size())
        lists.push_back(makeList(static_cast<int>(lists.size())));
    while (lists.size() > roles.size()) {
        lists.back()->deleteLater();
        lists.back()->hide();
        lists.pop_back();
    }
    const std::vector<ColumnRole>& all = levelling::getRoles();
    for (std::size_t column = 0; column < roles.size(); ++column) {
        const QSignalBlocker silence(lists[column]);
        lists[column]->setCurrentIndex(
            static_cast<int>(std::find(all.begin(), all.end(), roles[column]) - all.begin()));
    }
    place();
}

QSize RoleHeader::sizeHint() const
{
    QSize size = QHeaderView::sizeHint();
    if (!lists.empty())
        size.rheight() += lists.front()->sizeHint().height();
    return size;
}

void RoleHeader::updateGeometries()
{
    QHeaderView::updateGeometries();
    place();
}

QComboBox* RoleHeader::makeList(int column)
{
    auto* list = new QComboBox(viewport());
    list->setObjectName(QStringLiteral("role%1").arg(column));
    list->setAccessibleName(Desk::tr("Столбец %1: что в нём").arg(column + 1));
    for (const ColumnRole role : levelling::getRoles())
        list->addItem(templatetexts::describeRole(role));
    connect(list, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this, column](int index) {
        Q_EMIT roleChosen(column, levelling::getRoles()[static_cast<std::size_t>(index)]);
    });
    list->show();
    return list;
}

void RoleHeader::place()
{
    for (std::size_t column = 0; column < lists.size(); ++column) {
        const int section = first + static_cast<int>(column);
        if (section >= count())
            return;
        QComboBox* list = lists[column];
        const int listHeight = list->sizeHint().height();
        list->setGeometry(sectionViewportPosition(section), height() - listHeight, sectionSize(section),
                          listHeight);
    }
}

} // namespace orvel::desk

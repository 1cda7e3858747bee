#include "host/delegates/CItemDelegate.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QMetaProperty>
#include <QTextDocument>
#include <QToolTip>

#include <cmath>

namespace {

bool isNumber(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

} // namespace

CItemDelegate::CItemDelegate(QObject* parent) : QStyledItemDelegate(parent)
{}

CItemDelegate::~CItemDelegate() = default;

QVariant CItemDelegate::getValue(QWidget* editor) const
{
    return getEditorValue(editor);
}

QVariant CItemDelegate::getEditorValue(QWidget* editor) const
{
    if (editor == nullptr)
        return {};
    if (const auto* comboBox = qobject_cast<QComboBox*>(editor)) {
        const QVariant itemData = comboBox->currentData(Qt::UserRole);
        return itemData.isValid() ? itemData : comboBox->currentText();
    }
    return editor->metaObject()->userProperty().read(editor);
}

Qt::Alignment CItemDelegate::getDefaultAlign() const
{
    return Qt::AlignLeft | Qt::AlignVCenter;
}

double CItemDelegate::getEpsilon() const
{
    return 0.0;
}

bool CItemDelegate::isShowToolTip() const
{
    return true;
}

QString CItemDelegate::getToolTipText(const QModelIndex& index) const
{
    const QString ownText = index.data(Qt::ToolTipRole).toString();
    return ownText.isEmpty() ? displayText(index.data(Qt::DisplayRole), QLocale()) : ownText;
}

int CItemDelegate::getDataRole() const
{
    return Qt::EditRole;
}

void CItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QVariant value = index.data(getDataRole());
    if (auto* comboBox = qobject_cast<QComboBox*>(editor)) {
        const int itemIndex = comboBox->findData(value, Qt::UserRole);
        comboBox->setCurrentIndex(itemIndex >= 0 ? itemIndex : comboBox->findText(value.toString()));
        return;
    }
    const QMetaProperty userProperty = editor->metaObject()->userProperty();
    if (userProperty.isValid())
        userProperty.write(editor, value);
}

void CItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    const QVariant value = getValue(editor);
    if (value.isValid() && !isSameValue(value, index.data(getDataRole())))
        model->setData(index, value, getDataRole());
}

bool CItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index)
{
    if (event == nullptr || view == nullptr || event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString text = isShowToolTip() && index.isValid() ? getToolTipText(index) : QString();
    // Made rich text here, since a tool tip takes whatever looks like mark-up for mark-up.
    const QString html = text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
    QToolTip::showText(event->globalPos(), html, view->viewport(), option.rect);
    return !text.isEmpty();
}

void CItemDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (!index.data(Qt::TextAlignmentRole).isValid())
        option->displayAlignment = getDefaultAlign();
}

bool CItemDelegate::isSameValue(const QVariant& left, const QVariant& right) const
{
    if (isNumber(left) && isNumber(right) && getEpsilon() > 0.0)
        return std::abs(left.toDouble() - right.toDouble()) <= getEpsilon();
    return left == right;
}

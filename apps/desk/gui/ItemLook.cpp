#include "apps/desk/gui/ItemLook.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvel::desk {

namespace itemlook {

namespace {

// What WCAG 2 asks of a text (level AA).
constexpr double kLeastContrast = 4.5;
constexpr double kMostTint = 0.2;
constexpr double kMostGrey = 0.5;
constexpr double kTintStep = 0.05;

const QColor kErrorColor(0xd9, 0x36, 0x3e);
const QColor kWarningColor(0xe0, 0xa1, 0x00);

QColor mix(const QColor& base, const QColor& tint, double share)
{
    const auto part = [share](double ground, double over) { return ground + share * (over - ground); };
    return QColor::fromRgbF(part(base.redF(), tint.redF()), part(base.greenF(), tint.greenF()),
                            part(base.blueF(), tint.blueF()));
}

/// The brightness of a colour as WCAG 2 has it, from 0 to 1.
double getLuminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

bool isProblem(const std::optional<COVMessage::MessageType>& severity)
{
    return severity && *severity != COVMessage::Message;
}

/// As wide as the others, so that names stand below each other.
QIcon makeEmptyIcon()
{
    constexpr int size = 16;
    QPixmap image(size, size);
    image.fill(Qt::transparent);
    return QIcon(image);
}

} // namespace

QString nameSeverity(COVMessage::MessageType kind)
{
    if (kind == COVMessage::Error)
        return Desk::tr("ошибка");
    return kind == COVMessage::Warning ? Desk::tr("предупреждение") : Desk::tr("сообщение");
}

QColor getBackground(COVMessage::MessageType kind, const QPalette& palette)
{
    if (!isProblem(kind))
        return {};
    const QColor& base = palette.color(QPalette::Active, QPalette::Base);
    const QColor& text = palette.color(QPalette::Active, QPalette::Text);
    const QColor& tint = kind == COVMessage::Error ? kErrorColor : kWarningColor;
    double share = kMostTint;
    while (share > 0 && getContrast(mix(base, tint, share), text) < kLeastContrast)
        share -= kTintStep;
    return mix(base, tint, std::max(share, 0.0));
}

QColor getOffColor(const QPalette& palette)
{
    const QColor& base = palette.color(QPalette::Active, QPalette::Base);
    const QColor& text = palette.color(QPalette::Active, QPalette::Text);
    const std::array<QColor, 3> grounds = {base, getBackground(COVMessage::Error, palette),
                                           getBackground(COVMessage::Warning, palette)};
    const auto isReadable = [&grounds](const QColor& color) {
        return std::all_of(grounds.begin(), grounds.end(), [&color](const QColor& ground) {
            return getContrast(color, ground) >= kLeastContrast;
        });
    };
    double share = kMostGrey;
    while (share > 0 && !isReadable(mix(text, base, share)))
        share -= kTintStep;
    return mix(text, base, std::max(share, 0.0));
}

QColor getLinkColor(const QPalette& palette)
{
    const QColor& base = palette.color(QPalette::Active, QPalette::Base);
    const QColor& text = palette.color(QPalette::Active, QPalette::Text);
    const QColor& link = palette.color(QPalette::Active, QPalette::Link);
    double share = 0.0;
    while (share < 1.0 && getContrast(mix(link, text, share), base) < kLeastContrast)
        share += kTintStep;
    return mix(link, text, std::min(share, 1.0));
}

QString describeOff(const QString& reason)
{
    return (reason.isEmpty() ? Desk::tr("Отключена: в обработке не участвует")
                             : Desk::tr("Отключена: %1").arg(reason))
        .toHtmlEscaped();
}

double getContrast(const QColor& first, const QColor& second)
{
    constexpr double flare = 0.05;
    const auto [darker, brighter] = std::minmax({getLuminance(first), getLuminance(second)});
    return (brighter + flare) / (darker + flare);
}

QVector<int> getRoles()
{
    return {Qt::BackgroundRole, Qt::DecorationRole, Qt::AccessibleTextRole};
}

bool isAsked(int column, int role)
{
    if (column == itemcolumns::Name && (role == Qt::DecorationRole || role == Qt::AccessibleTextRole))
        return true;
    return role == Qt::BackgroundRole;
}

QVariant present(const QString& name, const std::optional<COVMessage::MessageType>& severity, int role)
{
    if (role == Qt::DecorationRole)
        return isProblem(severity) ? ProtocolTreeModel::getKindIcon(*severity) : makeEmptyIcon();
    if (role == Qt::AccessibleTextRole)
        return isProblem(severity) ? QStringLiteral("%1, %2").arg(name, nameSeverity(*severity)) : name;
    return isProblem(severity) ? getBackground(*severity, QGuiApplication::palette()) : QVariant();
}

} // namespace itemlook

} // namespace orvel::desk

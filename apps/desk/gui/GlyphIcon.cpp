#include "apps/desk/gui/GlyphIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

/// Resources of a static library are there once this was called; for that, it must not be in a namespace.
static void loadIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace orvel::desk {

namespace {

QString getFileName(Glyph glyph)
{
    switch (glyph) {
    case Glyph::New:
        return QStringLiteral("new");
    case Glyph::Open:
        return QStringLiteral("open");
    case Glyph::Save:
        return QStringLiteral("save");
    case Glyph::Import:
        return QStringLiteral("import");
    case Glyph::Export:
        return QStringLiteral("export");
    case Glyph::Compile:
        return QStringLiteral("compile");
    case Glyph::Adjust:
        return QStringLiteral("adjust");
    case Glyph::L1Analysis:
        return QStringLiteral("l1-analysis");
    case Glyph::Protocol:
        return QStringLiteral("protocol");
    case Glyph::Report:
        return QStringLiteral("report");
    case Glyph::Search:
        return QStringLiteral("search");
    case Glyph::Info:
        return QStringLiteral("info");
    case Glyph::Help:
        break;
    }
    return QStringLiteral("help");
}

/// The drawing at that size; one with a tint shows nothing but that colour.
QPixmap draw(const QString& name, const QSize& size, const QColor& tint)
{
    const QString key = QStringLiteral("%1 %2x%3 %4")
                            .arg(name, QString::number(size.width()), QString::number(size.height()),
                                 tint.isValid() ? tint.name(QColor::HexArgb) : QString());
    QPixmap image;
    if (QPixmapCache::find(key, &image))
        return image;
    image = QPixmap(size);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(name)).render(&painter);
    if (tint.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), tint);
    }
    painter.end();
    QPixmapCache::insert(key, image);
    return image;
}

/// Draws an icon afresh at every size and in every palette.
class SvgIconEngine : public QIconEngine
{
public:
    SvgIconEngine(const QString& fileName, bool takesPalette) : name(fileName), isTinted(takesPalette) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        return draw(name, size, isTinted ? getTint(mode) : QColor());
    }

    QIconEngine* clone() const override { return new SvgIconEngine(*this); }

private:
    static QColor getTint(QIcon::Mode mode)
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
        return QGuiApplication::palette().color(group, role);
    }

    QString name;
    bool isTinted;
};

} // namespace

QIcon makeIcon(Glyph glyph)
{
    loadIcons();
    return QIcon(new SvgIconEngine(getFileName(glyph), true));
}

QIcon makeApplicationIcon()
{
    loadIcons();
    return QIcon(new SvgIconEngine(QStringLiteral("application"), false));
}

} // namespace orvel::desk

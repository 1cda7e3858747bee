#include "apps/desk/gui/GlyphIcon.h"

#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QPixmapCache>
#include <QTest>

using namespace orvel::desk;

/// Icons from drawings, in the colours of the palette.
class TestGlyphIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyGlyphHasItsDrawing();
    void glyphTakesColourOfPalette_data();
    void glyphTakesColourOfPalette();
    void applicationIconKeepsItsColours();
};

namespace {

QImage draw(const QIcon& icon, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(48, 48), mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The colours of the pixels that are opaque.
QSet<QRgb> findColours(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255)
                colours.insert(image.pixel(x, y));
        }
    }
    return colours;
}

} // namespace

void TestGlyphIcon::everyGlyphHasItsDrawing()
{
    QList<QImage> seen;
    for (int glyph = 0; glyph <= static_cast<int>(Glyph::Help); ++glyph) {
        const QImage image = draw(makeIcon(static_cast<Glyph>(glyph)));
        QCOMPARE(image.size(), QSize(48, 48));
        QVERIFY2(!findColours(image).isEmpty(), qPrintable(QString::number(glyph)));
        QVERIFY2(!seen.contains(image), qPrintable(QString::number(glyph)));
        seen.append(image);
    }
}

void TestGlyphIcon::glyphTakesColourOfPalette_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("normal") << int(QIcon::Normal) << QColor(Qt::red);
    QTest::newRow("disabled") << int(QIcon::Disabled) << QColor(Qt::green);
    QTest::newRow("selected") << int(QIcon::Selected) << QColor(Qt::blue);
}

void TestGlyphIcon::glyphTakesColourOfPalette()
{
    QFETCH(int, mode);
    QFETCH(QColor, colour);
    const QPalette before = QGuiApplication::palette();
    const QIcon icon = makeIcon(Glyph::Report);
    // Drawn once in other colours.
    draw(icon, static_cast<QIcon::Mode>(mode));
    QPalette palette = before;
    palette.setColor(QPalette::Active, QPalette::WindowText, Qt::red);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, Qt::green);
    palette.setColor(QPalette::Active, QPalette::HighlightedText, Qt::blue);
    QGuiApplication::setPalette(palette);
    const QSet<QRgb> colours = findColours(draw(icon, static_cast<QIcon::Mode>(mode)));
    QGuiApplication::setPalette(before);
    QCOMPARE(colours, QSet<QRgb>{colour.rgb()});
}

void TestGlyphIcon::applicationIconKeepsItsColours()
{
    const QSet<QRgb> colours = findColours(draw(makeApplicationIcon()));
    QVERIFY(colours.contains(qRgb(0x1f, 0x5f, 0x8b)));
    QVERIFY(colours.contains(qRgb(0xff, 0xff, 0xff)));
}

QTEST_MAIN(TestGlyphIcon)
#include "tst_glyphicon.moc"

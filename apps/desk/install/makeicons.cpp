// Draws an SVG icon as PNG files in the sizes of an icon theme: makeicons FILE.svg FOLDER, where FOLDER gets
// 16x16/apps/FILE.png and so on.

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QString source = QCoreApplication::arguments().value(1);
    const QDir theme(QCoreApplication::arguments().value(2));
    QSvgRenderer renderer(source);
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();

        const QString folder = theme.filePath(QStringLiteral("%1x%1/apps").arg(size));
        const QString target = QStringLiteral("%1/%2.png").arg(folder, QFileInfo(source).completeBaseName());
        if (!renderer.isValid() || !QDir().mkpath(folder) || !image.save(target)) {
            std::fprintf(stderr, "makeicons: cannot make %s from %s\n", qUtf8Printable(target),
                         qUtf8Printable(source));
            return 1;
        }
    }
    return 0;
}

// norvanebar-render-icon SVG SIDE PNG: draws the SVG picture into a square PNG of SIDE pixels, so the
// application icon's bitmaps of every size come from its one SVG at build time.
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    bool isNumber = false;
    const int side = arguments.size() == 4 ? arguments[2].toInt(&isNumber) : 0;
    if (!isNumber || side <= 0) {
        std::fputs("usage: norvanebar-render-icon SVG SIDE PNG\n", stderr);
        return 2;
    }
    QSvgRenderer renderer(arguments[1]);
    if (!renderer.isValid()) {
        std::fprintf(stderr, "norvanebar-render-icon: cannot read %s\n", qPrintable(arguments[1]));
        return 1;
    }
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, side, side));
    painter.end();
    if (!image.save(arguments[3], "PNG")) {
        std::fprintf(stderr, "norvanebar-render-icon: cannot write %s\n", qPrintable(arguments[3]));
        return 1;
    }
    return 0;
}

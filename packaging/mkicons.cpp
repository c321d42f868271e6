// Renders the program's scalable icon into the PNG sizes of the hicolor icon theme:
// mkicons <icon.svg> <output folder> <size>...  writes <output folder>/<size>.png.
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 4) {
        std::fprintf(stderr, "usage: mkicons <icon.svg> <output folder> <size>...\n");
        return 2;
    }
    QSvgRenderer renderer(args.at(1));
    if (!renderer.isValid()) {
        std::fprintf(stderr, "mkicons: cannot read %s\n", qPrintable(args.at(1)));
        return 1;
    }
    for (const QString& sizeText : args.mid(3)) {
        const int size = sizeText.toInt();
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        const QString file = args.at(2) + QLatin1Char('/') + sizeText + QStringLiteral(".png");
        if (size <= 0 || !image.save(file)) {
            std::fprintf(stderr, "mkicons: cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}

// zeb_render_icon IN.svg OUT.png SIZE...: the icon's PNG sizes for the icon theme, drawn from
// its SVG at build time, so the pictures never drift from the drawing. With several sizes OUT
// holds "%1", replaced by each size.

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.size() < 3) {
        std::fputs("usage: zeb_render_icon IN.svg OUT.png SIZE...\n", stderr);
        return 2;
    }
    QSvgRenderer svg(args[0]);
    if (!svg.isValid()) {
        std::fprintf(stderr, "zeb_render_icon: cannot read %s\n", qPrintable(args[0]));
        return 1;
    }
    for (qsizetype i = 2; i < args.size(); ++i) {
        bool ok = false;
        const int size = args[i].toInt(&ok);
        if (!ok || size < 8 || size > 1024) {
            std::fprintf(stderr, "zeb_render_icon: bad size %s\n", qPrintable(args[i]));
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        svg.render(&painter);
        painter.end();
        const QString out = args[1].contains(QLatin1String("%1")) ? args[1].arg(size) : args[1];
        if (!image.save(out, "PNG")) {
            std::fprintf(stderr, "zeb_render_icon: cannot write %s\n", qPrintable(out));
            return 1;
        }
    }
    return 0;
}

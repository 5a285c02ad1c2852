// Build-time helper: renders an SVG picture to square PNG files, one per size.
// render_icon INPUT.svg OUTPUT_FOLDER SIZE... writes OUTPUT_FOLDER/SIZExSIZE/apps/NAME.png.

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

int main(int argc, char** argv)
{
    // No window system is needed to paint into an image.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    QTextStream err(stderr);
    if (args.size() < 4) {
        err << "usage: render_icon INPUT.svg OUTPUT_FOLDER SIZE...\n";
        return 2;
    }
    QSvgRenderer svg(args.at(1));
    if (!svg.isValid()) {
        err << "render_icon: cannot read " << args.at(1) << '\n';
        return 1;
    }
    const QString name = QFileInfo(args.at(1)).completeBaseName() + QStringLiteral(".png");
    for (int i = 3; i < args.size(); ++i) {
        bool ok = false;
        const int size = args.at(i).toInt(&ok);
        if (!ok || size <= 0) {
            err << "render_icon: not a size: " << args.at(i) << '\n';
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        // Keep the aspect of the drawing, centred in the square.
        QSizeF drawn = svg.defaultSize();
        drawn.scale(size, size, Qt::KeepAspectRatio);
        svg.render(&painter, QRectF((size - drawn.width()) / 2, (size - drawn.height()) / 2,
                                    drawn.width(), drawn.height()));
        painter.end();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(args.at(2)).arg(size);
        const QString file = folder + u'/' + name;
        if (!QDir().mkpath(folder) || !image.save(file, "PNG")) {
            err << "render_icon: cannot write " << file << '\n';
            return 1;
        }
    }
    return 0;
}

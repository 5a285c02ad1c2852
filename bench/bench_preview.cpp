// Preview of a large photograph in an 800 x 600 pane against a full decode of the same file.
// Prints both times and their ratio; the goal is a preview at least four times faster.
//
//   bench_preview [PICTURE] [RUNS]
//
// Without a picture, two 6000 x 4000 (24-megapixel) JPEGs are made in a temporary folder: a
// detailed one, as large as a photograph of that size, and a smooth one (sky, out-of-focus
// background), which decodes faster.

#include "imaging/PictureLoader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QLinearGradient>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

QString makePhotograph(const QTemporaryDir& dir, bool detailed)
{
    QImage image(6000, 4000, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, 4000);
    sky.setColorAt(0, QColor(40, 90, 200));
    sky.setColorAt(1, QColor(250, 200, 120));
    painter.fillRect(image.rect(), sky);
    // Detail, so the file is about as large as a photograph of that size (2 to 3 bits a pixel).
    for (int i = 0; detailed && i < 1500; ++i) {
        painter.setPen(QColor::fromHsv((i * 37) % 360, 160, 200));
        painter.drawLine(int(i * 7919LL % 6000), int(i * 104729LL % 4000),
                         int(i * 1299709LL % 6000), int(i * 15485863LL % 4000));
    }
    painter.end();
    const QString path =
        dir.filePath(detailed ? QStringLiteral("detailed.jpg") : QStringLiteral("smooth.jpg"));
    image.save(path, "JPEG", 90);
    return path;
}

double bestOf(int runs, const std::function<void()>& work)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        work();
        best = std::min(best, clock.nsecsElapsed() / 1e6);
    }
    return best;
}

void compare(const QString& path, int runs)
{
    QSize previewSize;
    const double preview = bestOf(
        runs, [&] { previewSize = PictureLoader::Load(path, QSize(800, 600)).image.size(); });
    QSize fullSize;
    const double full = bestOf(runs, [&] {
        QImageReader reader(path);
        reader.setAutoTransform(true);
        fullSize = reader.read().size();
    });

    const double bitsPerPixel =
        QFileInfo(path).size() * 8.0 / (qint64(fullSize.width()) * fullSize.height());
    std::printf("picture            %s (%dx%d, %.1f bits a pixel)\n", qPrintable(path),
                fullSize.width(), fullSize.height(), bitsPerPixel);
    std::printf("preview 800x600    %8.1f ms  -> %dx%d\n", preview, previewSize.width(),
                previewSize.height());
    std::printf("full decode        %8.1f ms\n", full);
    std::printf("ratio full/preview %8.2fx (goal: at least 4x)\n", full / preview);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString given = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const int runs = argc > 2 ? std::max(1, atoi(argv[2])) : 5;
    const QStringList paths =
        given.isEmpty() ? QStringList{makePhotograph(dir, true), makePhotograph(dir, false)}
                        : QStringList{given};
    for (const QString& path : paths)
        compare(path, runs);
    return 0;
}

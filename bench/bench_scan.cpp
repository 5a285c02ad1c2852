// The gallery's scan and sort, timed for bench/scan_vs_find.sh.
//   bench_scan make FOLDER COUNT   makes COUNT small .jpg files of varied sizes and dates
//   bench_scan run FOLDER RUNS     prints "sortation N BEST_MS COUNT" for each sort order
#include "gallery/FilesFound.h"
#include "gallery/PictureScan.h"
#include "gallery/SortKeys.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

namespace {

int make(const QString& folder, int count)
{
    const QByteArray bytes(499, 'x');
    for (int i = 0; i < count; ++i) {
        QFile file(QDir(folder).filePath(QStringLiteral("img%1.jpg").arg(i, 6, 10, QChar(u'0'))));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes.constData(), i % 500) < 0)
            return 1;
        // An hour apart, so the date keys span years.
        file.setFileTime(QDateTime::fromSecsSinceEpoch(946684800 + qint64(i) * 3607),
                         QFileDevice::FileModificationTime);
    }
    return 0;
}

void run(const QString& folder, int runs)
{
    const QStringList patterns = PictureScan::patterns(true);
    for (int sortation = SortKeys::ByName; sortation <= SortKeys::ByDate; ++sortation) {
        qint64 best = -1;
        size_t count = 0;
        for (int i = 0; i < runs; ++i) {
            QElapsedTimer timer;
            timer.start();
            FilesFound files;
            QString path = folder;
            files.SetPath(path);
            files.AddAllFiles(patterns);
            count = SortKeys::sortedOrder(files, sortation).size();
            const qint64 elapsed = timer.nsecsElapsed();
            if (best < 0 || elapsed < best)
                best = elapsed;
        }
        std::printf("sortation %d %.1f %zu\n", sortation, double(best) / 1e6, count);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 4 && args[1] == QStringLiteral("make"))
        return make(args[2], args[3].toInt());
    if (args.size() == 4 && args[1] == QStringLiteral("run")) {
        run(args[2], args[3].toInt());
        return 0;
    }
    std::fprintf(stderr, "usage: bench_scan make FOLDER COUNT | bench_scan run FOLDER RUNS\n");
    return 2;
}

#include "app/AppFixtures.h"
#include "TestWorld.h"

#include "gallery/ThumbCache.h"
#include "gallery/ThumbPipeline.h"
#include "imaging/PictureLoader.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <map>

namespace {

using ThumbCache::Flavour;

FileFacts factsOf(const QString& path)
{
    const QFileInfo info(path);
    return {info.size(), info.lastModified().toSecsSinceEpoch()};
}

void setMTime(const QString& path, qint64 secs)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(secs), QFile::FileModificationTime));
}

// New bytes of the same length, the date left as it was: only a decode could tell.
void replaceContent(const QString& path, const QByteArray& content)
{
    const qint64 mtime = factsOf(path).modifiedSecs;
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(file.size(), content.size());
    file.write(content);
    file.close();
    setMTime(path, mtime);
}

// A thumbnail as Qt-based file managers write it: QImage text, which Qt stores as zTXt.
void writeForeignThumbnail(const QString& target, const QByteArray& uri, qint64 mtime)
{
    QImage image(128, 96, QImage::Format_RGB32);
    image.fill(Qt::green);
    image.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(uri));
    image.setText(QStringLiteral("Thumb::MTime"), QString::number(mtime));
    QDir().mkpath(QFileInfo(target).path());
    QVERIFY(image.save(target, "png"));
}

// One pass in a pipeline of its own, as a fresh start of the program would run it.
QList<QImage> runPass(const QStringList& files, const QSize& box)
{
    ThumbPipeline pipeline;
    QSignalSpy done(&pipeline, &ThumbPipeline::Done);
    std::vector<ThumbJob> jobs;
    for (const QString& file : files)
        jobs.push_back({file});
    pipeline.Start(std::move(jobs), box);
    if (!done.wait(60000))
        return {};
    QList<QImage> pictures;
    for (int i = 0; i < pipeline.Count(); ++i)
        pictures.append(pipeline.Picture(i));
    return pictures;
}

bool near(const QImage& image, const QColor& colour)
{
    const QColor seen = image.pixelColor(image.width() / 2, image.height() / 2);
    return qAbs(seen.red() - colour.red()) + qAbs(seen.green() - colour.green()) +
               qAbs(seen.blue() - colour.blue()) <
           40;
}

std::vector<ThumbJob> jobsIn(const QString& folder, int count)
{
    std::vector<ThumbJob> jobs;
    for (int i = 0; i < count; ++i) {
        const QString path = folder + QStringLiteral("/p%1.jpg").arg(i, 2, 10, QChar(u'0'));
        if (!QFile::exists(path))
            MakePicture(path, {400, 300}, QColor::fromHsv(i * 11 % 360, 200, 200));
        // Half the entries leave the stat to the worker.
        const FileFacts facts = factsOf(path);
        jobs.push_back(i % 2 ? ThumbJob{path} : ThumbJob{path, facts.size, facts.modifiedSecs});
    }
    return jobs;
}

const QSize Box(78, 78);

} // namespace

class tst_ThumbCache : public QObject
{
    Q_OBJECT

    QString world(const QString& relative) const
    {
        return property("worldPath").toString() + u'/' + relative;
    }

private Q_SLOTS:
    void glibSpelling_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("uri");
        QTest::newRow("freedesktop.org example")
            << "/home/jens/photos/me.png" << QByteArray("file:///home/jens/photos/me.png");
        QTest::newRow("brackets and semicolon")
            << "/photos/x[1];2.jpg" << QByteArray("file:///photos/x%5B1%5D%3B2.jpg");
        QTest::newRow("hash, percent, question mark")
            << "/photos/#1 100%?.jpg" << QByteArray("file:///photos/%231%20100%25%3F.jpg");
        QTest::newRow("non-ASCII") << QString::fromUtf8("/photos/Été/ü.jpg")
                                   << QByteArray("file:///photos/%C3%89t%C3%A9/%C3%BC.jpg");
    }

    void glibSpelling()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, uri);
        QCOMPARE(ThumbCache::fileUri(path), uri);
        const QString name =
            QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex() + QStringLiteral(".png");
        QCOMPARE(ThumbCache::thumbnailPath(path, Flavour::Large),
                 ThumbCache::root() + QStringLiteral("/large/") + name);
        if (path.endsWith(u"me.png"))
            QCOMPARE(name, QStringLiteral("c6ee772d9e49320e97ec29a7eb5b1697.png"));
    }

    void writtenThumbnail_data()
    {
        QTest::addColumn<QSize>("natural");
        QTest::addColumn<int>("box");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QSize>("stored");
        QTest::newRow("photo, small cell") << QSize(1600, 1200) << 78 << "normal" << QSize(128, 96);
        QTest::newRow("small picture kept") << QSize(60, 40) << 78 << "normal" << QSize(60, 40);
        QTest::newRow("large cell") << QSize(1600, 1200) << 200 << "large" << QSize(256, 192);
        QTest::newRow("huge cell") << QSize(1600, 1200) << 300 << "x-large" << QSize(512, 384);
    }

    void writtenThumbnail()
    {
        QFETCH(QSize, natural);
        QFETCH(int, box);
        QFETCH(QString, folder);
        QFETCH(QSize, stored);
        const QString file =
            MakePicture(world(QStringLiteral("written/%1 %2.jpg").arg(box).arg(natural.width())),
                        natural, Qt::red);
        const QList<QImage> pictures = runPass({file}, {box, box});
        QCOMPARE(pictures.size(), 1);
        QCOMPARE(pictures[0].size(), PictureLoader::FitSize(natural, {box, box}, false));

        const QString thumbnail = ThumbCache::thumbnailPath(file, ThumbCache::flavourFor(box));
        QCOMPARE(QFileInfo(thumbnail).path(), ThumbCache::root() + u'/' + folder);
        QCOMPARE(QImage(thumbnail).size(), stored);
        const auto privateFolder = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                   QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
        QCOMPARE(QFileInfo(ThumbCache::root()).permissions(), privateFolder);
        QCOMPARE(QFileInfo(QFileInfo(thumbnail).path()).permissions(), privateFolder);
        QCOMPARE(QFileInfo(thumbnail).permissions(),
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);

        // GLib reads plain tEXt before the image data, with the keys exactly so; libpng drops
        // a text chunk whose CRC is wrong.
        const FileFacts facts = factsOf(file);
        const std::map<QString, QByteArray> expected{
            {"Thumb::URI", ThumbCache::fileUri(file)},
            {"Thumb::MTime", QByteArray::number(facts.modifiedSecs)},
            {"Thumb::Size", QByteArray::number(facts.size)},
            {"Software", "Lumbra"},
            {"Thumb::Image::Width", QByteArray::number(natural.width())},
            {"Thumb::Image::Height", QByteArray::number(natural.height())}};
        const QByteArray png = ReadFile(thumbnail);
        QVERIFY(!png.contains("zTXt") && !png.contains("iTXt"));
        QCOMPARE(QImage(thumbnail).textKeys().size(), int(expected.size()));
        for (const auto& [key, value] : expected) {
            QCOMPARE(QImage(thumbnail).text(key).toUtf8(), value);
            QVERIFY(png.indexOf("tEXt" + key.toLatin1() + '\0') < png.indexOf("IDAT"));
        }
    }

    void diskCacheDecides_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QColor>("shown"); // invalid: no thumbnail
        QTest::newRow("fresh thumbnail used, picture not decoded") << "fresh" << QColor(Qt::red);
        QTest::newRow("changed file made again") << "changed" << QColor(Qt::blue);
        QTest::newRow("thumbnail of an older file ignored") << "stale" << QColor(Qt::red);
        QTest::newRow("thumbnail under the QUrl spelling used") << "qt" << QColor(Qt::green);
        QTest::newRow("broken file not tried again") << "broken" << QColor();
        QTest::newRow("broken file tried again once changed") << "mended" << QColor(Qt::red);
    }

    void diskCacheDecides()
    {
        QFETCH(QString, scenario);
        QFETCH(QColor, shown);
        // Brackets: GLib and QUrl spell the name differently.
        const QString file =
            MakePicture(world(QStringLiteral("decides/%1 [1].jpg").arg(scenario)), {320, 240}, Qt::red);
        const QByteArray good = ReadFile(file);
        const qint64 mtime = factsOf(file).modifiedSecs;
        const QString glibName = ThumbCache::thumbnailPath(file, Flavour::Normal);

        if (scenario == "fresh") {
            QVERIFY(near(runPass({file}, Box).value(0), Qt::red));
            replaceContent(file, QByteArray(good.size(), '\0'));
        } else if (scenario == "changed") {
            QVERIFY(near(runPass({file}, Box).value(0), Qt::red));
            MakePicture(file, {320, 240}, Qt::blue);
            setMTime(file, mtime + 10);
        } else if (scenario == "stale") {
            writeForeignThumbnail(glibName, ThumbCache::fileUri(file), mtime - 10);
        } else if (scenario == "qt") {
            const QByteArray qtUri = QUrl::fromLocalFile(file).toEncoded();
            QVERIFY(qtUri != ThumbCache::fileUri(file));
            writeForeignThumbnail(
                QFileInfo(glibName).path() + u'/' +
                    QCryptographicHash::hash(qtUri, QCryptographicHash::Md5).toHex() + ".png",
                qtUri, mtime);
        } else {
            replaceContent(file, QByteArray(good.size(), '\0'));
            QVERIFY(runPass({file}, Box).value(0).isNull());
            QVERIFY(ThumbCache::hasFailure(file, factsOf(file)));
            QCOMPARE(QImage(ThumbCache::failurePath(file)).size(), QSize(1, 1));
            replaceContent(file, good);
            if (scenario == "mended")
                setMTime(file, mtime + 10);
        }

        const QImage picture = runPass({file}, Box).value(0);
        QCOMPARE(picture.isNull(), !shown.isValid());
        if (shown.isValid()) {
            QVERIFY(near(picture, shown));
            // Whatever was shown is what the cache now holds for the file as it is.
            QVERIFY(near(ThumbCache::read(file, factsOf(file), Box).image, shown));
        }
    }

    void pass()
    {
        ThumbPipeline pipeline;
        const std::vector<ThumbJob> jobs = jobsIn(world(QStringLiteral("pass")), 30);
        const int visibleFirst = qMax(1, 30 - QThread::idealThreadCount() - 3);
        QSignalSpy made(&pipeline, &ThumbPipeline::Made);
        QSignalSpy progress(&pipeline, &ThumbPipeline::Progress);
        QSignalSpy done(&pipeline, &ThumbPipeline::Done);
        // The first thumbnails the workers take are the visible ones, so the first to arrive is.
        pipeline.SetVisible(visibleFirst, 29);
        pipeline.Start(jobs, Box);
        QVERIFY(done.wait(60000));
        QCOMPARE(done.size(), 1);
        QCOMPARE(done[0][0].toBool(), false);
        QVERIFY(made.value(0).value(0).toInt() >= visibleFirst);
        QCOMPARE(made.size(), 30);
        QCOMPARE(progress.last(), (QList<QVariant>{30, 30}));
        for (int i = 0; i < 30; ++i)
            QCOMPARE(pipeline.Picture(i).size(), QSize(78, 58));
    }

    void cancelMidway()
    {
        ThumbPipeline pipeline;
        const std::vector<ThumbJob> jobs = jobsIn(world(QStringLiteral("cancel")), 30);
        QSignalSpy made(&pipeline, &ThumbPipeline::Made);
        QSignalSpy done(&pipeline, &ThumbPipeline::Done);
        connect(&pipeline, &ThumbPipeline::Made, &pipeline, &ThumbPipeline::Cancel);
        pipeline.Start(jobs, Box);
        QVERIFY(done.wait(60000));
        QCOMPARE(done[0][0].toBool(), true);
        const int finished = pipeline.Finished();
        QVERIFY(finished < pipeline.Count());
        // Thumbnails the workers were on still arrive, into memory only.
        QTest::qWait(500);
        QCOMPARE(made.size(), 1);
        QCOMPARE(done.size(), 1);
        QCOMPARE(pipeline.Finished(), finished);
    }

    void restartReusesMemory()
    {
        ThumbPipeline pipeline;
        std::vector<ThumbJob> jobs = jobsIn(world(QStringLiteral("restart")), 12);
        // As a scan gives them: with their facts, so memory answers without a stat.
        for (ThumbJob& job : jobs)
            job = {job.path, factsOf(job.path).size, factsOf(job.path).modifiedSecs};
        QSignalSpy done(&pipeline, &ThumbPipeline::Done);
        pipeline.Start(jobs, Box);
        QVERIFY(done.wait(60000));
        const QImage first = pipeline.Picture(0);

        // A re-sort: the same files in another order, all still in memory.
        std::reverse(jobs.begin(), jobs.end());
        QSignalSpy made(&pipeline, &ThumbPipeline::Made);
        pipeline.Start(jobs, Box);
        QCOMPARE(pipeline.Finished(), pipeline.Count());
        QCOMPARE(pipeline.Picture(11), first);
        QVERIFY(done.wait(60000));
        QCOMPARE(made.size(), 0);

        // Room for three thumbnails: the oldest is pushed out, then made again when asked for.
        pipeline.SetMemoryBudget(3 * (first.sizeInBytes() + 1024));
        QVERIFY(pipeline.Picture(0).isNull());
        QVERIFY(made.wait(60000));
        QCOMPARE(made.last().value(0).toInt(), 0);
        QCOMPARE(pipeline.Picture(0).size(), QSize(78, 58));
    }
};

LUMBRA_TEST_MAIN(tst_ThumbCache)
#include "tst_thumbcache.moc"

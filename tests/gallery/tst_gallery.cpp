#include "app/DialogAnswers.h"
#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/Utilities.h"
#include "controls/ucSideBar.h"
#include "gallery/frmThumbnails.h"
#include "gallery/GalleryLayout.h"
#include "gallery/ThumbGrid.h"
#include "gallery/ThumbPipeline.h"
#include "gallery/ucCoolProg.h"
#include "viewing/PictureOpener.h"
#include "viewing/ucImgPreview.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>

#include <memory>

namespace {

const QString Section = QStringLiteral("frmThumbnails");

// Types answer into the next input dialog as soon as it is up and keeps what it offered.
void answerInput(const QString& answer, QString* offered)
{
    auto* poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, answer, offered] {
        auto* input = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        if (!input)
            return;
        poll->stop();
        poll->deleteLater();
        *offered = input->textValue();
        input->setTextValue(answer);
        input->accept();
    });
    poll->start(5);
}

// A picture of the given type with padding after its data, so its size is what a row wants.
void makePicture(const QString& path, const char* format, int padBytes, const QDateTime& modified,
                 const QSize& size = {24, 16})
{
    if (qstrcmp(format, "GIF") == 0) {
        // Qt reads GIF but cannot write it: take the bundled sample.
        QVERIFY(
            QFile::copy(QStringLiteral(LUMBRA_SOURCE_DIR "/resources/samples/balloon.gif"), path));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    } else {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor::fromHsv(int(qHash(path) % 360), 200, 220));
        QVERIFY(image.save(path, format));
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    file.write(QByteArray(padBytes, '\0'));
    QVERIFY(file.flush());
    QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
}

QDateTime noon(int year, int month, int day)
{
    return QDateTime(QDate(year, month, day), QTime(12, 0));
}

} // namespace

class tst_Gallery : public QObject
{
    Q_OBJECT

    std::unique_ptr<ucCoolProg> m_strip;
    int m_folders = 0;

    QString freshFolder()
    {
        const QString folder =
            property("worldPath").toString() + QStringLiteral("/gallery%1/").arg(++m_folders);
        QDir().mkpath(folder);
        return folder;
    }

    // Four pictures whose name, type, size and date orders all differ (the GIF is 9,176 bytes).
    QString fourPictures()
    {
        const QString folder = freshFolder();
        makePicture(folder + "a.png", "PNG", 10'000, noon(2022, 1, 15));
        makePicture(folder + "b.jpg", "JPEG", 30'000, noon(2021, 3, 1));
        makePicture(folder + "c.bmp", "BMP", 20'000, noon(2019, 6, 10));
        makePicture(folder + "d.gif", "GIF", 0, noon(2020, 12, 31));
        return folder;
    }

    static QString status() { return Utilities::StatusStrip()->Panel(1)->text(); }

    static void waitForPass(frmThumbnails& gallery)
    {
        QTRY_VERIFY_WITH_TIMEOUT(!gallery.PassRunning(), 20000);
        QCoreApplication::processEvents();
    }

    // A gallery showing folder, on screen so clicks land.
    std::unique_ptr<frmThumbnails> galleryOn(const QString& folder)
    {
        auto gallery = std::make_unique<frmThumbnails>();
        gallery->resize(640, 480);
        gallery->show();
        if (!QTest::qWaitForWindowExposed(gallery.get()))
            return {};
        gallery->ShowFolder(folder);
        if (!QTest::qWaitFor([&] { return !gallery->PassRunning(); }, 20000))
            return {};
        QTest::qWait(30);
        return gallery;
    }

    static void click(frmThumbnails& gallery, int index, Qt::KeyboardModifiers modifiers = {})
    {
        ThumbGrid* grid = gallery.picFrame();
        QTest::mouseClick(grid, Qt::LeftButton, modifiers,
                          grid->cellRect(index).center().toPoint());
        // Clicks further apart than the double-click timer are separate clicks.
        QTest::qWait(30);
    }

    static QList<int> checkedCells(frmThumbnails& gallery)
    {
        QList<int> checked;
        for (int i = 0; i < gallery.picFrame()->count(); ++i)
            if (gallery.picFrame()->isChecked(i))
                checked.append(i);
        return checked;
    }

private slots:
    void initTestCase()
    {
        m_strip = std::make_unique<ucCoolProg>();
        Utilities::SetStatusStrip(m_strip.get());
        Globals().Options.fill(0);
        Globals().Options[11] = 1;
    }

    void cleanupTestCase() { Utilities::SetStatusStrip(nullptr); }

    void init()
    {
        Globals().Options[3] = 0;
        Globals().Options[13] = 0;
        Globals().Cancel = false;
        SettingsStore::global().write(Keys::Explain_Delete, QStringLiteral("TRUE"));
        SettingsStore::global().write(Keys::Sortation.in(Section), 0);
    }

    void loadsInStoredOrder_data()
    {
        QTest::addColumn<int>("sortation");
        QTest::addColumn<bool>("captions");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("name") << 0 << false << QStringList{"a.png", "b.jpg", "c.bmp", "d.gif"};
        QTest::newRow("type") << 1 << true << QStringList{"c.bmp", "d.gif", "b.jpg", "a.png"};
        QTest::newRow("size") << 2 << false << QStringList{"d.gif", "a.png", "c.bmp", "b.jpg"};
        // The date key is month first, so January 2022 comes before March 2021.
        QTest::newRow("date") << 3 << true << QStringList{"a.png", "b.jpg", "c.bmp", "d.gif"};
        QTest::newRow("out of range sorts by name")
            << 7 << false << QStringList{"a.png", "b.jpg", "c.bmp", "d.gif"};
    }

    void loadsInStoredOrder()
    {
        QFETCH(int, sortation);
        QFETCH(bool, captions);
        QFETCH(QStringList, order);
        SettingsStore::global().write(Keys::Sortation.in(Section), sortation);
        Globals().Options[13] = captions ? 1 : 0;
        const QString folder = fourPictures();

        auto gallery = galleryOn(folder);
        QVERIFY(gallery);
        QCOMPARE(gallery->PictureCount(), 4);
        QVERIFY(!m_strip->progCool->isVisible());
        QCOMPARE(SettingsStore::global().read(Section, Keys::BrowsePath.key), folder);
        for (int i = 0; i < order.size(); ++i) {
            QCOMPARE(Utilities::FileNameOf(gallery->FileOf(i)), order[i]);
            QCOMPARE(gallery->picFrame()->caption(i), captions ? order[i].chopped(4) : QString());
            QVERIFY2(!gallery->pipeline()->Picture(i).isNull(), qPrintable(order[i]));
        }

        // Another order rebuilds from the same list: a picture added since stays unseen.
        makePicture(folder + "e.png", "PNG", 0, noon(2020, 1, 1));
        gallery->SortItems(0);
        waitForPass(*gallery);
        QCOMPARE(gallery->PictureCount(), 4);
        QCOMPARE(Utilities::FileNameOf(gallery->FileOf(0)), QStringLiteral("a.png"));
        QCOMPARE(SettingsStore::global().read(Section, Keys::Sortation.key), QStringLiteral("0"));
    }

    void showsNoImages_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("empty folder") << true;
        QTest::newRow("missing folder") << false;
    }

    void showsNoImages()
    {
        QFETCH(bool, exists);
        QString folder = freshFolder();
        QFile notAPicture(folder + "notes.txt");
        QVERIFY(notAPicture.open(QIODevice::WriteOnly));
        if (!exists)
            folder += QStringLiteral("gone/");

        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        click(*gallery, 1);
        gallery->ShowFolder(folder);
        waitForPass(*gallery);
        QCOMPARE(gallery->PictureCount(), 0);
        QVERIFY(gallery->ucPreview()->FileName().isEmpty());
        QCOMPARE(gallery->picFrame()->count(), 0);
        QVERIFY(!gallery->sbSlide()->isEnabled());
    }

    void cancelKeepsTheFullCount()
    {
        const QString folder = freshFolder();
        for (int i = 0; i < 80; ++i)
            makePicture(folder + QStringLiteral("p%1.jpg").arg(i, 3, 10, QLatin1Char('0')), "JPEG",
                        0, noon(2021, 1, 1), {1600, 1200});

        frmThumbnails gallery;
        // The folder shown last comes back first; let that pass end.
        QTRY_VERIFY_WITH_TIMEOUT(!gallery.PassRunning(), 20000);
        QSignalSpy finished(&gallery, &frmThumbnails::PassFinished);
        // Cancel as soon as the first thumbnails are in.
        connect(gallery.pipeline(), &ThumbPipeline::Made, m_strip.get(), [this] {
            if (!Globals().Cancel)
                m_strip->cmdCancel_Press();
        });
        gallery.ShowFolder(folder);
        QTRY_VERIFY_WITH_TIMEOUT(!finished.isEmpty(), 20000);
        QCOMPARE(finished.first().first().toBool(), true);
        QVERIFY(gallery.pipeline()->Finished() < 80);
        QCOMPARE(status(), QStringLiteral("Images: 80"));
        QVERIFY(!m_strip->progCool->isVisible());

        // The request lasts 1200 ms; the next load after that runs to the end.
        QTRY_VERIFY_WITH_TIMEOUT(!Globals().Cancel, 3000);
        disconnect(gallery.pipeline(), &ThumbPipeline::Made, m_strip.get(), nullptr);
        finished.clear();
        gallery.RefreshMe(true);
        QTRY_VERIFY_WITH_TIMEOUT(!finished.isEmpty(), 30000);
        QCOMPARE(finished.first().first().toBool(), false);
        QCOMPARE(gallery.pipeline()->Finished(), 80);
    }

    void selects_data()
    {
        QTest::addColumn<QList<int>>("clicks");
        QTest::addColumn<Qt::KeyboardModifiers>("held");
        QTest::addColumn<QList<int>>("checked");
        QTest::addColumn<QString>("status");
        QTest::newRow("plain clicks keep one")
            << QList<int>{0, 2} << Qt::KeyboardModifiers() << QList<int>{2} << "1 Photos Selected";
        QTest::newRow("ctrl adds")
            << QList<int>{0, 1, 3} << Qt::KeyboardModifiers(Qt::ControlModifier)
            << QList<int>{0, 1, 3} << "3 Photos Selected";
        QTest::newRow("shift toggles off again")
            << QList<int>{1, 1} << Qt::KeyboardModifiers(Qt::ShiftModifier) << QList<int>{}
            << "No Photos Selected";
    }

    void selects()
    {
        QFETCH(QList<int>, clicks);
        QFETCH(Qt::KeyboardModifiers, held);
        QFETCH(QList<int>, checked);
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        for (int index : clicks)
            click(*gallery, index, held);
        QCOMPARE(checkedCells(*gallery), checked);
        QTEST(status(), "status");
        QCOMPARE(gallery->ucPreview()->FileName(), gallery->FileOf(clicks.last()));
    }

    void columnsFollowTheSideBar()
    {
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        ucSideBar* bar = gallery->sideBar();
        ThumbGrid* grid = gallery->picFrame();
        // The last column must lie inside the grid however wide the side bar is.
        const auto lastColumnFits = [&] {
            const int columns = gallery->Columns();
            return GalleryLayout::CellPos(columns - 1, columns, gallery->BoxSize()).x() +
                       gallery->BoxSize() <=
                   grid->width();
        };
        bar->RollUp();
        QTRY_VERIFY(!bar->isRolling());
        QTRY_VERIFY(lastColumnFits());
        const int wide = gallery->Columns();
        bar->RollOut();
        QTRY_VERIFY(!bar->isRolling());
        QTRY_VERIFY(gallery->Columns() < wide);
        QVERIFY(lastColumnFits());
    }

    void doubleClickOpens()
    {
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        QStringList opened;
        PictureOpener::SetHandler([&opened](const QString& path) { opened.append(path); });
        ThumbGrid* grid = gallery->picFrame();
        QTest::mouseDClick(grid, Qt::LeftButton, {}, grid->cellRect(2).center().toPoint());
        // Two clicks inside the double-click timer count as a double click too.
        QTest::mouseClick(grid, Qt::LeftButton, {}, grid->cellRect(1).center().toPoint());
        QTest::mouseClick(grid, Qt::LeftButton, {}, grid->cellRect(1).center().toPoint());
        PictureOpener::SetHandler({});
        QCOMPARE(opened, (QStringList{gallery->FileOf(2), gallery->FileOf(1)}));
    }

    void deletes_data()
    {
        QTest::addColumn<bool>("explained");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<bool>("option3");
        QTest::addColumn<bool>("removed");
        QTest::addColumn<bool>("fileKept");
        QTest::newRow("explanation refused") << false << false << true << false << true;
        QTest::newRow("plain delete keeps the file") << true << false << true << true << true;
        QTest::newRow("shift without option 3 keeps it") << true << true << false << true << true;
        QTest::newRow("shift with option 3 deletes it") << true << true << true << true << false;
    }

    void deletes()
    {
        QFETCH(bool, explained);
        QFETCH(bool, shift);
        QFETCH(bool, option3);
        QFETCH(bool, removed);
        QFETCH(bool, fileKept);
        SettingsStore::global().write(Keys::Explain_Delete,
                                      explained ? QStringLiteral("TRUE") : QString());
        Globals().Options[3] = option3 ? 1 : 0;
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        click(*gallery, 1);
        const QString file = gallery->FileOf(1);

        // The explanation is refused; the question about deleting for good is answered yes.
        DialogAnswers answers({explained ? QMessageBox::Yes : QMessageBox::No});
        QTest::keyClick(gallery->picFrame(), Qt::Key_Delete,
                        shift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(answers.seen.size(), !explained || (shift && option3) ? 1 : 0);
        QCOMPARE(gallery->picFrame()->isCellHidden(1), removed);
        QCOMPARE(QFile::exists(file), fileKept);
        if (removed) {
            QCOMPARE(SettingsStore::global().read(Keys::Explain_Delete), QStringLiteral("TRUE"));
            QCOMPARE(gallery->PictureCount(), 3);
            QCOMPARE(status(), QStringLiteral("Images: 3"));
            // The next picture takes the preview; the removed cell keeps its place empty.
            QCOMPARE(gallery->FileOf(2), gallery->ucPreview()->FileName());
        }
    }

    void renames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("offered");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("result");
        QTest::newRow("keeps the extension") << "beach.jpg" << "beach" << "sea" << "sea.jpg";
        QTest::newRow("four-letter extension offered whole") << "beach.jpeg" << "beach.jpeg"
                                                             << "sea" << "seajpeg";
        QTest::newRow("clash keeps both") << "beach.jpg" << "beach" << "other" << "";
    }

    void renames()
    {
        QFETCH(QString, name);
        QFETCH(QString, offered);
        QFETCH(QString, answer);
        QFETCH(QString, result);
        const QString folder = freshFolder();
        makePicture(folder + name, "JPEG", 0, noon(2021, 1, 1));
        makePicture(folder + "other.jpg", "JPEG", 0, noon(2021, 1, 1));
        auto gallery = galleryOn(folder);
        QVERIFY(gallery);
        const int index = Utilities::FileNameOf(gallery->FileOf(0)) == name ? 0 : 1;
        click(*gallery, index);

        QString shown;
        answerInput(answer, &shown);
        DialogAnswers failure({QMessageBox::Ok});
        gallery->RenameImage();
        QCOMPARE(shown, offered);
        QCOMPARE(failure.seen.size(), result.isEmpty() ? 1 : 0);
        const QString now = result.isEmpty() ? name : result;
        QVERIFY(QFile::exists(folder + now));
        QCOMPARE(QFile::exists(folder + name), result.isEmpty());
        QCOMPARE(gallery->FileOf(index), folder + now);
        QCOMPARE(gallery->ucPreview()->FileName(), folder + now);
        QVERIFY(QFile::exists(folder + "other.jpg"));
    }

    void dropsPictures()
    {
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        const QString elsewhere = freshFolder();
        makePicture(elsewhere + "dropped.png", "PNG", 0, noon(2021, 1, 1));
        QFile text(elsewhere + "readme.txt");
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.close();

        gallery->DroppedOLE({QUrl::fromLocalFile(elsewhere + "dropped.png")});
        QVERIFY(gallery->CollectionMode());
        QCOMPARE(SettingsStore::global().read(Section, Keys::BrowsePath.key), QStringLiteral(" "));
        QCOMPARE(gallery->PictureCount(), 5);
        QCOMPARE(gallery->FileOf(4), elsewhere + "dropped.png");
        waitForPass(*gallery);
        QVERIFY(!gallery->pipeline()->Picture(4).isNull());

        DialogAnswers refusal({QMessageBox::Ok});
        gallery->DroppedOLE({QUrl::fromLocalFile(elsewhere + "readme.txt")});
        QCOMPARE(refusal.seen.size(), 1);
        QCOMPARE(gallery->PictureCount(), 5);

        // Refreshing a collection shows what was gathered, not a folder.
        gallery->RefreshMe(false);
        waitForPass(*gallery);
        QCOMPARE(gallery->PictureCount(), 5);
    }
};

LUMBRA_TEST_MAIN(tst_Gallery)
#include "tst_gallery.moc"

#include "app/AppFixtures.h"
#include "app/DialogAnswers.h"
#include "TestWorld.h"

#include "app/SettingsKeys.h"
#include "common/Utilities.h"
#include "gallery/frmThumbnails.h"
#include "gallery/ThumbGrid.h"
#include "gallery/ThumbPipeline.h"
#include "gallery/ucCoolProg.h"
#include "viewing/ucImgPreview.h"

#include <QApplication>
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

    // Four pictures whose name and type orders differ.
    QString fourPictures()
    {
        const QString folder = freshFolder();
        for (const char* name : {"a.png", "b.jpg", "c.bmp", "d.gif"})
            MakePicture(folder + name);
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
        MakePicture(folder + "e.png");
        gallery->SortItems(0);
        waitForPass(*gallery);
        QCOMPARE(gallery->PictureCount(), 4);
        QCOMPARE(Utilities::FileNameOf(gallery->FileOf(0)), QStringLiteral("a.png"));
        QCOMPARE(SettingsStore::global().read(Section, Keys::Sortation.key), QStringLiteral("0"));
    }

    // A folder without pictures, then one that is gone, after a picture was previewed.
    void showsNoImages()
    {
        const QString folder = freshFolder();
        WriteFile(folder + "notes.txt", {});
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        for (const QString& shown : {folder, folder + "gone/"}) {
            click(*gallery, 1);
            gallery->ShowFolder(shown);
            waitForPass(*gallery);
            QCOMPARE(gallery->picFrame()->count(), 0);
            QVERIFY(gallery->ucPreview()->FileName().isEmpty());
            QVERIFY(!gallery->sbSlide()->isEnabled());
            gallery->ShowFolder(fourPictures());
            waitForPass(*gallery);
        }
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
        MakePicture(folder + name);
        MakePicture(folder + "other.jpg");
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
        QVERIFY(QFile::exists(folder + "other.jpg"));
    }

    // Pictures dropped on a folder's gallery make it a collection.
    void dropsPictures()
    {
        auto gallery = galleryOn(fourPictures());
        QVERIFY(gallery);
        const QString dropped = freshFolder() + "dropped.png";
        MakePicture(dropped);
        gallery->DroppedOLE({QUrl::fromLocalFile(dropped)});
        QVERIFY(gallery->CollectionMode());
        QCOMPARE(gallery->PictureCount(), 5);
        QCOMPARE(gallery->FileOf(4), dropped);
        waitForPass(*gallery);
        QVERIFY(!gallery->pipeline()->Picture(4).isNull());
    }
};

LUMBRA_TEST_MAIN(tst_Gallery)
#include "tst_gallery.moc"

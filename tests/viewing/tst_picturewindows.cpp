#include "TestWorld.h"

#include "app/mdiMain.h"
#include "app/MenuTable.h"
#include "common/AppGlobals.h"
#include "viewing/frmFullScreen.h"
#include "viewing/frmViewImage.h"
#include "viewing/PictureOpener.h"
#include "viewing/PictureWindows.h"
#include "viewing/ucImgPreview.h"

#include <QImage>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>

#include <memory>

class tst_PictureWindows : public QObject
{
    Q_OBJECT

    QString m_folder;

    std::unique_ptr<mdiMain> makeMain()
    {
        auto main = std::make_unique<mdiMain>();
        main->Load();
        main->show();
        [[maybe_unused]] const bool settled = QTest::qWaitFor([&] { return !main->StartingUp(); });
        return main;
    }

    QString picture(const QString& name, QSize size = {400, 300})
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        const QString path = m_folder + u'/' + name;
        if (!QFile::exists(path))
            image.save(path);
        return path;
    }

    static QMdiSubWindow* subOf(QWidget* window)
    {
        return qobject_cast<QMdiSubWindow*>(window->parentWidget());
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_folder = property("worldPath").toString() + QStringLiteral("/pics");
        QDir().mkpath(m_folder);
    }

    void cleanup() { Globals().CurrentPicture.clear(); }

    void secondOpenShowsFullScreen_data()
    {
        QTest::addColumn<QString>("again");
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("same spelling, close button") << "Beach.png" << false;
        QTest::newRow("other letter case, Esc") << "BEACH.PNG" << true;
    }

    void secondOpenShowsFullScreen()
    {
        QFETCH(QString, again);
        QFETCH(bool, byEscape);
        auto main = makeMain();
        const QString path = picture(QStringLiteral("Beach.png"));

        // Opened the way a double click on any picture pane opens it.
        PictureOpener::Open(path);
        QCOMPARE(PictureWindows::OpenPaths(), QStringList{path});
        auto* window = qobject_cast<frmViewImage*>(main->ActiveChild());
        QVERIFY(window);

        QVERIFY(!PictureWindows::Open(m_folder + u'/' + again));
        QCOMPARE(PictureWindows::OpenPaths().size(), 1);
        frmFullScreen* full = PictureWindows::FullScreenWindow();
        QVERIFY(full && full->isVisible());
        QCOMPARE(full->ImageFile(), path);
        QVERIFY(!main->isVisible());
        QTRY_VERIFY(full->Preview()->DecodedImage().width() > 0);

        const QPointer<frmFullScreen> watch(full);
        if (byEscape)
            QTest::keyClick(full, Qt::Key_Escape);
        else
            QTest::mouseClick(full->CloseButton(), Qt::LeftButton);
        QTRY_VERIFY(!watch);
        QVERIFY(main->isVisible());
        // The picture window was the active child, so it went with the full-screen view.
        QTRY_COMPARE(main->Area()->subWindowList().size(), 0);
        QVERIFY(PictureWindows::OpenPaths().isEmpty());
    }

    void windowsStayInsideTheFrame()
    {
        auto main = makeMain();
        const QRect room = main->Area()->viewport()->rect();
        // Each new window is placed beside the last; a big picture's window must not run off.
        for (const char* name : {"wide1.png", "wide2.png", "wide3.png"}) {
            frmViewImage* window = PictureWindows::Open(picture(QLatin1String(name), {1600, 900}));
            QVERIFY(window);
            QVERIFY2(room.contains(subOf(window)->geometry()), name);
        }
        for (int button : {MenuTable::ThumbnailsButton, MenuTable::MyImagesButton}) {
            QWidget* child = main->OpenChild(button);
            QVERIFY(child);
            QVERIFY2(room.contains(subOf(child)->geometry()), qPrintable(child->objectName()));
        }
        PictureWindows::CloseAll();
    }
};

LUMBRA_TEST_MAIN(tst_PictureWindows)
#include "tst_picturewindows.moc"

#include "BrowserBench.h"

#include "browser/DesktopClipboard.h"
#include "browser/FileOps.h"
#include "gallery/FilesFound.h"

#include <QClipboard>
#include <QFile>
#include <QMimeData>
#include <QRegularExpression>
#include <QUrl>

// Lists in the tables are joined by "|". A folder's state is its sorted entries, "name=content"
// for files and "name->target=content" for links (by the target's file name).
class tst_FileOps : public BrowserBench
{
    Q_OBJECT

    static QStringList items(const QString& joined)
    {
        return joined.split(u'|', Qt::SkipEmptyParts);
    }

    static void fill(const QString& folder, const QString& state)
    {
        for (const QString& entry : items(state)) {
            if (entry.contains("->")) {
                // A link to a picture in a folder of its own.
                const QString pictures = folder + "../pictures/";
                QDir().mkpath(pictures);
                fill(pictures, entry.section("->", 1) + "=data");
                QVERIFY(QFile::link(pictures + entry.section("->", 1),
                                    folder + entry.section("->", 0, 0)));
                continue;
            }
            QFile file(folder + entry.section(u'=', 0, 0));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(entry.section(u'=', 1).toUtf8());
        }
    }

    static QString state(const QString& folder)
    {
        QStringList entries;
        const auto filter = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        for (const QFileInfo& info : QDir(folder).entryInfoList(filter, QDir::Name)) {
            QString entry = info.fileName();
            if (info.isSymLink())
                entry += "->" + QFileInfo(info.symLinkTarget()).fileName();
            QFile file(info.filePath());
            if (file.open(QIODevice::ReadOnly))
                entry += u'=' + QString::fromUtf8(file.readAll());
            entries << entry;
        }
        return entries.join(u'|');
    }

    static FilesFound clipboardList(QString folder, const QString& names, bool cut)
    {
        FilesFound list;
        list.SetPath(folder, cut ? QStringLiteral("True") : QStringLiteral("False"));
        for (const QString& name : items(names))
            list.AddFile(name);
        return list;
    }

private Q_SLOTS:
    void cleanup() { FileOps::SetFaultHook({}); }

    // Failures leave each file whole in its old or its new place, and nothing else: the folder
    // states would show a lost file or a temporary copy left behind.
    void paste_data()
    {
        QTest::addColumn<bool>("cut");
        QTest::addColumn<bool>("sameFolder");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("names");
        QTest::addColumn<bool>("replace");  // the answer when asked to replace a file
        QTest::addColumn<QString>("fault"); // "step file", or "read-only" for the target folder
        QTest::addColumn<QString>("added");
        QTest::addColumn<QString>("unghosted");
        QTest::addColumn<QString>("failedName");
        QTest::addColumn<QString>("sourceAfter");
        QTest::addColumn<QString>("targetAfter");

        const char* ab = "a.jpg=A|b.jpg=B";
        row("cut into another folder, names with quotes, newlines, non-Latin letters", true, false,
            "my \"best\"\nshot.jpg=1|Zürich 北京 'x' %20.png=2", "",
            "my \"best\"\nshot.jpg|Zürich 北京 'x' %20.png", true, "",
            "my \"best\"\nshot.jpg|Zürich 北京 'x' %20.png", "", "", "",
            "Zürich 北京 'x' %20.png=2|my \"best\"\nshot.jpg=1");
        row("cut onto a taken name keeps both", true, false, "a.jpg=A", "a.jpg=old", "a.jpg", true,
            "", "Copy Of a.jpg", "", "", "", "Copy Of a.jpg=A|a.jpg=old");
        row("cut within its folder only unghosts", true, true, ab, "", "b.jpg|a.jpg", true, "", "",
            "b.jpg|a.jpg", "", ab, ab);
        row("cut of a link moves the link", true, false, "l.jpg->real.jpg", "", "l.jpg", true, "",
            "l.jpg", "", "", "", "l.jpg->real.jpg=data");
        row("copy into another folder replaces the file of that name", false, false, "a.jpg=A",
            "a.jpg=old", "a.jpg", true, "", "a.jpg", "", "", "a.jpg=A", "a.jpg=A");
        row("copy with the replace declined skips that file", false, false, ab, "a.jpg=old",
            "a.jpg|b.jpg", false, "", "b.jpg", "", "", ab, "a.jpg=old|b.jpg=B");
        row("copy within its folder past a Copy Of", false, true, "a.jpg=A|Copy Of a.jpg=C", "",
            "a.jpg", true, "", "Copy Of Copy Of a.jpg", "", "",
            "Copy Of Copy Of a.jpg=A|Copy Of a.jpg=C|a.jpg=A",
            "Copy Of Copy Of a.jpg=A|Copy Of a.jpg=C|a.jpg=A");
        row("copy of a link takes the picture's content", false, false, "l.jpg->real.jpg", "",
            "l.jpg", true, "", "l.jpg", "", "", "l.jpg->real.jpg=data", "l.jpg=data");

        row("source vanished: the paste stops there", true, false, ab, "", "a.jpg|gone.jpg|b.jpg",
            true, "", "a.jpg", "", "gone.jpg", "b.jpg=B", "a.jpg=A");
        row("read-only target folder", true, false, ab, "", "a.jpg|b.jpg", true, "read-only", "",
            "", "a.jpg", ab, "");
        row("cut: copy breaks on the second file", true, false, ab, "", "a.jpg|b.jpg", true,
            "copy b.jpg", "a.jpg", "", "b.jpg", "b.jpg=B", "a.jpg=A");
        row("cut: source cannot be deleted after the copy", true, false, ab, "", "a.jpg|b.jpg",
            true, "delete a.jpg", "", "", "a.jpg", ab, "");
        row("cut: copy cannot take its name after the source went", true, false, ab, "", "a.jpg",
            true, "rename a.jpg", "", "", "a.jpg", ab, "");
        row("copy: replacing fails and keeps the old file", false, false, ab, "a.jpg=old", "a.jpg",
            true, "replace a.jpg", "", "", "a.jpg", ab, "a.jpg=old");
    }

    void paste()
    {
        QFETCH(bool, cut);
        QFETCH(bool, sameFolder);
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(QString, names);
        QFETCH(bool, replace);
        QFETCH(QString, fault);
        const QString from = freshFolder();
        const QString into = sameFolder ? from : freshFolder();
        fill(from, source);
        fill(into, target);
        if (fault == "read-only") {
            QFile::setPermissions(into, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
            QFile probe(into + "probe");
            // As root, permissions stop nothing: then every copy is refused through the hook.
            fault = probe.open(QIODevice::NewOnly) && probe.remove() ? "copy " : "";
        }
        FileOps::SetFaultHook([&](const QString& step, const QString& path) {
            return !fault.isEmpty() && step == fault.section(u' ', 0, 0) &&
                   path.endsWith(fault.section(u' ', 1));
        });
        int asked = 0;
        const auto result =
            FileOps::Paste(clipboardList(from, names, cut), into, [&](const QString&) {
                ++asked;
                return replace;
            });
        QFile::setPermissions(into, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QTEST(result.failedName, "failedName");
        QCOMPARE(result.ok, result.failedName.isEmpty());
        QVERIFY2(result.reason.contains(result.failedName), qPrintable(result.reason));
        QTEST(result.added.join(u'|'), "added");
        QTEST(result.unghosted.join(u'|'), "unghosted");
        QTEST(state(from), "sourceAfter");
        QTEST(state(into), "targetAfter");
        // Asked only about a file of the same name in another folder.
        QCOMPARE(asked, (!cut && !sameFolder) ? items(target).size() : 0);
    }

    // A rename in place: what the user typed over the old name, and the folder afterwards.
    void renameInPlace_data()
    {
        QTest::addColumn<QString>("oldName");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("fault");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("after");
        const QString a = "a.jpg", untouched = "a.jpg=A|b.jpg=B";
        row("typed without extension keeps the old one", a, "sea", false, true,
            "b.jpg=B|sea.jpg=A");
        row("same extension taken as typed", a, "sea.jpg", false, true, "b.jpg=B|sea.jpg=A");
        row("other extension gets the old one appended", a, "sea.png", false, true,
            "b.jpg=B|sea.png.jpg=A");
        row("extension compared with case", a, "sea.JPG", false, true, "b.jpg=B|sea.JPG.jpg=A");
        row("emptied label keeps the old name", a, "", false, true, untouched);
        row("a quote and a newline", a, "it's\n\"new\"", false, true,
            "b.jpg=B|it's\n\"new\".jpg=A");
        row("onto an existing file", a, "b", false, false, untouched);
        row("into another folder", a, "../a", false, false, untouched);
        row("file gone", "gone.jpg", "c", false, false, untouched);
        row("refused by the file system", a, "sea", true, false, untouched);
    }

    void renameInPlace()
    {
        QFETCH(QString, oldName);
        QFETCH(QString, typed);
        QFETCH(bool, fault);
        QFETCH(bool, ok);
        const QString folder = freshFolder();
        fill(folder, "a.jpg=A|b.jpg=B");
        FileOps::SetFaultHook(
            [fault](const QString& step, const QString&) { return fault && step == "rename"; });
        QString reason;
        QCOMPARE(
            FileOps::Rename(folder, oldName, FileOps::KeptExtensionName(oldName, typed), &reason),
            ok);
        QCOMPARE(reason.isEmpty(), ok);
        QTEST(state(folder), "after");
    }

    void moveToTrash_data()
    {
        QTest::addColumn<QString>("faults");
        QTest::addColumn<bool>("ok");
        row("renamed into the home trash", "", true);
        row("copied when the rename is refused", "trash", true);
        row("kept when the copy fails too", "trash|copy", false);
        row("kept when the file cannot go after the copy", "trash|delete", false);
    }

    void moveToTrash()
    {
        QFETCH(QString, faults);
        QFETCH(bool, ok);
        // A data folder that does not exist yet, as on a fresh account.
        const QString trash = freshFolder() + "data/Trash/";
        qputenv("XDG_DATA_HOME", QFile::encodeName(trash.chopped(7)));
        const QString folder = freshFolder();
        const QString name = "Été 100% sûr.jpg";
        fill(folder, name + "=picture");
        FileOps::SetFaultHook(
            [&](const QString& step, const QString&) { return items(faults).contains(step); });
        // Qt's own complaint when it would "trash" into the working folder.
        QTest::failOnWarning(
            QRegularExpression("trash", QRegularExpression::CaseInsensitiveOption));
        QString reason;
        QCOMPARE(FileOps::MoveToTrash(folder + name, &reason), ok);
        QCOMPARE(state(folder), ok ? "" : name + "=picture");
        QCOMPARE(state(trash + "files"), ok ? name + "=picture" : "");
        QFile info(trash + "info/" + name + ".trashinfo");
        QCOMPARE(info.open(QIODevice::ReadOnly), ok);
        QCOMPARE(reason.isEmpty(), ok);
        if (!ok)
            return;
        const QString text = QString::fromUtf8(info.readAll());
        const QString path = QUrl::toPercentEncoding(folder + name, "/");
        QVERIFY2(QRegularExpression("^\\[Trash Info\\]\nPath=" + QRegularExpression::escape(path) +
                                    "\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n$")
                     .match(text)
                     .hasMatch(),
                 qPrintable(text));
    }

    void clipboard_data()
    {
        QTest::addColumn<QString>("formats"); // format|content|...; empty: Put by us
        QTest::addColumn<QString>("paths");   // empty: no file list
        QTest::addColumn<bool>("cut");
        QTest::addColumn<QString>("gnome"); // what file managers read from what we put
        row("ours: copy of one file", "", "/p/a.jpg", false, "copy\nfile:///p/a.jpg");
        row("ours: cut of two files with odd names", "", "/p/b c#1.jpg|/p/Zürich.png", true,
            "cut\nfile:///p/b%20c%231.jpg\nfile:///p/Z%C3%BCrich.png");
        row("GNOME cut", "x-special/gnome-copied-files|cut\nfile:///p/a.jpg\nfile:///p/b%20c.jpg",
            "/p/a.jpg|/p/b c.jpg", true, "");
        row("GNOME copy with a trailing newline",
            "x-special/gnome-copied-files|copy\nfile:///p/a.jpg\n", "/p/a.jpg", false, "");
        row("older Nautilus text form",
            "text/plain|x-special/nautilus-clipboard\ncut\nfile:///p/a.jpg\n", "/p/a.jpg", true,
            "");
        row("KDE cut", "text/uri-list|file:///p/a.jpg\r\n|application/x-kde-cutselection|1",
            "/p/a.jpg", true, "");
        row("plain uri-list is a copy", "text/uri-list|file:///p/a.jpg\r\n", "/p/a.jpg", false, "");
        row("plain text is no file list", "text/plain|/p/a.jpg", "", false, "");
    }

    // Once pasted, a cut is cleared from the clipboard; anything else stays.
    void clipboard()
    {
        QFETCH(QString, formats);
        QFETCH(QString, paths);
        QFETCH(bool, cut);
        QClipboard* clipboard = QGuiApplication::clipboard();
        if (formats.isEmpty()) {
            DesktopClipboard::Put(items(paths), cut);
        } else {
            auto data = std::make_unique<QMimeData>();
            const QStringList parts = items(formats);
            for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
                data->setData(parts[i], parts[i + 1].toUtf8());
            clipboard->setMimeData(data.release());
        }
        const QMimeData* data = clipboard->mimeData();
        const auto contents = DesktopClipboard::Read(data);
        QCOMPARE(contents ? contents->paths.join(u'|') : QString(), paths);
        QCOMPARE(contents && contents->cut, cut);
        if (formats.isEmpty()) {
            QTEST(QString::fromUtf8(data->data("x-special/gnome-copied-files")), "gnome");
            QCOMPARE(data->data("application/x-kde-cutselection"), QByteArray(cut ? "1" : "0"));
            QCOMPARE(data->urls().size(), items(paths).size());
        }
        DesktopClipboard::ClearAfterCutPaste();
        const QMimeData* left = clipboard->mimeData();
        QCOMPARE(!left || left->formats().isEmpty(), cut);
    }
};

LUMBRA_TEST_MAIN(tst_FileOps)
#include "tst_fileops.moc"

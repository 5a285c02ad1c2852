#include "app/frmHelp.h"

#include "common/WindowKeys.h"
#include "common/WindowPlacement.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTextBrowser>
#include <QUrl>

namespace {

struct Topic
{
    const char* title;
    const char* anchor;
};

// The anchors name sections of the help page.
constexpr Topic Topics[] = {
    {QT_TRANSLATE_NOOP("frmHelp", "Welcome"), "welcome"},
    {QT_TRANSLATE_NOOP("frmHelp", "The main window"), "main-window"},
    {QT_TRANSLATE_NOOP("frmHelp", "Menus"), "menus"},
    {QT_TRANSLATE_NOOP("frmHelp", "The thumbnail gallery"), "gallery"},
    {QT_TRANSLATE_NOOP("frmHelp", "Thumbnail size"), "thumb-size"},
    {QT_TRANSLATE_NOOP("frmHelp", "Photo Albums"), "albums"},
    {QT_TRANSLATE_NOOP("frmHelp", "The picture browser"), "browser"},
    {QT_TRANSLATE_NOOP("frmHelp", "The slide show builder"), "slideshows"},
    {QT_TRANSLATE_NOOP("frmHelp", "The slide show player"), "slideshow-player"},
    {QT_TRANSLATE_NOOP("frmHelp", "Picture windows"), "picture-windows"},
    {QT_TRANSLATE_NOOP("frmHelp", "Full screen"), "full-screen"},
    {QT_TRANSLATE_NOOP("frmHelp", "The workshop"), "workshop"},
    {QT_TRANSLATE_NOOP("frmHelp", "Opening and saving"), "open-save"},
    {QT_TRANSLATE_NOOP("frmHelp", "Page setup and printing"), "printing"},
    {QT_TRANSLATE_NOOP("frmHelp", "Properties"), "properties"},
    {QT_TRANSLATE_NOOP("frmHelp", "Undo"), "undo"},
    {QT_TRANSLATE_NOOP("frmHelp", "Zip My Picture(s)"), "zip"},
    {QT_TRANSLATE_NOOP("frmHelp", "Wallpaper"), "wallpaper"},
    {QT_TRANSLATE_NOOP("frmHelp", "Screenshots"), "screenshots"},
    {QT_TRANSLATE_NOOP("frmHelp", "The tray icon"), "tray"},
    {QT_TRANSLATE_NOOP("frmHelp", "Options"), "options"},
    {QT_TRANSLATE_NOOP("frmHelp", "Restore Defaults"), "restore-defaults"},
    {QT_TRANSLATE_NOOP("frmHelp", "Tips"), "tips"},
    {QT_TRANSLATE_NOOP("frmHelp", "The command line"), "command-line"},
    {QT_TRANSLATE_NOOP("frmHelp", "Where Lumbra keeps things"), "files"},
    {QT_TRANSLATE_NOOP("frmHelp", "Keyboard"), "keys"},
    {QT_TRANSLATE_NOOP("frmHelp", "Picture types"), "picture-types"},
    {QT_TRANSLATE_NOOP("frmHelp", "About Lumbra"), "about"},
};

} // namespace

frmHelp::frmHelp(QWidget* parent)
    : QWidget(parent, Qt::Window), lstTopics(new QListWidget(this)), txtHelp(new QTextBrowser(this))
{
    setWindowTitle(tr("Lumbra Help"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/help.svg")));
    setAttribute(Qt::WA_QuitOnClose, false);

    for (const Topic& topic : Topics) {
        auto* item = new QListWidgetItem(tr(topic.title), lstTopics);
        item->setData(Qt::UserRole, QString::fromLatin1(topic.anchor));
    }
    lstTopics->setMinimumWidth(170);

    txtHelp->setOpenExternalLinks(true);
    txtHelp->setSource(QUrl(QStringLiteral("qrc:/help/overview.html")),
                       QTextDocument::HtmlResource);

    auto* splitter = new QSplitter(this);
    splitter->addWidget(lstTopics);
    splitter->addWidget(txtHelp);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({200, 620});
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(splitter);
    resize(840, 580);

    // A click on the topic already selected takes the text back to its start too.
    const auto showItem = [this](QListWidgetItem* item) {
        if (item)
            txtHelp->scrollToAnchor(item->data(Qt::UserRole).toString());
    };
    connect(lstTopics, &QListWidget::currentItemChanged, this, showItem);
    connect(lstTopics, &QListWidget::itemClicked, this, showItem);
    // Links between topics move the list along with the text.
    connect(txtHelp, &QTextBrowser::anchorClicked, this, [this](const QUrl& url) {
        if (!url.fragment().isEmpty())
            SelectTopic(url.fragment());
    });

    // A page to read: Esc puts it away as well as the close keys.
    WindowKeys::CloseWith(this, true);

    SelectTopic(QString::fromLatin1(Topics[0].anchor));
    WindowPlacement::Keep(this, QStringLiteral("frmHelp"));
}

void frmHelp::ShowTopic(const QString& anchor)
{
    SelectTopic(anchor);
    const QListWidgetItem* item = lstTopics->currentItem();
    if (anchor.isEmpty() || !item || item->data(Qt::UserRole).toString() != anchor)
        txtHelp->verticalScrollBar()->setValue(0);
    else
        txtHelp->scrollToAnchor(anchor);
}

void frmHelp::SelectTopic(const QString& anchor)
{
    const QSignalBlocker quiet(lstTopics);
    for (int row = 0; row < lstTopics->count(); ++row) {
        if (lstTopics->item(row)->data(Qt::UserRole).toString() == anchor) {
            lstTopics->setCurrentRow(row);
            return;
        }
    }
    lstTopics->setCurrentRow(0);
}

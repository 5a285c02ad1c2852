#include "browser/frmSlideshow.h"

#include "app/SettingsStore.h"
#include "browser/frmSlideshow_FS.h"
#include "browser/SlideshowSession.h"
#include "browser/ucPictureList.h"
#include "common/Utilities.h"
#include "common/WindowKeys.h"

#include <QAbstractItemView>
#include <QAction>
#include <QItemSelectionModel>
#include <QStandardItemModel>
#include <QToolBar>

#include <algorithm>
#include <vector>

using namespace PictureListRules;

namespace {

SettingsStore& settings()
{
    return SettingsStore::global();
}

// The play toolbar's buttons by index.
enum PlayIndex
{
    StopIndex = 1,
    PlayIndex = 2,
    RepeatIndex = 4,
    RandomIndex = 5,
    FullScreenIndex = 7
};

// A drop is moved once the drag that brought it has finished.
constexpr int DropMilliseconds = 10;

} // namespace

frmSlideshow::frmSlideshow(QWidget* parent)
    : PictureListWindow({QStringLiteral("frmSlideshow"), QStringLiteral("Slideshow"),
                         QStringLiteral("Slide Show"), Keys::DirSlideshow_Height,
                         /*upperCaseTypes*/ false, /*checkBoxes*/ true,
                         /*rememberSelection*/ false, /*fillManagesControls*/ false},
                        parent)
{
    buildToolbars();

    // The show plays what the list and the play buttons say when it starts.
    m_session = new SlideshowSession(this);
    m_session->setPreview(ucPreview());
    m_session->setSource([this] {
        SlideshowSession::Source source;
        source.folder = CurrentPath();
        const ucPictureList* list = lvList();
        for (int row = 0; row < list->count(); ++row)
            if (list->isChecked(row))
                source.checked.append(list->text(row));
        source.random = PlayButton(RandomIndex)->isChecked();
        source.repeat = PlayButton(RepeatIndex)->isChecked();
        source.fullScreen = PlayButton(FullScreenIndex)->isChecked();
        return source;
    });
    connect(m_session, &SlideshowSession::PlayingChanged, this, &frmSlideshow::playingChanged);

    ucPictureList* list = lvList();
    list->setReorderable(true);
    connect(list->model(), &QStandardItemModel::itemChanged, this, [this](QStandardItem* item) {
        if (item->column() == NameColumn && !m_settingChecks)
            checkStateChanged();
    });
    connect(list, &ucPictureList::RowsDropped, this, &frmSlideshow::rowsDropped);
    tmrListOleCoords.setSingleShot(true);
    tmrListOleCoords.setInterval(DropMilliseconds);
    connect(&tmrListOleCoords, &QTimer::timeout, this, &frmSlideshow::completeDrop);

    Load();
    loadPlayButtons();
    Utilities::SetStatus(
        QStringLiteral("Double click the list of photos to check or uncheck all."));
}

frmSlideshow::~frmSlideshow() = default;

void frmSlideshow::buildToolbars()
{
    m_checkBar = new QToolBar(QStringLiteral("Check"), this);
    m_checkBar->setObjectName(QStringLiteral("tlbCheck"));
    m_checkBar->setMovable(false);
    m_checkButton = m_checkBar->addAction(QIcon(QStringLiteral(":/icons/check-selected.svg")),
                                          QStringLiteral("Check selected item(s)"));
    m_checkButton->setObjectName(QStringLiteral("tlbCheck(1)"));
    connect(m_checkButton, &QAction::triggered, this, &frmSlideshow::CheckSelected);

    m_playBar = new QToolBar(QStringLiteral("Play"), this);
    m_playBar->setObjectName(QStringLiteral("tlbPlay"));
    m_playBar->setMovable(false);
    const struct
    {
        const char* text;
        const char* icon;
        bool toggle;
    } buttons[] = {
        {"Stop", ":/icons/slide-stop.svg", false},
        {"Play Slideshow...", ":/icons/slide-play.svg", false},
        {nullptr, nullptr, false},
        {"Repeat Slideshow", ":/icons/slide-repeat.svg", true},
        {"Random", ":/icons/slide-random.svg", true},
        {nullptr, nullptr, false},
        {"Full Screen", ":/icons/slide-fullscreen.svg", true},
    };
    for (int i = 0; i < 7; ++i) {
        const auto& design = buttons[i];
        QAction* button = design.text
                              ? m_playBar->addAction(QIcon(QString::fromLatin1(design.icon)),
                                                     QString::fromLatin1(design.text))
                              : m_playBar->addSeparator();
        const int index = i + 1;
        button->setObjectName(QStringLiteral("tlbPlay(%1)").arg(index));
        button->setCheckable(design.toggle);
        m_playButtons[size_t(i)] = button;
        if (design.text)
            connect(button, &QAction::triggered, this, [this, index] { playButtonClicked(index); });
    }
    // The keyboard's way to the buttons; Stop's Esc only counts while a show plays, as the
    // button is hidden otherwise.
    WindowKeys::Give(this, m_checkButton, QKeySequence(Qt::CTRL | Qt::Key_K));
    WindowKeys::Give(this, PlayButton(PlayIndex), QKeySequence(Qt::CTRL | Qt::Key_Return));
    WindowKeys::Give(this, PlayButton(StopIndex), QKeySequence(Qt::Key_Escape));
    WindowKeys::Give(this, PlayButton(RepeatIndex), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
    WindowKeys::Give(this, PlayButton(RandomIndex), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
    WindowKeys::Give(this, PlayButton(FullScreenIndex),
                     QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));

    // Stopped: Play shows, and waits for a checked picture.
    PlayButton(StopIndex)->setVisible(false);
    PlayButton(PlayIndex)->setEnabled(false);

    // The builder's bars share the line of the browser's toolbar, above the address bar, and
    // come and go with it.
    removeToolBarBreak(addressBar());
    insertToolBar(addressBar(), m_checkBar);
    insertToolBar(addressBar(), m_playBar);
    insertToolBarBreak(addressBar());
    connect(toolbar(), &QToolBar::visibilityChanged, this, [this] {
        m_checkBar->setHidden(toolbar()->isHidden());
        m_playBar->setHidden(toolbar()->isHidden());
    });
}

QAction* frmSlideshow::PlayButton(int index) const
{
    return index >= 1 && index <= 7 ? m_playButtons[size_t(index - 1)] : nullptr;
}

void frmSlideshow::loadPlayButtons()
{
    // 1 pressed, 0 released; without a stored state a button stays as it was made. The
    // separator (6) is read with the rest and means nothing.
    for (int index = RepeatIndex; index <= FullScreenIndex; ++index) {
        int pressed = -1;
        settings().readInto(Keys::tlbPlay_(index), pressed);
        QAction* button = PlayButton(index);
        if (button->isCheckable() && (pressed == 0 || pressed == 1))
            button->setChecked(pressed == 1);
    }
}

void frmSlideshow::playButtonClicked(int index)
{
    switch (index) {
    case StopIndex:
    case PlayIndex:
        ToggleShow(index);
        break;
    case RepeatIndex:
    case RandomIndex:
    case FullScreenIndex:
        settings().write(Keys::tlbPlay_(index), PlayButton(index)->isChecked() ? 1 : 0);
        break;
    default:
        break;
    }
}

// The show --------------------------------------------------------------------------------

void frmSlideshow::ToggleShow(int n)
{
    // A command by name may come while Play is disabled: with nothing checked there is no show.
    if (n == 1 || (n == 2 && anyChecked()))
        m_session->ToggleShow(n);
}

void frmSlideshow::ShowSlide()
{
    m_session->ShowSlide();
}

void frmSlideshow::playingChanged(bool playing)
{
    PlayButton(StopIndex)->setVisible(playing);
    PlayButton(PlayIndex)->setVisible(!playing);
}

void frmSlideshow::closeEvent(QCloseEvent* event)
{
    // A show does not outlive its window, nor does its full-screen player.
    if (m_session->Playing())
        ToggleShow(1);
    PictureListWindow::closeEvent(event);
}

// Checking ----------------------------------------------------------------------------------

void frmSlideshow::CheckSelected()
{
    ucPictureList* list = lvList();
    {
        m_settingChecks = true;
        for (int row : list->selectedRows())
            list->setChecked(row, !list->isChecked(row));
        m_settingChecks = false;
    }
    updatePlayButton();
}

void frmSlideshow::listDoubleClicked(int row)
{
    ucPictureList* list = lvList();
    if (row < 0 || row >= list->count())
        return;
    const bool checked = !list->isChecked(row);
    m_settingChecks = true;
    for (int r = 0; r < list->count(); ++r)
        list->setChecked(r, checked);
    m_settingChecks = false;
    PlayButton(PlayIndex)->setEnabled(checked);
}

void frmSlideshow::listFilled()
{
    updatePlayButton();
}

void frmSlideshow::checkStateChanged()
{
    updatePlayButton();
}

void frmSlideshow::updatePlayButton()
{
    PlayButton(PlayIndex)->setEnabled(anyChecked());
}

bool frmSlideshow::anyChecked() const
{
    const ucPictureList* list = lvList();
    for (int row = 0; row < list->count(); ++row)
        if (list->isChecked(row))
            return true;
    return false;
}

// Drag reordering ---------------------------------------------------------------------------

void frmSlideshow::rowsDropped(int targetRow)
{
    ucPictureList* list = lvList();
    m_dragged.clear();
    for (int row : list->selectedRows())
        m_dragged.append(QPersistentModelIndex(list->model()->index(row, NameColumn)));
    m_dropTarget = targetRow >= 0 ? QPersistentModelIndex(list->model()->index(targetRow, 0))
                                  : QPersistentModelIndex();
    tmrListOleCoords.start();
}

void frmSlideshow::completeDrop()
{
    ucPictureList* list = lvList();
    QList<int> dragged;
    for (const QPersistentModelIndex& index : std::as_const(m_dragged))
        if (index.isValid())
            dragged.append(index.row());
    std::sort(dragged.begin(), dragged.end());
    const int target = m_dropTarget.isValid() ? m_dropTarget.row() : -1;
    m_dragged.clear();
    m_dropTarget = QPersistentModelIndex();
    const int insertAt = DropInsertRow(dragged, target, list->count());
    if (insertAt < 0)
        return;

    // The order is the user's now: a later fill or sort must not put it back.
    SortState sort = list->sortState();
    sort.on = false;
    list->setSortState(sort);

    // Each row goes with its text, its five sub-items and its check box.
    QStandardItemModel* model = list->model();
    std::vector<QList<QStandardItem*>> moving;
    for (auto row = dragged.crbegin(); row != dragged.crend(); ++row)
        moving.insert(moving.begin(), model->takeRow(*row));
    for (size_t i = 0; i < moving.size(); ++i)
        model->insertRow(insertAt + int(i), moving[i]);

    // The moved rows stay selected, the first of them current and previewed.
    list->selectRow(insertAt, true);
    QItemSelectionModel* selection = list->view()->selectionModel();
    for (int i = 1; i < int(moving.size()); ++i)
        selection->select(model->index(insertAt + i, NameColumn),
                          QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

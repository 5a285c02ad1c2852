#include "gallery/frmThumbSize.h"

#include "app/ChildOps.h"
#include "app/SettingsStore.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "controls/ucCoolButton.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QSlider>

namespace {

constexpr int MinScale = 1;
constexpr int MaxScale = 10;
constexpr int DefaultScale = 3;
// The preview square grows by this many twips per step of the scale.
constexpr int PreviewTwipsPerStep = 80;
constexpr int PreviewRoomPx = 60;

QString HintText(int scale)
{
    return scale == DefaultScale ? QStringLiteral("Default")
                                 : QString::number(scale) + QStringLiteral(" Times");
}

} // namespace

frmThumbSize::frmThumbSize(QObject* gallery, QWidget* parent) : QDialog(parent), m_gallery(gallery)
{
    setObjectName(QStringLiteral("frmThumbSize"));
    setWindowTitle(QStringLiteral("Thumbnail Size"));
    setModal(true);

    sldThumbSize = new QSlider(Qt::Horizontal, this);
    sldThumbSize->setObjectName(QStringLiteral("sldThumbSize"));
    sldThumbSize->setRange(MinScale, MaxScale);
    sldThumbSize->setPageStep(1);
    sldThumbSize->setTickPosition(QSlider::TicksBelow);
    sldThumbSize->setTickInterval(1);
    sldThumbSize->setMinimumWidth(180);

    m_previewRoom = new QWidget(this);
    m_previewRoom->setFixedSize(PreviewRoomPx, PreviewRoomPx);
    lblThumbsize = new QLabel(m_previewRoom);
    lblThumbsize->setObjectName(QStringLiteral("lblThumbsize"));
    lblThumbsize->setFrameShape(QFrame::Box);
    lblThumbsize->setBackgroundRole(QPalette::Highlight);
    lblThumbsize->setAutoFillBackground(true);

    chkThumbSize = new QCheckBox(QStringLiteral("Include captions."), this);
    chkThumbSize->setObjectName(QStringLiteral("chkThumbSize"));
    chkThumbSize->setToolTip(QStringLiteral("View your photo's filename below each thumbnail"));

    cmdOK = new ucCoolButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdOK->setEnabled(false);

    auto* layout = new QGridLayout(this);
    layout->addWidget(m_previewRoom, 0, 0, 2, 1, Qt::AlignCenter);
    layout->addWidget(sldThumbSize, 0, 1);
    layout->addWidget(chkThumbSize, 1, 1);
    layout->addWidget(cmdOK, 2, 0, 1, 2, Qt::AlignRight);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(sldThumbSize, &QSlider::valueChanged, this, &frmThumbSize::sldThumbSize_Change);
    // Captions alone are a change worth confirming too, so the box also enables OK.
    connect(chkThumbSize, &QCheckBox::toggled, this, &frmThumbSize::EnableOK);
    connect(cmdOK, &QPushButton::clicked, this, &frmThumbSize::cmdOK_Click);

    Form_Load();
}

void frmThumbSize::Form_Load()
{
    m_loading = true;
    CentreOnParent();
    chkThumbSize->setChecked(Globals().option(Opt::Captions));
    int scale = DefaultScale;
    SettingsStore::global().readInto(Keys::ThumbSizeForDialog, scale);
    sldThumbSize->setValue(scale);
    // The slider reports no change when the stored value is where it already stood.
    sldThumbSize_Change();
    m_loading = false;
}

void frmThumbSize::CentreOnParent()
{
    QWidget* over = parentWidget();
    if (!over)
        return;
    adjustSize();
    const QPoint centre = over->mapToGlobal(over->rect().center());
    move(centre - rect().center());
}

void frmThumbSize::EnableOK()
{
    if (!m_loading)
        cmdOK->setEnabled(true);
}

void frmThumbSize::sldThumbSize_Change()
{
    EnableOK();
    const int scale = sldThumbSize->value();
    sldThumbSize->setToolTip(HintText(scale));
    const int side = qMin(Formats::twipsToPixels(qint64(scale) * PreviewTwipsPerStep),
                          qMin(m_previewRoom->width(), m_previewRoom->height()));
    lblThumbsize->setGeometry((m_previewRoom->width() - side) / 2,
                              (m_previewRoom->height() - side) / 2, side, side);
}

void frmThumbSize::cmdOK_Click()
{
    SettingsStore& store = SettingsStore::global();
    // The scale the gallery shows now, read with the gallery's own default: on a fresh
    // system it shows 1 while this dialog offers 3, and confirming that is a change.
    int oldScale = 0;
    store.readInto(Keys::ThumbSizeForGallery, oldScale);
    const int newScale = sldThumbSize->value();
    store.write(Keys::ThumbSizeForDialog, newScale);

    const bool captions = chkThumbSize->isChecked();
    if (captions != Globals().option(Opt::Captions)) {
        Globals().Options[Opt::Captions] = captions ? 1 : 0;
        store.write(Keys::Option(Opt::Captions), qint64(captions ? 1 : 0));
    }
    QCoreApplication::processEvents();

    // A new size rebuilds the thumbnails from the list the gallery holds; captions alone
    // need the folder read again.
    const bool sizeChanged = newScale != oldScale;
    if (sizeChanged)
        ChildOps::Call(m_gallery.data(), "SizeThumbs");
    ChildOps::Call(m_gallery.data(), "RefreshMe", sizeChanged);
    accept();
}

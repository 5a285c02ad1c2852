#include "viewing/frmImageProps.h"

#include "common/AppGlobals.h"
#include "common/modTransparency.h"
#include "common/Utilities.h"
#include "common/WindowPlacement.h"
#include "viewing/ImagePropsText.h"
#include "viewing/PictureWindows.h"
#include "viewing/ucImgPreview.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPointer<frmImageProps>& openDialog()
{
    static QPointer<frmImageProps> dialog;
    return dialog;
}

const char* const FieldNames[ImagePropsText::LineCount] = {
    "Name:", "Folder:", "Size:", "Width:", "Height:", "Time:", "Date:"};

// Big enough to recognise the picture, small enough to keep the dialog compact.
constexpr QSize PreviewSize(160, 120);

} // namespace

frmImageProps::frmImageProps(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImageProps"));
    setWindowTitle(QStringLiteral("Image Properties"));
    setAttribute(Qt::WA_DeleteOnClose);

    lblCaption = new QLabel(this);
    lblCaption->setObjectName(QStringLiteral("lblCaption"));
    // File names are shown as they are, never read as markup.
    lblCaption->setTextFormat(Qt::PlainText);
    QFont bold = lblCaption->font();
    bold.setBold(true);
    lblCaption->setFont(bold);

    // Sized before the first load, so the picture is fitted to its final area at once.
    ucImage = new ucImgPreview(this);
    ucImage->setObjectName(QStringLiteral("ucImage"));
    ucImage->setFixedSize(PreviewSize);
    // Only a picture to look at here: no opening it again, no picture menu.
    ucImage->setNoDblClick(true);
    QSizePolicy keepRoom = ucImage->sizePolicy();
    keepRoom.setRetainSizeWhenHidden(true);
    ucImage->setSizePolicy(keepRoom);

    auto* fields = new QGridLayout;
    fields->setColumnStretch(1, 1);
    for (int i = 0; i < int(lblInfo.size()); ++i) {
        lblProps[i] = new QLabel(QLatin1String(FieldNames[i]), this);
        lblProps[i]->setObjectName(QStringLiteral("lblProps(%1)").arg(i));
        lblInfo[i] = new QLabel(this);
        lblInfo[i]->setObjectName(QStringLiteral("lblInfo(%1)").arg(i));
        lblInfo[i]->setTextFormat(Qt::PlainText);
        lblInfo[i]->setTextInteractionFlags(Qt::TextSelectableByMouse);
        lblInfo[i]->setMinimumWidth(180);
        lblInfo[i]->setWordWrap(true);
        fields->addWidget(lblProps[i], i, 0, Qt::AlignRight | Qt::AlignTop);
        fields->addWidget(lblInfo[i], i, 1, Qt::AlignTop);
    }

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmImageProps::cmdOK_Click);

    auto* body = new QHBoxLayout;
    body->addWidget(ucImage, 0, Qt::AlignTop);
    body->addLayout(fields, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblCaption);
    layout->addLayout(body);
    layout->addWidget(cmdOK, 0, Qt::AlignRight);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    WindowPlacement::Keep(this, QStringLiteral("frmImageProps"));
}

frmImageProps* frmImageProps::ShowCurrent(QWidget* parent)
{
    if (Globals().CurrentPicture.isEmpty())
        return nullptr;
    QPointer<frmImageProps>& dialog = openDialog();
    if (dialog && !dialog->m_closing) {
        // An open dialog turns to the picture asked about rather than describe an old one.
        dialog->FillLabels();
        PictureWindows::KeepAbove(dialog);
        return dialog;
    }
    dialog = new frmImageProps(parent ? parent : PictureWindows::MainWindow());
    dialog->Form_Load();
    // Fading in processes events: the dialog may be gone already.
    return dialog;
}

frmImageProps* frmImageProps::Current()
{
    return openDialog();
}

void frmImageProps::Form_Load()
{
    const QPointer<frmImageProps> self(this);
    PictureWindows::KeepAbove(this);
    // Filled while see-through, so the dialog never shows half built.
    modTransparency::SetSeeThrough(this, true);
    FillLabels();
    QCoreApplication::processEvents();
    if (self)
        modTransparency::FadeWindow(this, true);
}

void frmImageProps::FillLabels()
{
    const QString path = Globals().CurrentPicture;
    // The size is read first; when it fails the picture is gone and nothing more is read.
    const std::optional<QString> size = Utilities::FileSizeText(path);
    QDateTime modified;
    if (size) {
        ucImage->setFileName(path);
        modified = QFileInfo(path).lastModified();
    }
    // A gone picture must not leave the previous one on show.
    ucImage->setVisible(size.has_value());
    const ImagePropsText::Texts texts = ImagePropsText::Describe(
        path, size, QSize(ucImage->ImgWidth(), ucImage->ImgHeight()), modified);
    lblCaption->setText(texts.caption);
    for (int i = 0; i < int(lblInfo.size()); ++i)
        lblInfo[i]->setText(texts.info[i]);
}

void frmImageProps::cmdOK_Click()
{
    if (m_closing)
        return;
    m_closing = true;
    const QPointer<frmImageProps> self(this);
    modTransparency::FadeWindow(this, false);
    if (self)
        accept();
}

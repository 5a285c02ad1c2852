#include "viewing/frmWorkshop.h"

#include "app/FileChooser.h"
#include "app/SettingsStore.h"
#include "common/MsgBox.h"
#include "common/Utilities.h"
#include "common/WindowKeys.h"
#include "imaging/PictureLoader.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const QChar cr(u'\r');

SettingsStore& settings()
{
    return SettingsStore::global();
}

const QString SaveFilter = QStringLiteral(
    "JPEG Files|*.jpg;*.jpeg|PNG Files|*.png|Bitmap Files|*.bmp|TIFF Files|*.tif;*.tiff|");

// The name the save dialog proposes: beside the original, never the original itself.
QString proposedName(const QString& path)
{
    const QFileInfo info(path);
    QString suffix = info.suffix();
    if (PictureSave::FormatFor(path).isEmpty())
        suffix = QStringLiteral("png");
    return info.completeBaseName() + QStringLiteral(" (edited).") + suffix;
}

bool samePlace(const QString& a, const QString& b)
{
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return a == b || (!canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath());
}

} // namespace

frmWorkshop::frmWorkshop(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(Section);
    setWindowTitle(QStringLiteral("Lumbra - Workshop"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto* layout = new QVBoxLayout(this);
    auto* tools = new QToolBar(this);
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    tools->addAction(QStringLiteral("Rotate &Left"), this, &frmWorkshop::RotateLeft);
    tools->addAction(QStringLiteral("Rotate &Right"), this, &frmWorkshop::RotateRight);
    tools->addAction(QStringLiteral("Flip &Horizontal"), this, &frmWorkshop::FlipHorizontal);
    tools->addAction(QStringLiteral("Flip &Vertical"), this, &frmWorkshop::FlipVertical);
    tools->addAction(QStringLiteral("Re&size..."), this, &frmWorkshop::ChooseSize);
    tools->addSeparator();
    m_undo = tools->addAction(QStringLiteral("&Undo Edit"), this, &frmWorkshop::UndoEdit);
    m_undo->setShortcuts(QKeySequence::Undo);
    tools->addSeparator();
    QAction* saveAs = tools->addAction(QStringLiteral("Save &As..."), this, [this] { SaveAs(); });
    saveAs->setShortcuts(
        WindowKeys::Standard(QKeySequence::SaveAs, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)));
    // A toolbar button shows its action's text without the "&"; given as the button's own
    // text, the underlined letter works with Alt as in a dialog.
    for (QAction* action : tools->actions()) {
        if (action->isSeparator())
            continue;
        action->setIconText(action->text());
        const QString key = action->shortcut().toString(QKeySequence::NativeText);
        if (!key.isEmpty())
            action->setToolTip(QStringLiteral("%1 (%2)").arg(action->toolTip(), key));
    }
    layout->addWidget(tools);
    // Closing asks first while edits are unsaved, so the close keys are safe here.
    WindowKeys::CloseWith(this, false);

    m_picture = new QLabel(this);
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setMinimumSize(200, 150);
    m_picture->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_picture->setStyleSheet(QStringLiteral("background: #808080;"));
    layout->addWidget(m_picture, 1);
    // The format's one setting sits with what the window says about the picture.
    auto* bottom = new QHBoxLayout;
    m_info = new QLabel(this);
    bottom->addWidget(m_info, 1);
    auto* qualityLabel = new QLabel(QStringLiteral("&JPEG quality:"), this);
    m_quality = new QSpinBox(this);
    qualityLabel->setBuddy(m_quality);
    m_quality->setRange(1, 100);
    m_quality->setSuffix(QStringLiteral(" %"));
    m_quality->setToolTip(QStringLiteral("Higher keeps more detail and makes larger JPEG files"));
    int quality = 90;
    settings().readInto(Section, QStringLiteral("JPEG_Quality"), QStringLiteral("90"), quality);
    m_quality->setValue(quality);
    connect(m_quality, &QSpinBox::valueChanged, this,
            [](int value) { settings().write(Section, QStringLiteral("JPEG_Quality"), value); });
    bottom->addWidget(qualityLabel);
    bottom->addWidget(m_quality);
    layout->addLayout(bottom);
    resize(760, 560);
    changed();
}

bool frmWorkshop::OpenPicture(const QString& path)
{
    const LoadedPicture loaded = PictureLoader::Load(path);
    m_path = path;
    m_original = loaded.image;
    m_edits.Clear();
    m_edited = false;
    changed();
    if (loaded.isNull()) {
        m_info->setText(Utilities::FileNameOf(path) + QStringLiteral(": ") + loaded.reason);
        return false;
    }
    return true;
}

void frmWorkshop::edit(PictureEdits::Kind kind)
{
    if (m_original.isNull())
        return;
    m_edits.Add(kind);
    m_edited = true;
    changed();
}

void frmWorkshop::ResizeTo(const QSize& size)
{
    if (m_original.isNull() || size.isEmpty() || size == m_result.size())
        return;
    m_edits.AddResize(size);
    m_edited = true;
    changed();
}

void frmWorkshop::ChooseSize()
{
    if (m_original.isNull())
        return;
    const QSize now = m_result.size();
    QDialog dialog(this);
    dialog.setWindowTitle(QStringLiteral("Lumbra - Resize"));
    auto* form = new QFormLayout(&dialog);
    auto* width = new QSpinBox(&dialog);
    auto* height = new QSpinBox(&dialog);
    for (QSpinBox* box : {width, height}) {
        box->setRange(1, 30000);
        box->setSuffix(QStringLiteral(" pixels"));
    }
    width->setValue(now.width());
    height->setValue(now.height());
    auto* keep = new QCheckBox(QStringLiteral("&Keep proportions"), &dialog);
    keep->setChecked(true);
    form->addRow(QStringLiteral("&Width:"), width);
    form->addRow(QStringLiteral("&Height:"), height);
    form->addRow(keep);
    // Each box follows the other while the proportions are kept.
    connect(width, &QSpinBox::valueChanged, &dialog, [=](int value) {
        if (keep->isChecked()) {
            const QSignalBlocker block(height);
            height->setValue(PictureEdits::HeightFor(now, value));
        }
    });
    connect(height, &QSpinBox::valueChanged, &dialog, [=](int value) {
        if (keep->isChecked()) {
            const QSignalBlocker block(width);
            width->setValue(PictureEdits::WidthFor(now, value));
        }
    });
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    form->addRow(buttons);
    if (dialog.exec() == QDialog::Accepted)
        ResizeTo(QSize(width->value(), height->value()));
}

void frmWorkshop::UndoEdit()
{
    if (m_edits.IsEmpty())
        return;
    m_edits.UndoLast();
    m_edited = true;
    changed();
}

int frmWorkshop::JpegQuality() const
{
    return m_quality->value();
}

void frmWorkshop::SetJpegQuality(int quality)
{
    m_quality->setValue(quality);
}

bool frmWorkshop::SaveAs()
{
    if (m_result.isNull())
        return false;
    FileChooser::Request request;
    request.save = true;
    request.filter = SaveFilter;
    request.folder = QFileInfo(m_path).absolutePath();
    request.fileName = proposedName(m_path);
    for (;;) {
        const QStringList chosen = FileChooser::Ask(this, request);
        if (chosen.isEmpty())
            return false;
        QString target = chosen.first();
        // A name without a known extension gets the original's format, or PNG.
        if (PictureSave::FormatFor(target).isEmpty())
            target += u'.' + QFileInfo(proposedName(m_path)).suffix();
        if (QFileInfo::exists(target)) {
            const bool original = samePlace(target, m_path);
            const QString question =
                original ? QStringLiteral("This is the original picture, ") +
                               Utilities::FileNameOf(target) + QStringLiteral(".") + cr +
                               QStringLiteral(
                                   "Do you want to replace it with the edited one?  The original "
                                   "cannot be brought back.")
                         : QStringLiteral("There is already a file named ") +
                               Utilities::FileNameOf(target) + QStringLiteral(".") + cr +
                               QStringLiteral("Do you want to replace it?");
            if (MsgBox::Ask(this, QStringLiteral("Lumbra - Workshop"), question,
                            original ? QMessageBox::Warning : QMessageBox::Question,
                            QMessageBox::Yes | QMessageBox::No,
                            QMessageBox::No) != QMessageBox::Yes)
                return false;
        }
        QString why;
        if (PictureSave::Save(m_result, target, JpegQuality(), &why)) {
            m_edited = false;
            changed();
            return true;
        }
        const auto again =
            MsgBox::Ask(this, QStringLiteral("Lumbra - Save Failed"),
                        QStringLiteral("The picture could not be saved as ") +
                            Utilities::FileNameOf(target) + QStringLiteral(":") + cr + why + cr +
                            cr + QStringLiteral("Would you like to give it another try?"),
                        QMessageBox::Warning, QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        if (again != QMessageBox::Yes)
            return false;
        request.folder = QFileInfo(target).absolutePath();
        request.fileName = QFileInfo(target).fileName();
    }
}

void frmWorkshop::changed()
{
    m_result = m_edits.Apply(m_original);
    m_undo->setEnabled(!m_edits.IsEmpty());
    if (!m_result.isNull())
        m_info->setText(QStringLiteral("%1   %2 x %3 pixels%4")
                            .arg(Utilities::FileNameOf(m_path))
                            .arg(m_result.width())
                            .arg(m_result.height())
                            .arg(m_edited ? QStringLiteral("   (edited, not saved)") : QString()));
    showResult();
}

void frmWorkshop::showResult()
{
    if (m_result.isNull()) {
        m_picture->clear();
        return;
    }
    const QSize box = m_picture->size().boundedTo(m_result.size());
    const QSize shown = m_result.size().scaled(box, Qt::KeepAspectRatio);
    m_picture->setPixmap(QPixmap::fromImage(PictureLoader::SmoothScaled(m_result, shown)));
}

void frmWorkshop::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    showResult();
}

void frmWorkshop::closeEvent(QCloseEvent* event)
{
    if (m_edited && MsgBox::Ask(this, QStringLiteral("Lumbra - Workshop"),
                                QStringLiteral("Your edits of ") + Utilities::FileNameOf(m_path) +
                                    QStringLiteral(" are not saved.") + cr +
                                    QStringLiteral("Close the workshop anyway?"),
                                QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                                QMessageBox::No) != QMessageBox::Yes) {
        event->ignore();
        return;
    }
    event->accept();
}

#include "viewing/frmPageSetup.h"

#include "common/Formats.h"
#include "common/Utilities.h"
#include "common/WindowPlacement.h"
#include "viewing/PageSetup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QTimer>
#include <QVBoxLayout>

namespace {

// The sketch's place in the "Page Layout" frame, in twips; both keep its centre where it is.
constexpr QRect LandscapeSketch(1975, 450, 496, 405);
constexpr QRect PortraitSketch(2025, 405, 405, 495);
// The part of the frame the sketch can take, in the frame's twips: the room beside the buttons.
constexpr QRect SketchRoom(1800, 300, 720, 660);
// Enough for any print run; more digits would not fit the stored number.
constexpr int MaxCopiesDigits = 4;

QRect toPixels(const QRect& twips)
{
    return {Formats::twipsToPixels(twips.x()), Formats::twipsToPixels(twips.y()),
            Formats::twipsToPixels(twips.width()), Formats::twipsToPixels(twips.height())};
}

} // namespace

frmPageSetup::frmPageSetup(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmPageSetup"));
    setWindowTitle(QStringLiteral("Print Image - Page Setup"));
    setModal(true);

    auto* fraLayout = new QGroupBox(QStringLiteral("Page Layout"), this);
    opLayout = {new QRadioButton(QStringLiteral("&Landscape"), fraLayout),
                new QRadioButton(QStringLiteral("&Portrait"), fraLayout)};
    auto* sketchRoom = new QWidget(fraLayout);
    sketchRoom->setFixedSize(toPixels(SketchRoom).size());
    shaLayout = new QFrame(sketchRoom);
    shaLayout->setObjectName(QStringLiteral("shaLayout"));
    shaLayout->setFrameShape(QFrame::Box);
    shaLayout->setBackgroundRole(QPalette::Base);
    shaLayout->setAutoFillBackground(true);
    auto* layoutGrid = new QGridLayout(fraLayout);
    layoutGrid->addWidget(opLayout[0], 0, 0);
    layoutGrid->addWidget(opLayout[1], 1, 0);
    layoutGrid->addWidget(sketchRoom, 0, 1, 2, 1, Qt::AlignCenter);

    auto* fraAspect = new QGroupBox(QStringLiteral("Image Aspect (size)"), this);
    opAspect = {new QRadioButton(QStringLiteral("Original"), fraAspect),
                new QRadioButton(QStringLiteral("&Stretch to Fit"), fraAspect)};
    auto* aspectColumn = new QVBoxLayout(fraAspect);
    aspectColumn->addWidget(opAspect[0]);
    aspectColumn->addWidget(opAspect[1]);

    for (std::size_t i = 0; i < opLayout.size(); ++i) {
        opLayout[i]->setObjectName(QStringLiteral("opLayout%1").arg(i));
        opAspect[i]->setObjectName(QStringLiteral("opAspect%1").arg(i));
    }

    chkCenter = new QCheckBox(QStringLiteral("Center Image"), this);
    chkCenter->setObjectName(QStringLiteral("chkCenter"));

    cboSource = new QComboBox(this);
    cboSource->setObjectName(QStringLiteral("cboSource"));
    for (const auto& entry : PageSetup::PaperSources)
        cboSource->addItem(QString::fromLatin1(entry.text));

    txtCopies = new QLineEdit(this);
    txtCopies->setObjectName(QStringLiteral("txtCopies"));
    txtCopies->setMaxLength(MaxCopiesDigits);
    // A validator refuses the keystroke, so anything but a digit never reaches the box.
    txtCopies->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("[0-9]{0,%1}").arg(MaxCopiesDigits)), txtCopies));
    txtCopies->installEventFilter(this);

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);

    auto* sourceLabel = new QLabel(QStringLiteral("Paper source:"), this);
    sourceLabel->setBuddy(cboSource);
    auto* copiesLabel = new QLabel(QStringLiteral("Copies:"), this);
    copiesLabel->setBuddy(txtCopies);

    auto* grid = new QGridLayout(this);
    grid->addWidget(fraLayout, 0, 0, 1, 2);
    grid->addWidget(fraAspect, 0, 2, 1, 2);
    grid->addWidget(chkCenter, 1, 0, 1, 4);
    grid->addWidget(sourceLabel, 2, 0);
    grid->addWidget(cboSource, 2, 1);
    grid->addWidget(copiesLabel, 2, 2);
    grid->addWidget(txtCopies, 2, 3);
    grid->addWidget(cmdOK, 3, 3);
    grid->setSizeConstraint(QLayout::SetFixedSize);

    for (int i = 0; i < int(opLayout.size()); ++i)
        connect(opLayout[std::size_t(i)], &QRadioButton::toggled, this, [this, i](bool checked) {
            if (checked)
                opLayout_Click(i);
        });
    connect(cmdOK, &QPushButton::clicked, this, &frmPageSetup::cmdOK_Click);

    Form_Load();
    WindowPlacement::Keep(this, QStringLiteral("frmPageSetup"));
}

bool frmPageSetup::ShowDialog(QWidget* parent)
{
    frmPageSetup dialog(parent);
    return dialog.exec() == QDialog::Accepted;
}

void frmPageSetup::Form_Load()
{
    const PageSetup& setup = PageSetup::Current();
    opLayout[setup.Portrait() ? 1 : 0]->setChecked(true);
    opAspect[setup.Stretch() ? 1 : 0]->setChecked(true);
    const qint32 source = setup.Values[2];
    cboSource->setCurrentIndex(source >= 0 && source < cboSource->count() ? source : 0);
    txtCopies->setText(QString::number(qint64(setup.Values[3]) + 1));
}

void frmPageSetup::opLayout_Click(int index)
{
    const QRect twips = index == 1 ? PortraitSketch : LandscapeSketch;
    shaLayout->setGeometry(toPixels(twips.translated(-SketchRoom.topLeft())));
}

bool frmPageSetup::eventFilter(QObject* watched, QEvent* event)
{
    // Selected after the click that gave the focus has placed the cursor, so typing replaces it.
    if (watched == txtCopies && event->type() == QEvent::FocusIn)
        QTimer::singleShot(0, txtCopies, [box = txtCopies] { Utilities::SelectAllText(box); });
    return QDialog::eventFilter(watched, event);
}

void frmPageSetup::cmdOK_Click()
{
    PageSetup& setup = PageSetup::Current();
    setup.Values[0] = opLayout[1]->isChecked() ? 1 : 0;
    setup.Values[1] = opAspect[1]->isChecked() ? 1 : 0;
    setup.Values[2] = cboSource->currentIndex();
    // The box holds digits only; an empty one counts as 0.
    setup.Values[3] = txtCopies->text().toInt() - 1;
    setup.Center = chkCenter->isChecked();
    accept();
}

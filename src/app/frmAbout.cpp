#include "app/frmAbout.h"

#include "common/AccentBand.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/Utilities.h"
#include "common/WindowPlacement.h"
#include "controls/ucCoolButton.h"
#include "controls/ucSmiley_Wink.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

frmAbout::frmAbout(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("About Lumbra"));
    // Also shown from the tray menu while the main window is hidden.
    setAttribute(Qt::WA_QuitOnClose, false);

    // The icon stands on the user's accent colour, as the splash window does.
    QFrame* band = AccentBand::Make(this, QStringLiteral(":/icons/lumbra.svg"), 80, 18);
    auto* bandLayout = static_cast<QVBoxLayout*>(band->layout());
    auto* smiley = new ucSmiley_Wink(band);
    smiley->setFixedSize(40, 40);
    bandLayout->addWidget(smiley, 0, Qt::AlignHCenter);

    auto* name = new QLabel(QStringLiteral("Lumbra"), this);
    QFont nameFont = name->font();
    nameFont.setPointSizeF(nameFont.pointSizeF() * 2);
    nameFont.setBold(true);
    name->setFont(nameFont);

    auto* description = new QLabel(
        tr("A picture organiser for your desktop. Browse folders of pictures as thumbnails or as "
           "a list with a preview, view them in a window or full screen, play slide shows, put a "
           "picture on your desktop and take screenshots."),
        this);
    description->setWordWrap(true);

    auto* facts = new QFormLayout;
    facts->setHorizontalSpacing(12);
    facts->addRow(tr("Version:"), new QLabel(QStringLiteral(LUMBRA_VERSION), this));
    facts->addRow(tr("Qt:"), new QLabel(QString::fromLatin1(qVersion()), this));
    facts->addRow(tr("System:"), new QLabel(Utilities::WindowsVersionName(true), this));
    for (int row = 0; row < facts->rowCount(); ++row) {
        if (auto* value =
                qobject_cast<QLabel*>(facts->itemAt(row, QFormLayout::FieldRole)->widget()))
            value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    auto* buttons = new QDialogButtonBox(this);
    auto* cmdOK = new ucCoolButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    buttons->addButton(cmdOK, QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* text = new QVBoxLayout;
    text->setContentsMargins(20, 18, 20, 14);
    text->addWidget(name);
    text->addWidget(description);
    text->addSpacing(8);
    text->addLayout(facts);
    text->addStretch();
    text->addWidget(buttons);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(band);
    layout->addLayout(text, 1);

    setMinimumWidth(460);
    WindowPlacement::Keep(this, QStringLiteral("frmAbout"));
}

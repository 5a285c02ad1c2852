#include "app/frmTip.h"

#include "app/SettingsStore.h"
#include "app/TipRules.h"
#include "common/AccentBand.h"
#include "common/AppGlobals.h"
#include "common/Formats.h"
#include "common/Utilities.h"
#include "common/WindowPlacement.h"

#include <QCheckBox>
#include <QDateTime>
#include <QFrame>
#include <QHBoxLayout>
#include <QIcon>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

frmTip::frmTip(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTip"));
    setWindowTitle(QStringLiteral("Tip of the Day"));
    setModal(false);
    // Also opened while the main window is in the tray.
    setAttribute(Qt::WA_QuitOnClose, false);

    // The bulb stands on the user's accent colour, as in the about window.
    QFrame* band = AccentBand::Make(this, QStringLiteral(":/icons/tip.svg"), 48, 14);

    auto* panel = new QFrame(this);
    panel->setBackgroundRole(QPalette::Base);
    panel->setAutoFillBackground(true);
    auto* heading = new QLabel(QStringLiteral("Did you know..."), panel);
    heading->setObjectName(QStringLiteral("lblHeading"));
    QFont headingFont = heading->font();
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.4);
    headingFont.setBold(true);
    heading->setFont(headingFont);

    picTip = new QScrollArea(panel);
    picTip->setObjectName(QStringLiteral("picTip"));
    picTip->setFrameShape(QFrame::NoFrame);
    picTip->setWidgetResizable(true);
    picTip->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    picTip->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    picTip->viewport()->setBackgroundRole(QPalette::Base);
    lblTipText = new QLabel(picTip);
    lblTipText->setObjectName(QStringLiteral("lblTipText"));
    lblTipText->setWordWrap(true);
    lblTipText->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblTipText->setTextFormat(Qt::PlainText);
    lblTipText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont tipFont = lblTipText->font();
    tipFont.setPointSizeF(tipFont.pointSizeF() * 1.15);
    lblTipText->setFont(tipFont);
    picTip->setWidget(lblTipText);
    sbTip = picTip->verticalScrollBar();
    sbTip->setObjectName(QStringLiteral("sbTip"));

    auto* panelLayout = new QVBoxLayout(panel);
    panelLayout->setContentsMargins(14, 12, 10, 10);
    panelLayout->addWidget(heading);
    panelLayout->addWidget(picTip, 1);

    auto* top = new QHBoxLayout;
    top->setSpacing(0);
    top->addWidget(band);
    top->addWidget(panel, 1);

    chkTips = new QCheckBox(QStringLiteral("&Show Tips at Startup"), this);
    chkTips->setObjectName(QStringLiteral("chkTips"));
    const QString captions[] = {QStringLiteral("&Next Tip"), QStringLiteral("&Add Tip..."),
                                QStringLiteral("&Close")};
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(chkTips);
    bottom->addStretch(1);
    for (size_t i = 0; i < cmdTips.size(); ++i) {
        cmdTips[i] = new QPushButton(captions[i], this);
        cmdTips[i]->setObjectName(QStringLiteral("cmdTips(%1)").arg(i));
        cmdTips[i]->setAutoDefault(false);
        bottom->addWidget(cmdTips[i]);
        connect(cmdTips[i], &QPushButton::clicked, this, [this, i] { cmdTips_Click(int(i)); });
    }
    cmdTips[0]->setDefault(true);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(bottom);
    resize(480, 240);

    connect(chkTips, &QCheckBox::toggled, this, &frmTip::chkTips_Click);

    Form_Load();
    WindowPlacement::Keep(this, QStringLiteral("frmTip"));
}

frmTip* frmTip::Open(QWidget* parent)
{
    static QPointer<frmTip> current;
    if (!current) {
        current = new frmTip(parent);
        current->setAttribute(Qt::WA_DeleteOnClose);
    }
    current->show();
    current->raise();
    current->activateWindow();
    return current;
}

void frmTip::Form_Load()
{
    m_loading = true;
    LoadTips();
    chkTips->setChecked(Globals().option(Opt::TipsAtStart));
    ShowTip(true);
    // Without tips there is no other one to show.
    cmdTips[0]->setEnabled(TipCount() > 0);
    m_loading = false;
}

void frmTip::LoadTips()
{
    m_random.seed(quint32(QDateTime::currentMSecsSinceEpoch()));
    m_path = TipRules::FilePath(Utilities::ProgramFolder());
    TipRules::ProvideCopy(m_path, TipRules::InstalledCopy());
    if (const auto tips = TipRules::Load(m_path))
        m_tips = *tips;
    else
        ShowText(TipRules::MissingText());
}

void frmTip::ShowTip(bool random)
{
    const int next = TipRules::NextTip(m_current, TipCount(), random,
                                       [this](int count) { return m_random.bounded(count) + 1; });
    if (next == 0)
        return;
    m_current = next;
    ShowText(TipRules::ShownText(m_tips[m_current - 1]));
}

void frmTip::ShowText(const QString& text)
{
    lblTipText->setText(text);
    picTip->setVerticalScrollBarPolicy(TipRules::NeedsScrollBar(text) ? Qt::ScrollBarAlwaysOn
                                                                      : Qt::ScrollBarAlwaysOff);
    sbTip->setValue(0);
}

void frmTip::chkTips_Click()
{
    if (m_loading)
        return;
    const long on = chkTips->isChecked() ? 1 : 0;
    Globals().Options[Opt::TipsAtStart] = on;
    SettingsStore::global().write(Keys::Option(Opt::TipsAtStart), qint64(on));
}

void frmTip::cmdTips_Click(int index)
{
    switch (index) {
    case 0:
        ShowTip(true);
        break;
    case 1:
        AddTip();
        break;
    case 2:
        close();
        break;
    default:
        break;
    }
}

void frmTip::AddTip(const QString& text)
{
    // One tip is one line of the file.
    QString tip = QString(text).replace(u'\r', u' ').replace(u'\n', u' ');
    if (tip.isEmpty()) {
        QInputDialog box(this);
        box.setWindowTitle(QStringLiteral("Lumbra - Add Help Tip"));
        box.setLabelText(QStringLiteral("Type your new helpful tip below.  Press OK when finished, "
                                        "or cancel to avoid adding the tip."));
        box.setTextValue(QStringLiteral("Add tip here..."));
        // The proposal is there to be typed over.
        if (auto* edit = box.findChild<QLineEdit*>())
            QTimer::singleShot(0, edit, [edit] { Utilities::SelectAllText(edit); });
        if (box.exec() != QDialog::Accepted)
            return;
        tip = box.textValue().replace(u'\r', u' ').replace(u'\n', u' ');
    }
    if (tip.isEmpty() || !TipRules::Append(m_path, tip))
        return;
    // The line as the file now holds it, so it shows as it will the next time.
    m_tips.append(QStringLiteral("...") + tip);
    m_current = TipCount();
    ShowText(TipRules::ShownText(m_tips.last()));
    cmdTips[0]->setEnabled(true);
}

#include "gallery/ucCoolProg.h"

#include "common/AppGlobals.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <limits>

namespace {

constexpr int UserCancelMs = 1200;
constexpr int FolderPictureSize = 16;
// The bar is told about a new position only when its fill moves by this fraction of the total.
constexpr qint64 StepsPerRun = 1000;

const char* const FolderIcons[] = {":/icons/folder-closed.svg", ":/icons/folder-open.svg",
                                   ":/icons/folder-pictures.svg", ":/icons/folder-up.svg"};

QString CountText(qint64 total)
{
    if (total <= 0)
        return QStringLiteral("No Images");
    return QString::number(total) +
           (total > 1 ? QStringLiteral(" Images") : QStringLiteral(" Image"));
}

} // namespace

ucCoolProg::ucCoolProg(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ucCoolProg"));
    // Panel 1 is made first: it is the strip's first label, where a caption is looked for.
    m_caption = new QLabel(this);
    m_caption->setObjectName(QStringLiteral("statusCool(1)"));
    m_caption->setMinimumWidth(1);

    picProgress = new QWidget(this);
    picProgress->setObjectName(QStringLiteral("picProgress"));
    auto* area = new QHBoxLayout(picProgress);
    area->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < int(imgFolder.size()); ++i) {
        auto* picture = new QLabel(picProgress);
        picture->setObjectName(QStringLiteral("imgFolder(%1)").arg(i));
        picture->setPixmap(
            QIcon(QLatin1String(FolderIcons[i])).pixmap(FolderPictureSize, FolderPictureSize));
        area->addWidget(picture, 0, Qt::AlignVCenter);
        imgFolder[size_t(i)] = picture;
    }
    lblProgress = new QLabel(QStringLiteral("Getting Pictures..."), picProgress);
    lblProgress->setObjectName(QStringLiteral("lblProgress"));
    area->addWidget(lblProgress, 0, Qt::AlignVCenter);

    progCool = new QProgressBar(this);
    progCool->setObjectName(QStringLiteral("progCool"));
    // No percentage text: the bar then only needs repainting when its fill moves.
    progCool->setTextVisible(false);
    progCool->setMaximumHeight(fontMetrics().height());

    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setFocusPolicy(Qt::NoFocus);
    // Acting on the press, not the release, lets a busy load see the request sooner.
    connect(cmdCancel, &QPushButton::pressed, this, &ucCoolProg::cmdCancel_Press);

    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("statusCool(2)"));
    m_count->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(picProgress, 0, Qt::AlignVCenter);
    layout->addWidget(progCool, 1, Qt::AlignVCenter);
    layout->addWidget(cmdCancel, 0, Qt::AlignVCenter);
    layout->addWidget(m_caption, 1, Qt::AlignVCenter);
    layout->addSpacing(8);
    layout->addWidget(m_count, 0, Qt::AlignVCenter);

    tmrUserCancel.setObjectName(QStringLiteral("tmrUserCancel"));
    tmrUserCancel.setSingleShot(true);
    tmrUserCancel.setInterval(UserCancelMs);
    connect(&tmrUserCancel, &QTimer::timeout, this, &ucCoolProg::tmrUserCancel_Timer);

    setFolderImage(FolderClosed);
    ShowProgress(0);
}

void ucCoolProg::ShowProgress(qint64 max)
{
    const bool visible = max > 0;
    picProgress->setVisible(visible);
    progCool->setVisible(visible);
    cmdCancel->setVisible(visible);
    // The progress display takes the caption's place; the count stays beside it.
    m_caption->setVisible(!visible);
    if (!visible)
        return;
    progCool->setValue(0);
    progCool->setProperty("Tag", QDateTime::currentDateTime().toString(Qt::ISODateWithMs));
    progCool->setMaximum(int(qMin<qint64>(max, std::numeric_limits<int>::max())));
    m_value = 0;
    m_shownStep = 0;
}

void ucCoolProg::setMax(qint64 total)
{
    m_max = total;
    m_count->setText(CountText(total));
    ShowProgress(total);
}

void ucCoolProg::setValue(qint64 value)
{
    const qint64 max = progCool->maximum();
    if (value >= max) {
        ShowProgress(0);
        return;
    }
    m_value = value;
    // A load may write every one of 100,000 positions; each position the bar hears about
    // costs it a style query, so it only hears about those that move its fill.
    const qint64 step = max > 0 ? value * StepsPerRun / max : 0;
    if (step == m_shownStep)
        return;
    m_shownStep = step;
    progCool->setValue(int(value));
}

void ucCoolProg::setFolderImage(int index)
{
    for (int i = 0; i < int(imgFolder.size()); ++i)
        imgFolder[size_t(i)]->setVisible(i == index);
}

void ucCoolProg::setCaption(const QString& text)
{
    m_caption->setText(text);
}

QLabel* ucCoolProg::Panel(int index) const
{
    switch (index) {
    case 1:
        return m_caption;
    case 2:
        return m_count;
    default:
        return nullptr;
    }
}

QString ucCoolProg::StartTime() const
{
    return progCool->property("Tag").toString();
}

void ucCoolProg::cmdCancel_Press()
{
    // A busy load only lets events through now and then: deal with what is waiting on
    // both sides of the request, so the press shows and the load sees the flag at once.
    QCoreApplication::processEvents();
    Globals().Cancel = true;
    tmrUserCancel.start();
    QCoreApplication::processEvents();
}

void ucCoolProg::tmrUserCancel_Timer()
{
    // A request lasts one timer period, so it cannot stop a load started after it.
    Globals().Cancel = false;
}

#include "viewing/PreviewPane.h"

#include "viewing/ucImgPreview.h"

#include <QLabel>
#include <QVBoxLayout>

PreviewPane::PreviewPane(int margin, QWidget* parent)
    : QWidget(parent), m_caption(new QLabel(this)), m_preview(new ucImgPreview(this))
{
    m_caption->setObjectName(QStringLiteral("lblSelected"));
    m_caption->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_preview->setObjectName(QStringLiteral("ucPreview"));
    m_preview->setMinimumSize(60, 60);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->addWidget(m_caption);
    column->addWidget(m_preview, 1);
}

void PreviewPane::setCaption(const QString& text)
{
    m_caption->setText(text);
    m_caption->setToolTip(text);
}

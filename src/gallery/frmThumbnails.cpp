#include "gallery/frmThumbnails.h"

frmThumbnails::frmThumbnails(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmThumbnails"));
    setWindowTitle(QStringLiteral("My Thumbnails"));
    setMinimumWidth(5000 / 15);
}

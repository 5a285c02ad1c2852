#include "browser/frmMyImages.h"

frmMyImages::frmMyImages(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("frmMyImages"));
    setWindowTitle(QStringLiteral("My Images"));
}

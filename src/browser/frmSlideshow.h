#pragma once

#include <QWidget>

// The slideshow builder child window.
class frmSlideshow : public QWidget
{
    Q_OBJECT
public:
    explicit frmSlideshow(QWidget* parent = nullptr);
};

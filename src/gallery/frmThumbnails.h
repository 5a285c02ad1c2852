#pragma once

#include <QWidget>

// The thumbnail gallery child window.
class frmThumbnails : public QWidget
{
    Q_OBJECT
public:
    explicit frmThumbnails(QWidget* parent = nullptr);
};

#pragma once

#include <QWidget>

// The picture browser child window: folders, a file list and a preview pane.
class frmMyImages : public QWidget
{
    Q_OBJECT
public:
    explicit frmMyImages(QWidget* parent = nullptr);
};

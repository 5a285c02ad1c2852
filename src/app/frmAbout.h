#pragma once

#include <QDialog>

// "About Lumbra": what the program is, and the versions of the program, Qt and the system.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);
};

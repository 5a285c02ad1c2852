#pragma once

#include <QWidget>

class QListWidget;
class QTextBrowser;

// "Lumbra Help": the help pages, with their topics listed on the left.
class frmHelp : public QWidget
{
    Q_OBJECT

public:
    explicit frmHelp(QWidget* parent = nullptr);

    // Shows the topic that starts at this anchor and selects it in the list. An empty or
    // unknown anchor shows the beginning.
    void ShowTopic(const QString& anchor);

private:
    void SelectTopic(const QString& anchor);

    QListWidget* lstTopics;
    QTextBrowser* txtHelp;
};

#pragma once

#include <QWidget>

class QLabel;
class ucImgPreview;

// The chosen picture beside a list or grid: its name above, the picture below. A long name
// never widens the pane (the grid beside it would move under the pointer); the whole name is
// in the caption's tooltip.
class PreviewPane : public QWidget
{
    Q_OBJECT
public:
    explicit PreviewPane(int margin, QWidget* parent = nullptr);

    QLabel* Caption() const { return m_caption; }
    ucImgPreview* Preview() const { return m_preview; }
    void setCaption(const QString& text);

private:
    QLabel* m_caption;
    ucImgPreview* m_preview;
};

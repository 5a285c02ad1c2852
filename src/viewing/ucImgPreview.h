#pragma once

#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <array>

// The picture pane: shows one picture file fitted into its area without distortion (or, in
// stretch mode, filling it), centred. The picture is decoded on a worker thread at the size
// it is shown; the natural size comes from the file's header. A double click opens the
// picture in a window of its own and a right-button release shows the picture menu.
class ucImgPreview : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString FileName READ FileName WRITE setFileName)
    Q_PROPERTY(bool StretchMode READ StretchMode WRITE setStretchMode)
    Q_PROPERTY(bool NoDblClick READ NoDblClick WRITE setNoDblClick)
    Q_PROPERTY(int ImgHeight READ ImgHeight)
    Q_PROPERTY(int ImgWidth READ ImgWidth)

public:
    explicit ucImgPreview(QWidget* parent = nullptr);
    ~ucImgPreview() override;

    QString FileName() const { return m_fileName; }
    // Shows the file; the same name again lays the picture out anew without reading the file,
    // except in stretch mode, which always reads it.
    void setFileName(const QString& name);

    // A picture decoded ahead of time for a file about to be shown: the next assignment of that
    // name takes it instead of decoding, when it was decoded at the size it is shown at.
    void OfferDecoded(const QString& name, const QImage& image, const QSize& naturalSize);

    // Magnifies the picture a quarter step every half second, starting over when it would
    // outgrow the pane; returns when StopZoom() is called or the pane goes away.
    Q_INVOKABLE void ZoomImage();
    void StopZoom() { m_zoomStop = true; }

    qulonglong hwnd() const { return qulonglong(winId()); }
    int ImgHeight() const { return m_natural[0]; }
    int ImgWidth() const { return m_natural[1]; }

    // Resizes the pane (a missing or non-numeric value leaves that side), then lays out anew.
    Q_INVOKABLE void Resize(const QVariant& width = {}, const QVariant& height = {});

    bool StretchMode() const { return m_stretchMode; }
    // Takes effect at the next FileName assignment.
    void setStretchMode(bool stretch) { m_stretchMode = stretch; }

    // 0 default, 1 arrow, 2 cross, 3 text beam, 11 hourglass, 99 the magnifier.
    void setMousepointer(int pointer);

    bool NoDblClick() const { return m_noDblClick; }
    void setNoDblClick(bool value);

    // Where the picture is drawn and whether it is visible, for the layout's callers.
    QRectF ElementRect() const { return m_element; }
    bool ElementVisible() const { return m_elementVisible; }
    // The pixels decoded so far (null until the worker is done).
    QImage DecodedImage() const { return m_image; }
    int ZoomLevel() const { return m_zoomLevel; }

    // Pictures are decoded for the screen's own pixels, so that they stay crisp on a
    // high-density screen: a box of logical size takes this many device pixels at ratio...
    static QSize DevicePixels(const QSizeF& box, qreal ratio);
    // ...and the image decoded for it is marked with the ratio it has against the box (never
    // below 1: a small picture is not shrunk to fewer logical pixels than it has).
    static void MatchRatio(QImage& image, const QSizeF& box);

Q_SIGNALS:
    // The decode of the current file finished (ok false: the file could not be read).
    void Loaded(bool ok);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void decode(const QSize& size);
    void layOut();

    QString m_fileName;
    std::array<int, 2> m_natural{}; // height, width
    QSizeF m_naturalSize;           // the picture's own size, from its header
    QImage m_image;
    QRectF m_element;
    bool m_elementVisible = false;
    bool m_elementStretches = false;
    bool m_stretchMode = false;
    bool m_noDblClick = false;
    bool m_resizing = false;
    bool m_zoomStop = false;
    int m_zoomLevel = 0;
    quint64 m_generation = 0;
    QString m_offeredName;
    QImage m_offeredImage;
    QSize m_offeredNatural;
    QTimer tmrZoom;
};

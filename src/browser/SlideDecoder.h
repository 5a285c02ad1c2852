#pragma once

#include "imaging/PictureLoader.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

class ucImgPreview;

// Shows slides on a picture pane and decodes the next one while the current one is on screen,
// at the size the pane will show it, so that a slide appears at its tick instead of a decode
// later. A photograph of 24 megapixels takes longer to decode than a tick may wait.
class SlideDecoder : public QObject
{
    Q_OBJECT
public:
    explicit SlideDecoder(ucImgPreview* target, QObject* parent = nullptr);
    ~SlideDecoder() override;

    // Shows path on the pane, from the picture decoded ahead when there is one, then decodes
    // upcoming (empty: nothing to prepare) once the pane has painted path, so the decode does not
    // compete with the slide that is due now.
    void Show(const QString& path, const QString& upcoming);

    // Off, every slide is decoded when it is shown (for comparison).
    void setDecodingAhead(bool on) { m_decodingAhead = on; }
    // Whether path has been decoded ahead and waits to be shown.
    bool IsReady(const QString& path) const
    {
        return !m_readyPath.isEmpty() && m_readyPath == path;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // The picture for path has been decoded ahead (or found unreadable: then it is not ready).
    void Prepared(const QString& path);

private:
    void prepare(const QString& path);

    QPointer<ucImgPreview> m_target;
    bool m_decodingAhead = true;
    QString m_upcoming;
    // Starts the decode ahead: right after the pane's paint, or after a while when the pane
    // does not paint (hidden, or nothing to show).
    QTimer m_afterPaint;
    QString m_pendingPath;
    QString m_readyPath;
    LoadedPicture m_ready;
    quint64 m_generation = 0;
    // Last member: its destruction waits for a decode still running.
    QThreadPool m_pool;
};

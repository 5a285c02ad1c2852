#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <vector>

// Simple edits of a picture kept as a list of operations, applied in order to the original.
// The original is never changed, so any edit can be taken back and the result is made afresh
// from full-quality pixels each time.
class PictureEdits
{
public:
    enum class Kind
    {
        RotateLeft,
        RotateRight,
        FlipHorizontal,
        FlipVertical,
        Resize,
    };

    struct Edit
    {
        Kind kind;
        QSize size; // Resize only
    };

    void Add(Kind kind) { m_edits.push_back({kind, {}}); }
    void AddResize(const QSize& size) { m_edits.push_back({Kind::Resize, size}); }
    // Takes back the last edit.
    void UndoLast();
    void Clear() { m_edits.clear(); }
    bool IsEmpty() const { return m_edits.empty(); }
    const std::vector<Edit>& List() const { return m_edits; }

    QImage Apply(const QImage& original) const;
    // The size the edits give a picture of size original, without touching pixels.
    QSize ResultSize(const QSize& original) const;

    // The height that keeps the proportions of size at width (at least 1), and the width
    // at height.
    static int HeightFor(const QSize& size, int width);
    static int WidthFor(const QSize& size, int height);

private:
    std::vector<Edit> m_edits;
};

// Writing an edited picture: the format follows the file name's extension.
namespace PictureSave {

// "bmp", "jpeg", "png" or "tiff" for the extension of path; empty for any other.
QByteArray FormatFor(const QString& path);

// Writes image to path in its format, whole or not at all; quality (1..100) counts for JPEG.
bool Save(const QImage& image, const QString& path, int quality, QString* reason = nullptr);

} // namespace PictureSave

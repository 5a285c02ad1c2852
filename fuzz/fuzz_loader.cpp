// Feeds arbitrary bytes to the picture loader: every input must give a picture or a reason,
// within the sanitizers' and libFuzzer's time and memory limits.
#include "imaging/PictureLoader.h"

#include <QGuiApplication>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // Text in metafiles needs fonts, hence a GUI application, and offscreen needs no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static std::unique_ptr<QGuiApplication> app = std::make_unique<QGuiApplication>(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));

    // The name only matters when the content does not tell, so each hint goes with a box size
    // that sends the decoders down a different path.
    struct Case
    {
        const char* name;
        QSize box;
        bool enlarge;
    };
    static const Case cases[] = {
        {"picture", {}, false},
        {"picture.dib", {64, 64}, false},
        {"picture.ico", {220, 220}, false},
        {"picture.wmf", {300, 200}, true},
    };
    for (const Case& c : cases) {
        const LoadedPicture picture =
            PictureLoader::LoadData(bytes, QString::fromLatin1(c.name), c.box, c.enlarge);
        if (picture.isNull() == picture.reason.isEmpty())
            std::abort(); // a picture with a reason, or neither
    }
    return 0;
}

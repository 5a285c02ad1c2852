#include "imaging/JpegDecoder.h"

#include <csetjmp>
#include <limits>
#include <cstdio>

extern "C" {
#include <jerror.h>
#include <jpeglib.h>
}

namespace JpegDecoder {

namespace {

struct ErrorManager
{
    jpeg_error_mgr manager;
    std::jmp_buf jump;
    bool truncated;
};

[[noreturn]] void errorExit(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->jump, 1);
}

void emitMessage(j_common_ptr info, int level)
{
    // Level -1 is a warning about the data; the one that matters is running out of it.
    if (level < 0 && info->err->msg_code == JWRN_JPEG_EOF)
        reinterpret_cast<ErrorManager*>(info->err)->truncated = true;
}

void outputMessage(j_common_ptr) {}

int reductionFor(JDIMENSION width, JDIMENSION height, const QSize& atLeast)
{
    if (atLeast.isEmpty())
        return 1;
    for (int denominator : {8, 4, 2}) {
        const qint64 w = (qint64(width) + denominator - 1) / denominator;
        const qint64 h = (qint64(height) + denominator - 1) / denominator;
        if (w >= atLeast.width() && h >= atLeast.height())
            return denominator;
    }
    return 1;
}

} // namespace

Result Decode(const uchar* data, qint64 size, const QSize& atLeast, qint64 maxPixels)
{
    Result result;
    if (!data || size <= 0 || quint64(size) > std::numeric_limits<unsigned long>::max())
        return result;

    jpeg_decompress_struct info;
    ErrorManager errors;
    info.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = errorExit;
    errors.manager.emit_message = emitMessage;
    errors.manager.output_message = outputMessage;
    errors.truncated = false;
    jpeg_create_decompress(&info);

    // libjpeg reports fatal errors by jumping back here; the image lives in memory, so what
    // was assigned to it before the jump is still there to be released.
    if (setjmp(errors.jump)) {
        jpeg_destroy_decompress(&info);
        result.image = QImage();
        result.truncated = errors.truncated;
        return result;
    }

    jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
    jpeg_read_header(&info, TRUE);
    if (info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK) {
        jpeg_destroy_decompress(&info);
        result.unsupported = true;
        return result;
    }
    info.scale_num = 1;
    info.scale_denom = unsigned(reductionFor(info.image_width, info.image_height, atLeast));
    if (info.scale_denom > 1) {
        // The reduced picture is scaled down further anyway: the faster transforms lose nothing
        // that shows.
        info.dct_method = JDCT_IFAST;
        info.do_fancy_upsampling = FALSE;
    }
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    info.out_color_space = JCS_EXT_BGRX;
#else
    info.out_color_space = JCS_EXT_XRGB;
#endif
    jpeg_calc_output_dimensions(&info);
    if (qint64(info.output_width) * info.output_height > maxPixels || info.output_width == 0 ||
        info.output_height == 0 || info.output_width > 65535 || info.output_height > 65535) {
        jpeg_destroy_decompress(&info);
        return result;
    }

    result.image = QImage(int(info.output_width), int(info.output_height), QImage::Format_RGB32);
    if (result.image.isNull()) {
        jpeg_destroy_decompress(&info);
        return result;
    }
    jpeg_start_decompress(&info);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = result.image.scanLine(int(info.output_scanline));
        if (jpeg_read_scanlines(&info, &row, 1) != 1)
            break;
        // A file that ends early is padded with grey by libjpeg; stop at the first sign.
        if (errors.truncated)
            break;
    }
    result.truncated = errors.truncated;
    if (result.truncated)
        jpeg_abort_decompress(&info);
    else
        jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    if (result.truncated)
        result.image = QImage();
    return result;
}

} // namespace JpegDecoder

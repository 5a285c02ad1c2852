#include "imaging/JpegDecoder.h"

#include <QThread>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <system_error>
#include <thread>

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

// libjpeg scales by M/8 for M from 1 to 16; the smallest M whose picture still covers atLeast.
int eighthsFor(JDIMENSION width, JDIMENSION height, const QSize& atLeast)
{
    if (atLeast.isEmpty())
        return 8;
    for (int eighths = 1; eighths < 8; ++eighths) {
        const qint64 w = (qint64(width) * eighths + 7) / 8;
        const qint64 h = (qint64(height) * eighths + 7) / 8;
        if (w >= atLeast.width() && h >= atLeast.height())
            return eighths;
    }
    return 8;
}

void setUp(jpeg_decompress_struct& info, ErrorManager& errors)
{
    info.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = errorExit;
    errors.manager.emit_message = emitMessage;
    errors.manager.output_message = outputMessage;
    errors.truncated = false;
    jpeg_create_decompress(&info);
}

void chooseOutput(jpeg_decompress_struct& info, int eighths)
{
    info.scale_num = unsigned(eighths);
    info.scale_denom = 8;
    if (eighths < 8) {
        // The reduced picture is scaled down further anyway: the faster transform loses nothing
        // that shows, and from a half down neither does blocky chroma.
        info.dct_method = JDCT_IFAST;
        info.do_fancy_upsampling = eighths <= 4 ? FALSE : TRUE;
    }
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    info.out_color_space = JCS_EXT_BGRX;
#else
    info.out_color_space = JCS_EXT_XRGB;
#endif
}

enum class Outcome
{
    Complete,
    Truncated, // the data ended before the rows did
    Failed
};

// Decodes the output rows [0, rows) of the data into image from row firstRow on, straight into
// its scanlines.
Outcome decodeRows(const uchar* data, qint64 size, int eighths, QImage& image, int firstRow,
                   int rows)
{
    jpeg_decompress_struct info;
    ErrorManager errors;
    setUp(info, errors);
    // libjpeg reports fatal errors by jumping back here.
    if (setjmp(errors.jump)) {
        jpeg_destroy_decompress(&info);
        return errors.truncated ? Outcome::Truncated : Outcome::Failed;
    }
    jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
    jpeg_read_header(&info, TRUE);
    chooseOutput(info, eighths);
    jpeg_start_decompress(&info);
    if (int(info.output_width) != image.width() || int(info.output_height) < rows) {
        jpeg_destroy_decompress(&info);
        return Outcome::Failed;
    }
    while (int(info.output_scanline) < rows) {
        JSAMPROW lines[16];
        const int count =
            std::min<int>({16, int(info.rec_outbuf_height), rows - int(info.output_scanline)});
        for (int i = 0; i < count; ++i)
            lines[i] = image.scanLine(firstRow + int(info.output_scanline) + i);
        if (jpeg_read_scanlines(&info, lines, JDIMENSION(count)) == 0)
            break;
        // A file that ends early is padded with grey by libjpeg; stop at the first sign.
        if (errors.truncated)
            break;
    }
    const Outcome outcome = errors.truncated                    ? Outcome::Truncated
                            : int(info.output_scanline) >= rows ? Outcome::Complete
                                                                : Outcome::Failed;
    // The first part of a split picture stops before its data ends.
    jpeg_abort_decompress(&info);
    jpeg_destroy_decompress(&info);
    return outcome;
}

// Rewrites the height in the frame header of a JPEG header; false when there is none.
bool setFrameHeight(QByteArray& header, int height)
{
    auto* p = reinterpret_cast<uchar*>(header.data());
    qsizetype at = 2;
    while (at + 7 <= header.size() && p[at] == 0xFF) {
        const uchar marker = p[at + 1];
        if (marker == 0xFF) {
            ++at;
            continue;
        }
        if (marker == 0xDA)
            return false;
        if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 &&
            marker != 0xCC) {
            p[at + 5] = uchar(height >> 8);
            p[at + 6] = uchar(height & 0xFF);
            return true;
        }
        at += 2 + ((p[at + 2] << 8) | p[at + 3]);
    }
    return false;
}

// Counts the restart markers of the data from `from` on shift places back (RSTn becomes
// RST(n - shift)), so that the data may start after a marker other than the last RST7.
void renumberRestarts(QByteArray& jpeg, qsizetype from, int shift)
{
    auto* p = reinterpret_cast<uchar*>(jpeg.data());
    const qsizetype size = jpeg.size();
    for (qsizetype at = from; at + 1 < size; ++at) {
        const auto* ff = static_cast<uchar*>(std::memchr(p + at, 0xFF, size_t(size - at - 1)));
        if (!ff)
            return;
        at = ff - p;
        const uchar next = p[at + 1];
        if (next >= 0xD0 && next <= 0xD7)
            p[at + 1] = uchar(0xD0 + ((next - 0xD0 - shift + 8) & 7));
        else if (next != 0x00 && next != 0xFF)
            return; // the end of the data
    }
}

// A baseline picture with restart markers can be cut at a marker that falls on a row of MCUs:
// the second part becomes a picture of its own (the header with a smaller height, then the data
// after the marker, restart numbers counted again from 0), and both parts decode at once.
struct Split
{
    QByteArray secondPart;
    int firstRows = 0; // output rows above the cut
};

std::optional<Split> findSplit(const uchar* data, qint64 size, const jpeg_decompress_struct& info,
                               qint64 headerBytes, int eighths)
{
    if (info.restart_interval == 0 || info.progressive_mode || info.comps_in_scan < 2 ||
        info.comps_in_scan != info.num_components || QThread::idealThreadCount() < 2)
        return std::nullopt;
    const qint64 mcuWidth = info.max_h_samp_factor * DCTSIZE,
                 mcuHeight = info.max_v_samp_factor * DCTSIZE;
    const qint64 mcusPerRow = (info.image_width + mcuWidth - 1) / mcuWidth;
    const qint64 mcuRows = (info.image_height + mcuHeight - 1) / mcuHeight;
    qint64 cutRow = 0;
    for (qint64 offset = 0; offset < mcuRows / 4 && !cutRow; ++offset) {
        for (const qint64 row : {mcuRows / 2 - offset, mcuRows / 2 + offset}) {
            if (row > 0 && row < mcuRows && row * mcusPerRow % info.restart_interval == 0) {
                cutRow = row;
                break;
            }
        }
    }
    if (!cutRow)
        return std::nullopt;

    // Find the restart marker that ends the intervals above the cut.
    const qint64 markersBefore = cutRow * mcusPerRow / info.restart_interval;
    qint64 seen = 0, at = headerBytes;
    while (seen < markersBefore) {
        const auto* ff = static_cast<const uchar*>(std::memchr(data + at, 0xFF, size_t(size - at)));
        if (!ff || ff + 1 >= data + size)
            return std::nullopt;
        at = ff - data + 2;
        if (ff[1] >= 0xD0 && ff[1] <= 0xD7)
            ++seen;
        else if (ff[1] != 0x00 && ff[1] != 0xFF)
            return std::nullopt; // another marker inside the data: leave such files alone
        else if (ff[1] == 0xFF)
            --at; // fill byte: the next one may start a marker
    }

    Split split;
    split.firstRows = int(cutRow * mcuHeight * eighths / 8);
    split.secondPart = QByteArray(reinterpret_cast<const char*>(data), headerBytes);
    if (!setFrameHeight(split.secondPart, int(info.image_height - cutRow * mcuHeight)))
        return std::nullopt;
    split.secondPart.append(reinterpret_cast<const char*>(data + at), size - at);
    renumberRestarts(split.secondPart, headerBytes, int(markersBefore % 8));
    return split;
}

} // namespace

Result Decode(const uchar* data, qint64 size, const QSize& atLeast, qint64 maxPixels)
{
    Result result;
    if (!data || size <= 0 || quint64(size) > std::numeric_limits<unsigned long>::max())
        return result;

    // A first pass over the header chooses the output and where the data may be cut.
    jpeg_decompress_struct info;
    ErrorManager errors;
    setUp(info, errors);
    if (setjmp(errors.jump)) {
        jpeg_destroy_decompress(&info);
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
    const int eighths = eighthsFor(info.image_width, info.image_height, atLeast);
    chooseOutput(info, eighths);
    jpeg_calc_output_dimensions(&info);
    const int width = int(info.output_width), height = int(info.output_height);
    if (qint64(info.output_width) * info.output_height > maxPixels || info.output_width == 0 ||
        info.output_height == 0 || info.output_width > 65535 || info.output_height > 65535) {
        jpeg_destroy_decompress(&info);
        return result;
    }
    // Cutting is exact only where no output row depends on the rows of its neighbours.
    std::optional<Split> split;
    if (!info.do_fancy_upsampling)
        split = findSplit(data, size, info, info.src->next_input_byte - data, eighths);
    jpeg_destroy_decompress(&info);

    result.image = QImage(width, height, QImage::Format_RGB32);
    if (result.image.isNull())
        return result;
    Outcome outcome = Outcome::Failed;
    if (split) {
        Outcome second = Outcome::Failed;
        std::thread worker;
        try {
            worker = std::thread([&] {
                second = decodeRows(reinterpret_cast<const uchar*>(split->secondPart.constData()),
                                    split->secondPart.size(), eighths, result.image,
                                    split->firstRows, height - split->firstRows);
            });
        } catch (const std::system_error&) {
            split.reset(); // no thread to spare: decode in one go
        }
        if (split) {
            const Outcome first =
                decodeRows(data, size, eighths, result.image, 0, split->firstRows);
            worker.join();
            outcome = first == Outcome::Complete ? second : first;
        }
    }
    // A cut that did not work out costs a second decode, never a wrong picture.
    if (outcome != Outcome::Complete)
        outcome = decodeRows(data, size, eighths, result.image, 0, height);
    result.truncated = outcome == Outcome::Truncated;
    if (outcome != Outcome::Complete)
        result.image = QImage();
    return result;
}

} // namespace JpegDecoder

#include "gallery/GalleryLayout.h"

#include "common/Formats.h"

#include <algorithm>
#include <cmath>

namespace GalleryLayout {

namespace {

// Row counts past this stay exact in a double and far beyond any folder.
constexpr double RowLimit = 1e9;

double marginOf(int box)
{
    return box * 0.07;
}

double stepOf(int box)
{
    return box * 1.1;
}

// Top of a row or left of a column on the canvas.
double lineStart(int line, int box)
{
    return line * stepOf(box) + marginOf(box);
}

// The row (or column) whose cell spans coord, or -1 in the gaps: the step is wider than the
// box. The division only estimates; the cell's own edges decide, so a point on an edge never
// lands in the wrong cell through rounding.
double lineAt(double coord, int box)
{
    const double guess = std::floor((coord - marginOf(box)) / stepOf(box));
    if (!(guess < RowLimit))
        return -1;
    for (double line = std::max(0.0, guess - 1); line <= guess + 1; ++line) {
        const double start = lineStart(int(line), box);
        if (coord >= start && coord < start + box)
            return line;
    }
    return -1;
}

} // namespace

int BoxForScale(int scale)
{
    return int(Formats::bankersRound((scale + 1) * 20.0));
}

int Pitch(int box)
{
    return int(Formats::bankersRound(box * 1.13));
}

int Columns(int box, int innerWidth, int sideBarWidth)
{
    const int pitch = Pitch(box);
    if (pitch < 1)
        return 1;
    const int available = innerWidth - sideBarWidth - 25;
    return std::max(1, available / pitch);
}

QPointF CellPos(int index, int columns, int box)
{
    const int cols = std::max(1, columns);
    return {lineStart(index % cols, box), lineStart(index / cols, box)};
}

int Rows(int count, int columns)
{
    const int cols = std::max(1, columns);
    return count / cols + (count % cols ? 1 : 0);
}

double CanvasHeight(int count, int columns, int box)
{
    return Rows(count, columns) * box * 1.11;
}

ScrollSetup ScrollFor(double canvasHeight, int viewportHeight, int thumbHeight)
{
    ScrollSetup setup;
    setup.enabled = canvasHeight > viewportHeight;
    if (setup.enabled)
        setup.max = int(Formats::bankersRound(canvasHeight - viewportHeight));
    setup.largeChange = int(Formats::bankersRound(thumbHeight * 3.0));
    setup.smallChange = int(Formats::bankersRound(thumbHeight / 2.0));
    return setup;
}

QRectF FitInCell(const QSizeF& picture, int box)
{
    const double w = picture.width();
    const double h = picture.height();
    if (w <= 0 || h <= 0)
        return {};
    const double inner = box - 2;
    const double scale = (w > inner || h > inner) ? std::min(inner / w, inner / h) : 1.0;
    const QSizeF scaled(w * scale, h * scale);
    return {QPointF((inner - scaled.width()) / 2, (inner - scaled.height()) / 2), scaled};
}

int IndexAt(const QPointF& canvasPoint, int columns, int box, int count)
{
    if (box <= 0 || count <= 0)
        return -1;
    const int cols = std::max(1, columns);
    const double row = lineAt(canvasPoint.y(), box);
    const double col = lineAt(canvasPoint.x(), box);
    if (row < 0 || col < 0 || col >= cols)
        return -1;
    const qint64 index = qint64(row) * cols + qint64(col);
    return index < count ? int(index) : -1;
}

std::pair<int, int> VisibleRange(double scrollTop, int viewportHeight, int columns, int box,
                                 int count)
{
    if (box <= 0 || count <= 0 || viewportHeight <= 0)
        return {-1, -1};
    const int cols = std::max(1, columns);
    const double bottom = scrollTop + viewportHeight;
    const int lastRowOfGrid = Rows(count, cols) - 1;

    // Estimate from the arithmetic, then settle against rowTop itself so rounding in the
    // division can never drop or add a row at the edges.
    const double firstGuess = std::floor((scrollTop - marginOf(box) - box) / stepOf(box));
    int first = int(std::clamp(firstGuess, 0.0, double(lastRowOfGrid) + 1));
    while (first > 0 && lineStart(first - 1, box) + box > scrollTop)
        --first;
    while (first <= lastRowOfGrid && lineStart(first, box) + box <= scrollTop)
        ++first;

    const double lastGuess = std::ceil((bottom - marginOf(box)) / stepOf(box));
    int last = int(std::clamp(lastGuess, -1.0, double(lastRowOfGrid)));
    while (last >= 0 && lineStart(last, box) >= bottom)
        --last;
    while (last < lastRowOfGrid && lineStart(last + 1, box) < bottom)
        ++last;

    if (first > last)
        return {-1, -1};
    return {first * cols, std::min(count - 1, last * cols + cols - 1)};
}

int RowsPerPage(int viewportHeight, int box)
{
    if (box <= 0)
        return 1;
    return std::max(1, int(std::floor(viewportHeight / stepOf(box))));
}

int MoveTo(int current, Move move, int columns, int count, int rowsPerPage,
           const std::function<bool(int)>& hidden)
{
    const auto shown = [&](int index) { return index >= 0 && index < count && !hidden(index); };
    // The nearest shown cell from index on, walking by step; -1 past either end.
    const auto walk = [&](int index, int step) {
        while (index >= 0 && index < count && !shown(index))
            index += step;
        return shown(index) ? index : -1;
    };
    const int first = walk(0, 1);
    if (first < 0)
        return -1;
    const int last = walk(count - 1, -1);
    if (!shown(current))
        return move == Move::End ? last : first;

    const int cols = std::max(1, columns);
    const int pageRows = std::max(1, rowsPerPage);
    int found = -1;
    switch (move) {
    case Move::Left:
        found = walk(current - 1, -1);
        break;
    case Move::Right:
        found = walk(current + 1, 1);
        break;
    case Move::Up:
        found = walk(current - cols, -cols);
        break;
    case Move::Down:
        found = walk(current + cols, cols);
        // The row below ends before this column: its last cell is the nearest.
        if (found < 0 && current / cols < (last / cols))
            found = last;
        break;
    case Move::PageUp: {
        const int target = std::max(current % cols, current - pageRows * cols);
        found = walk(target, -cols);
        if (found < 0)
            found = walk(target, cols);
        break;
    }
    case Move::PageDown: {
        // Past the end a page goes to the last cell, as the column may not reach that far.
        const int target = current + pageRows * cols;
        found = target < count ? walk(target, cols) : -1;
        if (found < 0)
            found = last;
        break;
    }
    case Move::Home:
        found = first;
        break;
    case Move::End:
        found = last;
        break;
    }
    return found >= 0 ? found : current;
}

int ScrollToShow(double cellTop, int box, int scrollTop, int viewportHeight)
{
    // The gap above the first row stays in view with it, and the one below the last.
    const double margin = marginOf(box);
    if (cellTop - margin < scrollTop)
        return std::max(0, int(std::floor(cellTop - margin)));
    const double bottom = cellTop + box + margin;
    if (bottom > scrollTop + viewportHeight)
        return int(std::ceil(bottom - viewportHeight));
    return scrollTop;
}

} // namespace GalleryLayout

#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <utility>

// The gallery's cell arithmetic, in pixels. The column count uses a pitch of 1.13 x box, the
// placement steps by 1.1 x box and the canvas gives each row 1.11 x box: the three factors
// differ on purpose, and the grid's look depends on keeping them apart.
namespace GalleryLayout {

// Edge of a square cell for the "ThumbSize" scale (1 to 10): 1 gives 40, 3 gives 80.
int BoxForScale(int scale);

// Width a column claims when counting how many fit.
int Pitch(int box);
// Cells per row in a window of inner width innerWidth beside a side bar; never below one.
int Columns(int box, int innerWidth, int sideBarWidth);

// Top left of cell index on the canvas.
QPointF CellPos(int index, int columns, int box);

// Rows needed for count cells, the last one possibly partly filled.
int Rows(int count, int columns);
// Height of the canvas that carries count cells.
double CanvasHeight(int count, int columns, int box);

// The vertical scroll bar's range for a canvas shown through a viewport. Max is 0 while the
// canvas fits, so a disabled bar cannot move it.
struct ScrollSetup
{
    bool enabled = false;
    int max = 0;
    int largeChange = 0;
    int smallChange = 0;
};
ScrollSetup ScrollFor(double canvasHeight, int viewportHeight, int thumbHeight);

// Where a picture goes inside a cell's inner area (box - 2 each way): shrunk to fit keeping
// its proportions, never enlarged, centred. Empty for a picture without a size.
QRectF FitInCell(const QSizeF& picture, int box);

// The cell under a canvas point, or -1 in the gaps between cells and past the last one.
int IndexAt(const QPointF& canvasPoint, int columns, int box, int count);

// First and last index of the rows that show in a viewport whose top is scrollTop on the
// canvas; (-1, -1) when no cell does.
std::pair<int, int> VisibleRange(double scrollTop, int viewportHeight, int columns, int box,
                                 int count);

// Whole rows that fit in a viewport, never below one: how far a page key moves.
int RowsPerPage(int viewportHeight, int box);

// Where a navigation key takes the current cell.
enum class Move
{
    Left,
    Right,
    Up,
    Down,
    PageUp,
    PageDown,
    Home,
    End
};
// The cell a key moves to from current, among count cells in rows of columns, stepping over
// removed cells (hidden tells which). Left and Right run through the rows as text does; Up
// and Down keep the column, and Down from a row the next one does not reach goes to the last
// cell; a page moves rowsPerPage rows, up to the first row at most and down to the last cell.
// Without a current cell any key but End gives the first shown cell. current is returned
// where the key leads nowhere, and -1 when no cell is shown at all.
int MoveTo(int current, Move move, int columns, int count, int rowsPerPage,
           const std::function<bool(int)>& hidden);

// The scroll position that brings a cell whose canvas top is cellTop into a viewport now at
// scrollTop, moving as little as possible; scrollTop when the cell shows already.
int ScrollToShow(double cellTop, int box, int scrollTop, int viewportHeight);

} // namespace GalleryLayout

#pragma once

#include <QColor>
#include <QDate>
#include <QString>

#include <optional>

// Text conversions and number formats shared by every window. The conversions that can fail
// return an empty optional, so callers keep the value they had.
namespace Formats {

// Rounds half-way values to the even neighbour (2.5 -> 2, 3.5 -> 4).
qint64 bankersRound(double value);

// Text to number: surrounding blanks are ignored, decimals are rounded to even; an empty or
// non-numeric text fails.
std::optional<qint64> toLong(const QString& text);
std::optional<double> toDouble(const QString& text);

// Text to boolean: "True"/"False" in any case, or any number (non-zero is true).
std::optional<bool> toBool(const QString& text);
QString fromBool(bool value); // "True" or "False"

// "#,##0": at least one digit, with the locale's group separator.
QString thousands(qint64 value);
// "#,###": like "#,##0", but zero shows as nothing.
QString thousandsNoZero(qint64 value);
// "000000000": nine digits, zero-padded.
QString nineDigits(qint64 value);
// "mmddyyyy".
QString mmddyyyy(const QDate& date);

// Window geometry is kept in twips in the settings: 15 to a pixel.
constexpr int TwipsPerPixel = 15;
constexpr qint64 pixelsToTwips(qint64 pixels) { return pixels * TwipsPerPixel; }
constexpr int twipsToPixels(qint64 twips) { return int(twips / TwipsPerPixel); }

// A colour stored as 0x00BBGGRR, as the settings keep it.
QColor colorFromBgr(qint64 bgr);
qint64 bgrFromColor(const QColor& color);

} // namespace Formats

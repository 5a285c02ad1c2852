#include "common/Formats.h"

#include <QColor>
#include <QLocale>

#include <cmath>

namespace Formats {

qint64 bankersRound(double value)
{
    // nearbyint follows the current rounding mode, which is round-half-even by default.
    return qint64(std::nearbyint(value));
}

std::optional<double> toDouble(const QString& text)
{
    bool ok = false;
    const double value = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<qint64> toLong(const QString& text)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    const qint64 whole = trimmed.toLongLong(&ok);
    if (ok)
        return whole;
    const auto value = toDouble(trimmed);
    if (!value || std::fabs(*value) > 9.2e18)
        return std::nullopt;
    return bankersRound(*value);
}

std::optional<bool> toBool(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    if (const auto number = toDouble(trimmed))
        return *number != 0.0;
    return std::nullopt;
}

QString fromBool(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString thousands(qint64 value)
{
    // The C locale omits group separators unless told otherwise.
    QLocale locale;
    locale.setNumberOptions(locale.numberOptions() & ~QLocale::OmitGroupSeparator);
    return locale.toString(value);
}

QString thousandsNoZero(qint64 value)
{
    return value == 0 ? QString() : thousands(value);
}

QString nineDigits(qint64 value)
{
    if (value < 0)
        return u'-' + QString::number(-value).rightJustified(9, u'0');
    return QString::number(value).rightJustified(9, u'0');
}

QString mmddyyyy(const QDate& date)
{
    return date.toString(QStringLiteral("MMddyyyy"));
}

QColor colorFromBgr(qint64 bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

qint64 bgrFromColor(const QColor& color)
{
    return qint64(color.red()) | (qint64(color.green()) << 8) | (qint64(color.blue()) << 16);
}

} // namespace Formats

#include "app/OptionsRules.h"

#include <array>

namespace OptionsRules {

QString MinutesCaption(qint64 minutes)
{
    return QString::number(minutes) + QStringLiteral(" minutes");
}

int MinutesOfCaption(const QString& caption)
{
    const QString front = caption.left(2).trimmed();
    int sign = 1;
    qsizetype at = 0;
    if (at < front.size() && (front[at] == u'-' || front[at] == u'+')) {
        sign = front[at] == u'-' ? -1 : 1;
        ++at;
    }
    int value = 0;
    for (; at < front.size() && front[at].isDigit(); ++at)
        value = value * 10 + front[at].digitValue();
    return sign * value;
}

int MinToTrayStep(int shown, bool up)
{
    static constexpr std::array<int, 4> ladder{3, 10, 30, 60};
    for (size_t i = 0; i < ladder.size(); ++i) {
        if (ladder[i] != shown)
            continue;
        if (up)
            return ladder[qMin(i + 1, ladder.size() - 1)];
        return ladder[i == 0 ? 0 : i - 1];
    }
    return 0;
}

} // namespace OptionsRules

#include "viewing/PageSetup.h"

QPrinter::PaperSource PageSetup::PaperSource() const
{
    const qint32 index = Values[2];
    if (index < 0 || index >= qint32(PaperSources.size()))
        return QPrinter::Auto;
    return PaperSources[std::size_t(index)].source;
}

PageSetup& PageSetup::Current()
{
    static PageSetup setup;
    return setup;
}

#include "viewing/PictureOpener.h"

namespace PictureOpener {

namespace {

std::function<void(const QString&)>& handler()
{
    static std::function<void(const QString&)> current;
    return current;
}

} // namespace

void Open(const QString& path)
{
    if (!path.isEmpty() && handler())
        handler()(path);
}

void SetHandler(std::function<void(const QString&)> newHandler)
{
    handler() = std::move(newHandler);
}

} // namespace PictureOpener

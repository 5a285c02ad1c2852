#pragma once

#include <QString>

#include <functional>

// The one routine every window uses to open a picture in a window of its own. The window that
// shows pictures registers itself as the handler; until one does, opening does nothing.
namespace PictureOpener {

void Open(const QString& path);
void SetHandler(std::function<void(const QString&)> handler);

} // namespace PictureOpener

#include "design/SceneTextures.h"

#include <QHash>
#include <QMutex>
#include <QQuickWindow>

namespace kestrin::design {

namespace {

using Key = std::pair<const QQuickWindow *, QByteArray>;

// Each window may have a render thread of its own.
QMutex mutex;
QHash<Key, std::weak_ptr<QSGTexture>> &textures() {
    static QHash<Key, std::weak_ptr<QSGTexture>> known;
    return known;
}

void forget(const Key &key) {
    const QMutexLocker lock(&mutex);
    const auto entry = textures().constFind(key);
    // Meanwhile somebody may have painted it anew.
    if (entry != textures().constEnd() && entry->expired())
        textures().erase(entry);
}

} // namespace

SharedTexture sharedTexture(QQuickWindow &window, const QByteArray &key,
                            const std::function<QImage()> &paint) {
    const Key windowKey(&window, key);
    {
        const QMutexLocker lock(&mutex);
        if (SharedTexture texture = textures().value(windowKey).lock())
            return texture;
    }
    QQuickWindow::CreateTextureOptions options = QQuickWindow::TextureHasAlphaChannel;
    options |= QQuickWindow::TextureCanUseAtlas;
    // A copy, because a picture keeps what it was painted with, which is larger than most of them.
    SharedTexture texture(window.createTextureFromImage(paint().copy(), options),
                          [windowKey](QSGTexture *last) {
                              delete last;
                              forget(windowKey);
                          });
    const QMutexLocker lock(&mutex);
    textures().insert(windowKey, texture);
    return texture;
}

} // namespace kestrin::design

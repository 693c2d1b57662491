#include "app/Kestrin/program/ApplicationIcons.h"

#include <QIcon>

namespace kestrin::app {

QPixmap ApplicationIcons::requestPixmap(const QString &name, QSize *size, const QSize &requestedSize) {
    const QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    // The size is told in pixels, and a picture of one says nothing but that there is none.
    QPixmap picture = icon.pixmap(requestedSize, 1);
    if (picture.isNull()) {
        picture = QPixmap(1, 1);
        picture.fill(Qt::transparent);
    }
    *size = picture.size();
    return picture;
}

} // namespace kestrin::app

#pragma once

#include <QQuickImageProvider>

namespace kestrin::app {

/// The pictures of applications from the desktop's theme, or from files, for "image://application/NAME". An
/// empty picture where there is none.
class ApplicationIcons final : public QQuickImageProvider {
  public:
    ApplicationIcons() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

    QPixmap requestPixmap(const QString &name, QSize *size, const QSize &requestedSize) override;
};

} // namespace kestrin::app

#pragma once

#include <QObject>
#include <QVariantMap>

namespace kestrin::desktop {

/// The desktop's own dialog for choosing where a file goes (the portal org.freedesktop.portal.FileChooser).
/// Main thread.
class SaveDialog : public QObject {
    Q_OBJECT

  public:
    explicit SaveDialog(QObject *parent = nullptr);

    /// Answers later, by `found`, when there is such a dialog.
    void look();
    /// Opens it over a window of the program, with this file suggested.
    void open(const QString &file, quintptr window);

  Q_SIGNALS:
    void found();
    /// The file that was chosen; nothing comes where none was.
    void chosen(const QString &file);

  private Q_SLOTS:
    void take(uint response, const QVariantMap &results);

  private:
    QString m_request;
};

} // namespace kestrin::desktop

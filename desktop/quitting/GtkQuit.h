#pragma once

#include "desktop/quitting/QuitProtocol.h"

namespace kestrin::desktop {

/// The action "quit" of a GTK application (org.gtk.Actions), if it is enabled and takes no parameter. Its
/// path is what the windows say and what the application's names lead to.
class GtkQuit final : public QuitProtocol {
  public:
    using QuitProtocol::QuitProtocol;

    void search(const QuitTarget &target, const OwnBusNames &names) override;

  private:
    void searchActions(const QuitTarget::GtkApplication &application);

    QList<QuitTarget::GtkApplication> m_asked;
};

} // namespace kestrin::desktop

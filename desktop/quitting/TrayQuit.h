#pragma once

#include "desktop/quitting/QuitProtocol.h"

#include <QStringList>

namespace kestrin::desktop {

/// Quit or Exit in the menu of the application's tray icon (StatusNotifierItem, com.canonical.dbusmenu). The
/// list of icons is the one thing that somebody else is asked for.
class TrayQuit final : public QuitProtocol {
  public:
    using QuitProtocol::QuitProtocol;

    void search(const QuitTarget &target, const OwnBusNames &names) override;

  private:
    struct Object {
        QByteArray owner;
        QByteArray path;
    };

    static Object iconRegisteredAs(const QByteArray &text);
    void searchMenu(const Object &icon, const QStringList &names);
    void readMenu(const Object &menu, sd_bus_message *layout, const QStringList &names);
    void askForProperty(const Object &object, const char *interface, const char *property,
                        SessionBus::Answer answer);
};

} // namespace kestrin::desktop

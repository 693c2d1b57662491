#pragma once

#include "desktop/quitting/BusObject.h"
#include "desktop/quitting/QuitProtocol.h"

namespace kestrin::desktop {

/// The Quit of a KDE application's own menu, and the method "quit" of a KDE or Qt application's main object,
/// which a plain Qt application is only asked for when it asks its windows first.
class QtQuit final : public QuitProtocol {
  public:
    using QuitProtocol::QuitProtocol;

    void search(const QuitTarget &target, const OwnBusNames &names) override;

  private:
    void searchKdeWindows(const QByteArray &owner);
    void searchAction(const QByteArray &owner, const QByteArray &window);
    void searchMainObject(const QByteArray &owner, qint32 process);
    void introspect(const QByteArray &owner, const QByteArray &path,
                    std::function<void(const BusObject &)> answer);
};

} // namespace kestrin::desktop

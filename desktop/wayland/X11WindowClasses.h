#pragma once

#include "desktop/x11/X11Connector.h"

#include <QHash>
#include <QStringList>

namespace kestrin::desktop {

/// Which processes show windows through XWayland, and of which classes.
class X11WindowClasses {
  public:
    /// On the display of this session (DISPLAY).
    X11WindowClasses() : m_connector({}) {}

    /// The addresses of the display's socket; none when there is no display on this machine.
    static QList<QByteArray> socketAddresses();

    /// The classes of the regular windows of each process, one for each window. Many compositors start an X
    /// server for whoever connects, so this is only to be asked where somebody else has.
    QHash<qint32, QStringList> byProcess(const foundation::Deadline &deadline);

  private:
    X11Connector m_connector;
};

} // namespace kestrin::desktop

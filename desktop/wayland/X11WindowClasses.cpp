#include "desktop/wayland/X11WindowClasses.h"

#include "desktop/x11/DesktopReading.h"

namespace kestrin::desktop {

using namespace foundation;

QList<QByteArray> X11WindowClasses::socketAddresses() {
    QByteArray display = qgetenv("DISPLAY");
    if (!display.startsWith(':'))
        return {};
    const qsizetype screen = display.indexOf('.');
    const QByteArray path =
        "/tmp/.X11-unix/X" + display.sliced(1, (screen < 0 ? display.size() : screen) - 1);
    return {path, QByteArray(1, '\0') + path};
}

// Not kept open: that would keep an X server alive that nobody else needs any more.
QHash<qint32, QStringList> X11WindowClasses::byProcess(const Deadline &deadline) {
    QHash<qint32, QStringList> classes;
    const auto server = m_connector.connect(deadline);
    const auto reading = server ? DesktopReading::take(*server, deadline) : std::nullopt;
    for (const DesktopWindow &window : reading ? reading->windows : QList<DesktopWindow>()) {
        if (window.process != 0)
            classes[window.process].append(window.facts.claims.className);
    }
    return classes;
}

} // namespace kestrin::desktop

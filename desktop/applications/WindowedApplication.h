// Applications as a task bar has them: a process, and its windows.
#pragma once

#include "desktop/applications/ApplicationClaims.h"

#include <QHash>
#include <QList>

#include <algorithm>

namespace kestrin::desktop {

/// A window is whatever its window system makes of it. It has a `process`, claims about whose it is (told by
/// a function `claimsOf`), and tells by `counts()` whether a task bar would show it and its process is known.
template <typename Window>
struct WindowedApplication {
    qint32 process = 0;
    /// Those that count, in the window system's order; never empty.
    QList<Window> windows;

    /// What the window claims that tells best who the application is.
    const ApplicationClaims &claims() const {
        return claimsOf(*std::max_element(windows.cbegin(), windows.cend(),
                                          [](const Window &window, const Window &other) {
                                              return claimsOf(window).isWorseThan(claimsOf(other));
                                          }));
    }
};

/// In the order of their first window that counts.
template <typename Window>
QList<WindowedApplication<Window>> applicationsOf(const QList<Window> &windows) {
    QList<WindowedApplication<Window>> applications;
    QHash<qint32, qsizetype> places;
    for (const Window &window : windows) {
        if (!window.counts())
            continue;
        const auto known = places.constFind(window.process);
        if (known != places.cend()) {
            applications[*known].windows.append(window);
            continue;
        }
        places.insert(window.process, applications.size());
        applications.append({window.process, {window}});
    }
    return applications;
}

} // namespace kestrin::desktop

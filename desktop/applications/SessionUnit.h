#pragma once

#include <QByteArrayView>
#include <QString>

namespace kestrin::desktop {

/// The application of a unit of the session manager (".../app-gnome-org.example.App-12.scope") in the text of
/// /proc/PID/cgroup; empty when there is none.
QString unitIdOfControlGroup(QByteArrayView text);

} // namespace kestrin::desktop

#pragma once

#include "app/Kestrin/rows/PageRows.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::app {

/// QML knows the sections as `MacSection.Home` and so on.
namespace sections {
Q_NAMESPACE
QML_NAMED_ELEMENT(MacSection)

/// The sections of the sidebar, in its order.
enum class MacSection {
    None = -1, ///< nothing selected
    Home,
    Devices,
    Apps,
    Schedule,
    Activity,
    Access,
    Connect,
};
Q_ENUM_NS(MacSection)

} // namespace sections

using sections::MacSection;

/// What the sidebar shows of each section, in their order.
QList<PageRow> sectionRows();

} // namespace kestrin::app

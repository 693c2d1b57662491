#pragma once

#include <QtQml/qqmlregistration.h>

#include <QList>
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

/// A section as the sidebar shows it. The title is also its identity.
struct SectionRow {
    Q_GADGET
    Q_PROPERTY(int section MEMBER section CONSTANT)
    Q_PROPERTY(QString identifier MEMBER title CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT)

  public:
    int section = 0;
    QString title;
    QString icon;

    bool operator==(const SectionRow &) const = default;
};

/// All sections in order.
QList<SectionRow> sectionRows();

} // namespace kestrin::app

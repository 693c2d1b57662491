#include "desktop/permission/GnomePermission.h"

#include "desktop/gnome/EnabledExtensions.h"
#include "desktop/gnome/GnomeShellWindows.h"
#include "desktop/gnome/ShellExtension.h"
#include "desktop/permission/AllowedPrograms.h"
#include "desktop/permission/Opening.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

const GnomePermission::Answer silence{false, u"GNOME does not answer."_s};

QString ownExtension() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/gnome-shell/extensions/" KESTRIN_GNOME_EXTENSION ""_s;
}

} // namespace

bool GnomePermission::install() {
    if (ShellExtension::isInstalled())
        return true;
    const QFileInfo built(
        QDir(QCoreApplication::applicationDirPath()).filePath(u"" KESTRIN_BUILT_EXTENSION ""_s));
    return built.isDir() && QDir().mkpath(QFileInfo(ownExtension()).path()) &&
           QFile::link(built.canonicalFilePath(), ownExtension());
}

GnomePermission::Answer GnomePermission::enable() {
    if (!m_programs.areInstalled && !AllowedPrograms::add(m_programs.paths))
        return {false,
                u"Nothing was allowed, because "_s + AllowedPrograms::path() + u" cannot be written."_s};
    // Also where this session knows it from before, for the next one.
    const bool isInstalled = install();
    const Deadline deadline(desktopPatience);
    ShellConversation shell;
    ShellExtension extension(shell);
    if (!shell.open({shellName}, deadline))
        return silence;
    if (extension.setEnabled(true, deadline))
        return whatBecameOf(extension);
    if (!shell.isOpen())
        return silence;
    if (!isInstalled)
        return {false, u"Kestrin's extension of GNOME is not installed; it comes with Kestrin's package."_s};
    const QString why = u"GNOME finds Kestrin's extension at your next login. Log out and in"_s;
    return {false, why + (setEnabledAtLogin(true) ? u"; nothing else is needed then."_s
                                                  : u", and then allow it again."_s)};
}

GnomePermission::Answer GnomePermission::whatBecameOf(ShellExtension &extension) const {
    if (GnomeShellWindows windows; opensSoon(windows))
        return {true, u"GNOME tells Kestrin which applications run."_s};
    switch (extension.state(Deadline(desktopPatience))) {
    case ExtensionState::incompatible:
        return {false, u"Kestrin's extension is not made for this version of GNOME."_s};
    case ExtensionState::withAllOff:
        return {
            false,
            u"Kestrin's extension is enabled, but you have switched off all extensions of GNOME. Switch them "
            "on in the application Extensions."_s};
    default:
        return {false, u"Kestrin's extension is enabled, but GNOME could not start it."_s};
    }
}

QString GnomePermission::takeBack() const {
    if (!AllowedPrograms::remove(m_programs.paths))
        return AllowedPrograms::path() + u" cannot be changed."_s;
    if (QFileInfo(ownExtension()).isSymLink() && !QFile::remove(ownExtension()))
        return ownExtension() + u" cannot be removed."_s;
    return setEnabledAtLogin(false) ? QString() : u"GNOME's setting enabled-extensions cannot be changed."_s;
}

GnomePermission::Answer GnomePermission::disable() {
    // Whether or not GNOME answers.
    if (const QString obstacle = takeBack(); !obstacle.isEmpty())
        return {false, obstacle};
    const Deadline deadline(desktopPatience);
    ShellConversation shell;
    ShellExtension extension(shell);
    if (!shell.open({shellName}, deadline))
        return silence;
    // What GNOME does not know is off.
    const bool isDone =
        extension.setEnabled(false, deadline) || extension.state(deadline) == ExtensionState::unknown;
    if (!shell.isOpen())
        return silence;
    if (!isDone)
        return {false, u"GNOME did not switch Kestrin's extension off."_s};
    return {true, u"GNOME tells Kestrin no longer which applications run."_s};
}

} // namespace kestrin::desktop

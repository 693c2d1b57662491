#include "desktop/permission/PlasmaPermission.h"

#include "desktop/applications/DesktopEntryText.h"
#include "desktop/permission/Opening.h"
#include "foundation/PrivateFile.h"
#include "foundation/PrivateFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

QByteArray entryText(const QString &program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=Kestrin\n"
           "Comment=Lets Kestrin see which applications run\n"
           "Icon=" KESTRIN_DESKTOP_ID "\n"
           "Exec=" +
           desktopEntryValue(desktopEntryArgument(program)) +
           "\n"
           "NoDisplay=true\n"
           "X-KDE-Wayland-Interfaces=org_kde_plasma_window_management\n";
}

} // namespace

QString PlasmaPermission::entryOf(const QString &program) const {
    return m_folder + u"/" KESTRIN_DESKTOP_ID ".allowed-"_s + program.sliced(program.lastIndexOf(u'/') + 1) +
           u".desktop"_s;
}

PlasmaPermission::Answer PlasmaPermission::enable() {
    if (m_programs.areInstalled)
        return {true, u"KDE Plasma shows its windows to the installed Kestrin without further ado."_s};
    makePrivateFolder(QFile::encodeName(m_folder));
    for (const QString &program : m_programs.paths) {
        const QByteArray text = entryText(program);
        // What a link leads to is somebody else's.
        if (QFileInfo(entryOf(program)).isSymLink())
            QFile::remove(entryOf(program));
        if (!replacePrivateFile(entryOf(program), {viewOf(text)}))
            return {false, u"Nothing was allowed, because "_s + entryOf(program) + u" cannot be written."_s};
    }
    if (!opensSoon(*m_windows))
        return {false, u"KDE Plasma was told, but does not show its windows."_s};
    return {true, u"KDE Plasma shows its windows to "_s + m_programs.paths.join(u" and "_s) + u'.'};
}

PlasmaPermission::Answer PlasmaPermission::disable() {
    // Also those of programs that are not there any more.
    QDir folder(m_folder, u"" KESTRIN_DESKTOP_ID ".allowed-*.desktop"_s);
    for (const QString &entry : folder.entryList(QDir::Files | QDir::CaseSensitive)) {
        if (!folder.remove(entry))
            return {false, folder.filePath(entry) + u" cannot be removed."_s};
    }
    return {true, u"KDE Plasma shows its windows to no other Kestrin than the installed one."_s};
}

} // namespace kestrin::desktop

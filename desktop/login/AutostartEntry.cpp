#include "desktop/applications/DesktopEntryText.h"
#include "desktop/login/LoginFile.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

/// Desktops look for the program before they make one percent sign of two, and would not find it; those of
/// other arguments they see in time.
QString commandLine(const QString &program) {
    return (program.contains(u'%') ? u"env "_s : QString()) + desktopEntryArgument(program) +
           u" --background"_s;
}

/// There is no NoDisplay: an entry of this folder is in no menu anyway, and with it some desktops would hide
/// the entry from their own list of what starts at login.
QByteArray entryText(const QString &program, bool starts) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=Kestrin\n"
           "Comment=Protect from login on\n"
           "Icon=" KESTRIN_DESKTOP_ID "\n"
           "Exec=" +
           desktopEntryValue(commandLine(program)) + "\nTryExec=" + desktopEntryValue(program) +
           "\nTerminal=false\n" + (starts ? "" : "Hidden=true\n");
}

/// Keys that make it a matter of the desktop in use (OnlyShowIn) are somebody else's choice and not looked
/// at.
bool entryStarts(const QByteArray &text) {
    bool isOff = false;
    bool hasCommand = false;
    bool isThere = true;
    DesktopEntryKeys keys(text);
    while (keys.next()) {
        if (keys.key() == QByteArrayView("Hidden"))
            isOff = isOff || desktopEntryBoolean(keys.value());
        else if (keys.key() == QByteArrayView("X-GNOME-Autostart-enabled"))
            isOff = isOff || !desktopEntryBoolean(keys.value());
        else if (keys.key() == QByteArrayView("Exec"))
            hasCommand = !keys.value().isEmpty();
        else if (keys.key() == QByteArrayView("TryExec"))
            isThere = !QStandardPaths::findExecutable(desktopEntryString(keys.value())).isEmpty();
    }
    return hasCommand && isThere && !isOff;
}

} // namespace

LoginFile autostartEntry() {
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString &folder : folders)
        folder += u"/autostart"_s;
    return {QStringLiteral(KESTRIN_DESKTOP_ID ".desktop"),
            {u"kestrin"_s},
            folders,
            u"../Kestrin"_s,
            entryText,
            entryStarts};
}

} // namespace kestrin::desktop

// The menu of a tray icon, and the item of it that quits.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kestrin::desktop {

/// One item as com.canonical.dbusmenu describes it, with the values that it has when nothing is said.
struct TrayMenuItem {
    qint32 id = 0;
    /// With an underscore before its mnemonic.
    QString label;
    QString iconName;
    bool isEnabled = true;
    bool isVisible = true;
    /// Neither a separator nor something that switches on and off.
    bool isCommand = true;
    bool hasSubmenu = false;
    std::vector<TrayMenuItem> children;
};

/// "Quit" and "Exit" in these languages (such as "de" or "pt-BR", by preference) and in English.
QStringList quitWords(const QStringList &languages);

/// Whether a label is one of the words, alone or beside one of the application's names ("Quit NAME").
bool meansQuit(const QString &label, const QStringList &words, const QStringList &applicationNames);

/// The item that quits: the first whose label says so, else the first with the icon "application-exit"; outer
/// ones before those in submenus. Only what a user could choose now counts.
std::optional<qint32> quitItem(const TrayMenuItem &root, const QStringList &words,
                               const QStringList &applicationNames);

} // namespace kestrin::desktop

// How a platform is told what to start at login.
#pragma once

#include <QByteArray>
#include <QStringList>

namespace kestrin::desktop {

/// One file, which names the program.
struct LoginFile {
    /// That of the file.
    QString name;
    /// Where the window's program may be: absolute, or seen from the folder of the running program.
    QStringList programs;
    /// Where the file may be: first the user's own folder, then those for all users. Only the first file
    /// counts.
    QStringList folders;
    /// The folder whose lock writers take, seen from the user's own folder.
    QString lockFolder;
    /// What to write so that `program`, an absolute path, is started in the background, or is not although a
    /// folder for all users says so.
    QByteArray (*text)(const QString &program, bool starts) = nullptr;
    /// Whether a file of this text starts anything.
    bool (*starts)(const QByteArray &text) = nullptr;
};

/// The desktop entry that XDG desktops look for.
LoginFile autostartEntry();

/// The property list that macOS looks for.
LoginFile launchAgent();

} // namespace kestrin::desktop

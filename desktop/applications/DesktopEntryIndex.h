// All desktop entries of this user.
#pragma once

#include "desktop/applications/DesktopEntry.h"
#include "foundation/FileStamp.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>
#include <vector>

namespace kestrin::desktop {

/// The folders "applications" of the environment's data directories, the most important first.
QList<QByteArray> applicationFoldersOfEnvironment();

/// Finds desktop entries by id and by the window class they claim, without regard to case. Of several files
/// with the same id the one in the most important folder counts.
///
/// The folders are listed and the files read on the first use that needs it. Later changes are noticed at
/// `refresh`, which looks at the times of the folders, and of the files that were in use; that needs no event
/// loop, wakes nobody up and costs a few microseconds. Main thread only.
class DesktopEntryIndex {
  public:
    struct Found {
        /// The desktop-file id without ".desktop".
        QString id;
        DesktopEntry entry;
    };

    explicit DesktopEntryIndex(const QList<QByteArray> &folders = applicationFoldersOfEnvironment(),
                               const EntryLocales &locales = entryLocalesOfEnvironment());

    /// Begins a new round of questions: forgets what has changed on disk since it was read.
    void refresh();

    /// The application with this desktop-file id.
    std::optional<Found> withId(const QString &id);
    /// The application whose entry claims windows of this class, or instance.
    std::optional<Found> withWindowClass(const QString &windowClass);
    /// The application of the menus whose entry starts this executable: the very file, else the only one of
    /// that name.
    std::optional<Found> withExecutable(const QString &path);
    /// The applications of the menus that have windows of their own.
    std::vector<Found> ofMenus();

  private:
    struct Folder {
        QByteArray path;
        foundation::FileStamp stamp;
    };
    struct File {
        QString id;
        QByteArray path;
        std::optional<DesktopEntry> entry = std::nullopt;
        foundation::FileStamp stamp = {};
        /// Read, and seen to be unchanged in this round.
        quint64 round = 0;
    };

    void listFolders();
    void listFolder(const QByteArray &path, const QString &idPrefix, int depth);
    void readClasses();
    void readPrograms();
    bool isUpToDate() const;
    const std::optional<DesktopEntry> &entryOf(File &file);
    std::optional<Found> usable(std::size_t number);

    const QList<QByteArray> m_roots;
    const EntryLocales m_locales;
    quint64 m_round = 1;
    bool m_listed = false;
    bool m_classesRead = false;
    bool m_programsRead = false;
    /// Something had changed just before it was read, and may do so again without a trace.
    bool m_fresh = false;
    std::vector<Folder> m_folders;
    std::vector<File> m_files;
    QHash<QString, std::size_t> m_byId;
    QHash<QString, std::size_t> m_byFoldedId;
    QHash<QString, std::size_t> m_byWindowClass;
    /// By the last part of its path.
    QMultiHash<QString, std::size_t> m_byProgram;
};

} // namespace kestrin::desktop

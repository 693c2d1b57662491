#include "desktop/applications/DesktopEntryIndex.h"

#include "foundation/FileReading.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtGlobal>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace kestrin::desktop {

using namespace foundation;

namespace {

// Far above what is found in practice; they keep a loop of links or a misplaced huge file from costing more
// than time.
constexpr int maximumDepth = 6;
constexpr std::size_t maximumFiles = 20000;
constexpr std::size_t maximumFolders = 1000;
constexpr qsizetype maximumFileSize = 1024 * 1024;

struct CloseFolder {
    void operator()(DIR *folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

bool isFolder(const dirent &entry, int parent) {
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status {};
    return ::fstatat(parent, entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

/// Changed so shortly ago that another change could leave the same time behind: the clock of file times ticks
/// every few milliseconds only. Or somebody is still writing.
bool isFresh(const FileStamp &stamp) {
    using namespace std::chrono;
    const auto now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch());
    const auto age = now - seconds(stamp.seconds) - nanoseconds(stamp.nanoseconds);
    return age < milliseconds(50) && age > milliseconds(-50);
}

QString lastPart(const QString &path) {
    return path.sliced(path.lastIndexOf(u'/') + 1);
}

} // namespace

QList<QByteArray> applicationFoldersOfEnvironment() {
    QByteArray home = qgetenv("XDG_DATA_HOME");
    if (!home.startsWith('/'))
        home = QFile::encodeName(QDir::homePath()) + "/.local/share";
    QByteArray others = qgetenv("XDG_DATA_DIRS");
    if (others.isEmpty())
        others = "/usr/local/share:/usr/share";
    QList<QByteArray> folders;
    for (QByteArray folder : QList<QByteArray>{home} + others.split(':')) {
        while (folder.size() > 1 && folder.endsWith('/'))
            folder.chop(1);
        folder += "/applications";
        // A relative path means a different folder for every program, so such a path is to be ignored.
        if (folder.startsWith('/') && !folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}

DesktopEntryIndex::DesktopEntryIndex(const QList<QByteArray> &folders, const EntryLocales &locales)
    : m_roots(folders)
    , m_locales(locales) {}

void DesktopEntryIndex::refresh() {
    ++m_round;
    if (m_listed && !isUpToDate())
        m_listed = false;
}

bool DesktopEntryIndex::isUpToDate() const {
    return !m_fresh && std::all_of(m_folders.cbegin(), m_folders.cend(), [](const Folder &folder) {
        return folder.stamp == FileStamp::of(folder.path);
    });
}

void DesktopEntryIndex::listFolders() {
    if (std::exchange(m_listed, true))
        return;
    m_folders.clear();
    m_files.clear();
    m_byId.clear();
    m_byFoldedId.clear();
    m_classesRead = false;
    m_programsRead = false;
    for (const QByteArray &root : m_roots)
        listFolder(root, {}, 0);

    m_fresh = std::any_of(m_folders.cbegin(), m_folders.cend(),
                          [](const Folder &folder) { return isFresh(folder.stamp); });
}

void DesktopEntryIndex::listFolder(const QByteArray &path, const QString &idPrefix, int depth) {
    // Taken before the listing, so that what changes meanwhile is found by the next round.
    const FileStamp stamp = FileStamp::of(path);
    const bool isListed =
        stamp.inode != 0 && std::any_of(m_folders.cbegin(), m_folders.cend(), [&stamp](const Folder &folder) {
            return folder.stamp.device == stamp.device && folder.stamp.inode == stamp.inode;
        });
    if (isListed || m_folders.size() >= maximumFolders)
        return;
    m_folders.push_back({path, stamp});
    const OpenFolder folder(::opendir(path.constData()));
    if (!folder)
        return;
    std::vector<QByteArray> names;
    std::vector<QByteArray> subfolders;
    std::vector<QByteArray> links;
    while (const dirent *entry = ::readdir(folder.get())) {
        const QByteArrayView name(entry->d_name);
        if (name.endsWith(".desktop"))
            names.push_back(name.toByteArray());
        else if (!name.startsWith('.') && depth < maximumDepth && isFolder(*entry, ::dirfd(folder.get())))
            (entry->d_type == DT_DIR ? subfolders : links).push_back(name.toByteArray());
    }
    // The order in which a file system lists must not decide which of two equals is found.
    std::sort(names.begin(), names.end());
    std::sort(subfolders.begin(), subfolders.end());
    std::sort(links.begin(), links.end());
    // Each folder is listed once, and by its own name rather than by that of a link.
    subfolders.insert(subfolders.end(), links.cbegin(), links.cend());
    for (const QByteArray &name : names) {
        const QString id = idPrefix + QFile::decodeName(name.chopped(8));
        if (m_files.size() >= maximumFiles || m_byId.contains(id))
            continue;
        m_byId.insert(id, m_files.size());
        const QString folded = id.toCaseFolded();
        if (!m_byFoldedId.contains(folded))
            m_byFoldedId.insert(folded, m_files.size());
        m_files.push_back({id, path + '/' + name});
    }
    for (const QByteArray &name : subfolders)
        listFolder(path + '/' + name, idPrefix + QFile::decodeName(name) + u'-', depth + 1);
}

void DesktopEntryIndex::readClasses() {
    listFolders();
    if (std::exchange(m_classesRead, true))
        return;
    m_byWindowClass.clear();
    QByteArray text;
    QList<std::size_t> outsideMenus;
    const auto add = [this](std::size_t number) {
        const QString folded = m_files[number].entry->windowClass.toCaseFolded();
        if (!m_byWindowClass.contains(folded))
            m_byWindowClass.insert(folded, number);
    };
    for (std::size_t number = 0; number < m_files.size(); ++number) {
        File &file = m_files[number];
        // Most entries claim no class. Searching for the key is much cheaper than reading all the
        // translations.
        const std::optional<FileStamp> stamp = readFileHead(file.path, maximumFileSize, text);
        m_fresh = m_fresh || (stamp && isFresh(*stamp));
        if (!stamp || !text.contains("StartupWMClass"))
            continue;
        file.entry = DesktopEntry::parse(text, m_locales);
        file.stamp = *stamp;
        file.round = m_round;
        if (!file.entry || file.entry->isHidden || !file.entry->isApplication ||
            file.entry->isWebApplication || file.entry->windowClass.isEmpty())
            continue;
        if (file.entry->isOutsideMenus)
            outsideMenus.append(number);
        else
            add(number);
    }
    // Entries that only open files or addresses of some kind come after the application's main one.
    std::for_each(outsideMenus.cbegin(), outsideMenus.cend(), add);
}

const std::optional<DesktopEntry> &DesktopEntryIndex::entryOf(File &file) {
    if (file.round == m_round)
        return file.entry;
    const FileStamp now = FileStamp::of(file.path);
    if (file.round == 0 || now != file.stamp) {
        QByteArray text;
        file.entry.reset();
        if (readFileHead(file.path, maximumFileSize, text))
            file.entry = DesktopEntry::parse(text, m_locales);
        // It may claim another class than it did when the classes were collected.
        if (file.round != 0)
            m_classesRead = m_programsRead = false;
        file.stamp = now;
    }
    file.round = m_round;
    return file.entry;
}

std::optional<DesktopEntryIndex::Found> DesktopEntryIndex::usable(std::size_t number) {
    File &file = m_files[number];
    const std::optional<DesktopEntry> &entry = entryOf(file);
    if (!entry || entry->isHidden || !entry->isApplication)
        return std::nullopt;
    return Found{file.id, *entry};
}

std::optional<DesktopEntryIndex::Found> DesktopEntryIndex::withId(const QString &id) {
    if (id.isEmpty())
        return std::nullopt;
    listFolders();
    if (const auto exact = m_byId.constFind(id); exact != m_byId.cend())
        return usable(*exact);
    const auto folded = m_byFoldedId.constFind(id.toCaseFolded());
    return folded == m_byFoldedId.cend() ? std::nullopt : usable(*folded);
}

std::optional<DesktopEntryIndex::Found> DesktopEntryIndex::withWindowClass(const QString &windowClass) {
    if (windowClass.isEmpty())
        return std::nullopt;
    const QString folded = windowClass.toCaseFolded();
    while (true) {
        readClasses();
        const auto found = m_byWindowClass.constFind(folded);
        if (found == m_byWindowClass.cend())
            return std::nullopt;
        auto result = usable(*found);
        // Each file is looked at once a round, so this ends.
        if (m_classesRead)
            return result;
    }
}

void DesktopEntryIndex::readPrograms() {
    listFolders();
    if (std::exchange(m_programsRead, true))
        return;
    m_byProgram.clear();
    for (std::size_t number = 0; number < m_files.size(); ++number) {
        const auto found = usable(number);
        if (found && !found->entry.isOutsideMenus && !found->entry.isWebApplication)
            m_byProgram.insert(lastPart(found->entry.program), number);
    }
}

std::vector<DesktopEntryIndex::Found> DesktopEntryIndex::ofMenus() {
    listFolders();
    std::vector<Found> result;
    for (std::size_t number = 0; number < m_files.size(); ++number) {
        auto found = usable(number);
        if (found && !found->entry.isOutsideMenus && !found->entry.isWebApplication &&
            !found->entry.needsTerminal)
            result.push_back(*std::move(found));
    }
    return result;
}

std::optional<DesktopEntryIndex::Found> DesktopEntryIndex::withExecutable(const QString &path) {
    readPrograms();
    std::vector<Found> sameName;
    for (const std::size_t number : m_byProgram.values(lastPart(path))) {
        auto found = usable(number);
        if (!found)
            continue;
        const QString program = QStandardPaths::findExecutable(found->entry.program);
        if (QFileInfo(program).canonicalFilePath() == path)
            return found;
        sameName.push_back(*std::move(found));
    }
    return sameName.size() == 1 ? std::optional(sameName.front()) : std::nullopt;
}

} // namespace kestrin::desktop

#include "foundation/StoredFile.h"

#include "foundation/FileSentences.h"
#include "foundation/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

QString StoredFile::problemOf(const FileText &text) const {
    return describeUnreadable(path, text.state, text.error, limit);
}

QString StoredFile::problem(const std::function<bool(const QByteArray &)> &isUsable, qsizetype spare) const {
    FileText text = read(spare);
    // What was in the way may have gone by now.
    if (!problemOf(text).isEmpty())
        text = read(spare);
    if (text.state != FileState::readable || text.bytes.isEmpty() || isUsable(text.bytes))
        return problemOf(text);
    return path + u" does not read as it should; the next change sets it aside, unless you mend it first."_s;
}

StoredFileChange::StoredFileChange(const StoredFile &file, qsizetype spare)
    : m_file(file)
    , m_lock(QFile::decodeName(folderOf(QFile::encodeName(file.path))))
    , m_text(file.read(spare)) {
    // One that may not be read is set aside when it is replaced.
    if (!m_lock.isHeld())
        m_result.problem = m_lock.problem();
    else if (m_text.state != FileState::denied)
        m_result.problem = m_file.problemOf(m_text);
}

void StoredFileChange::write(std::initializer_list<std::string_view> pieces) {
    m_replacement.reset();
    if (!isPossible())
        return;
    std::size_t size = 0;
    for (const std::string_view piece : pieces)
        size += piece.size();
    // What is larger could be written, but not read any more.
    if (size > static_cast<std::size_t>(m_file.limit)) {
        m_result.problem = m_file.path + u" is full; move it away, and a new one is begun."_s;
        return;
    }
    m_replacement = std::make_unique<PrivateFileReplacement>(m_file.path, pieces);
}

StoreResult StoredFileChange::commit(bool keepOld) {
    if (!m_replacement)
        return m_result;
    const bool isDenied = m_text.state == FileState::denied;
    if (!(keepOld || isDenied ? m_replacement->commitBesideOld() : m_replacement->commit()))
        m_result.problem = m_replacement->problem();
    if (const QString kept = m_replacement->keptOld(); !kept.isEmpty())
        m_result.notice = m_file.path +
                          (isDenied ? u" could not be read"_s : u" did not read as it should"_s) +
                          u"; it is kept as "_s + QFileInfo(kept).fileName() + u'.';
    m_replacement.reset();
    return m_result;
}

StoreResult StoredFileChange::replaceBy(const QByteArray &text, bool keepOld) {
    write({viewOf(text)});
    return commit(keepOld);
}

} // namespace kestrin::foundation

// The bytes of a log, moved by bare system calls.
#pragma once

#include <QByteArray>
#include <QString>

namespace kestrin::bench {

class BareLog {
  public:
    explicit BareLog(const QString &path);
    BareLog(const BareLog &) = delete;
    BareLog &operator=(const BareLog &) = delete;
    ~BareLog() { forget(); }

    /// What a program that wants to look at the file needs at the least, whenever it does.
    void readIntoNewMemory();
    /// As little as reading can cost. A program would have to keep as much memory as the log is long for it.
    void readIntoKnownMemory();

    /// What an append cannot do without: the whole file is read, and one of the same size that is safely on
    /// the disk takes its place, and that is safely on the disk too.
    void replace();

  private:
    void reserve();
    void forget();

    QByteArray m_path;
    QByteArray m_folder;
    QByteArray m_temporary = m_path + ".bare";
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
    void *m_memory = nullptr;
};

} // namespace kestrin::bench

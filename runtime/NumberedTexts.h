#pragma once

#include <QHash>
#include <QStringView>

#include <memory_resource>
#include <vector>

namespace kestrin::runtime {

/// Many texts, each kept once and numbered in the order in which they came. They lie in a few large blocks:
/// that takes less room, and when they go nothing is left of them between what stays.
class NumberedTexts {
  public:
    NumberedTexts() = default;
    NumberedTexts(const NumberedTexts &) = delete;
    NumberedTexts &operator=(const NumberedTexts &) = delete;

    /// The number of this text, a new one where it is the first of its kind.
    quint32 numberOf(QStringView text);
    QStringView at(quint32 number) const { return m_texts[number]; }
    /// In the order of their numbers; they last as long as this.
    const std::vector<QStringView> &all() const { return m_texts; }

  private:
    static constexpr std::size_t firstBlock = std::size_t(1) << 16U;

    std::pmr::monotonic_buffer_resource m_blocks{firstBlock};
    std::vector<QStringView> m_texts;
    QHash<QStringView, quint32> m_numbers;
};

} // namespace kestrin::runtime

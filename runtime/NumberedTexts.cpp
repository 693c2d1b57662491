#include "runtime/NumberedTexts.h"

#include <memory>

namespace kestrin::runtime {

quint32 NumberedTexts::numberOf(QStringView text) {
    const auto known = m_numbers.constFind(text);
    if (known != m_numbers.cend())
        return *known;
    std::pmr::polymorphic_allocator<QChar> allocator(&m_blocks);
    QChar *const copy = allocator.allocate(static_cast<std::size_t>(text.size()));
    std::uninitialized_copy(text.begin(), text.end(), copy);
    const auto number = static_cast<quint32>(m_texts.size());
    m_texts.emplace_back(copy, text.size());
    m_numbers.insert(m_texts.back(), number);
    return number;
}

} // namespace kestrin::runtime

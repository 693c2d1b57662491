// Properties of windows.
#pragma once

#include "desktop/x11/WindowFacts.h"

#include <QByteArray>

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>

namespace kestrin::samples {

/// As the server hands it out, and not a byte longer, so that a reader that goes too far is noticed.
class Property {
  public:
    Property(xcb_atom_t type, quint8 format, const QByteArray &bytes)
        : m_reply(static_cast<desktop::PropertyReply *>(
              std::calloc(1, sizeof(desktop::PropertyReply) + size(bytes)))) {
        m_reply->type = type;
        m_reply->format = format;
        m_reply->length = static_cast<quint32>(size(bytes) / 4);
        m_reply->value_len = format == 0 ? 0 : static_cast<quint32>(bytes.size() / (format / 8));
        std::memcpy(xcb_get_property_value(m_reply.get()), bytes.constData(),
                    static_cast<std::size_t>(bytes.size()));
    }
    /// Of 32-bit numbers.
    Property(xcb_atom_t type, std::initializer_list<quint32> values)
        : Property(type, 32,
                   QByteArray(reinterpret_cast<const char *>(values.begin()),
                              static_cast<qsizetype>(values.size()) * 4)) {}

    desktop::PropertyReply *reply() const { return m_reply.get(); }

  private:
    struct Free {
        void operator()(void *memory) const { std::free(memory); }
    };

    static std::size_t size(const QByteArray &bytes) {
        return static_cast<std::size_t>((bytes.size() + 3) / 4 * 4);
    }

    std::unique_ptr<desktop::PropertyReply, Free> m_reply;
};

} // namespace kestrin::samples

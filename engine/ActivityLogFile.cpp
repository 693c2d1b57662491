#include "engine/ActivityLogFile.h"

#include "foundation/FileReading.h"
#include "foundation/JsonDecoding.h"
#include "foundation/PrivateFile.h"

#include <QFile>

#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>

namespace kestrin::engine {

using namespace foundation;

namespace {

static_assert(logTextSpare >= static_cast<qsizetype>(simdjson::SIMDJSON_PADDING));

/// Checks events and gives the first ones away, through as many texts as it takes.
class EventReader {
  public:
    EventReader(qsizetype limit, const LogReading &reading) : m_limit(limit), m_reading(reading) {
        m_reading.begin();
    }

    /// Reads one array of events. The text is followed by readable bytes.
    bool read(std::string_view text) { return json::readDocument(m_parser, text, this); }

    bool readArray(json::od::value &value, const json::ReadContext &context) {
        json::od::array array;
        if (value.get_array().get(array) != simdjson::SUCCESS)
            return false;
        for (auto result : array) {
            json::od::value item;
            if (std::move(result).get(item) != simdjson::SUCCESS || !readEvent(item, context))
                return false;
        }
        return true;
    }

  private:
    // The whole decoder in one piece is twice as fast as function by function.
    [[gnu::flatten]] bool readEvent(json::od::value &item, const json::ReadContext &context) {
        if (m_count >= m_limit)
            return json::read(item, context, static_cast<MacProtectionEvent *>(nullptr));
        MacProtectionEvent event;
        if (!json::read(item, context, &event))
            return false;
        ++m_count;
        m_reading.take(event);
        return true;
    }

    json::od::parser m_parser;
    const qsizetype m_limit;
    qsizetype m_count = 0;
    const LogReading &m_reading;
};

bool read(json::od::value &value, const json::ReadContext &context, EventReader *reader) {
    return reader->readArray(value, context);
}

/// Puts the next bytes of a log, at most so many, where it is told to, and returns how many that were: 0 at
/// the end, -1 when they cannot be had.
using Source = std::function<qsizetype(char *, std::size_t)>;

Source fileSource(ReadableFile &file) {
    return
        [&file](char *target, std::size_t size) { return file.read(target, static_cast<qsizetype>(size)); };
}

Source textSource(std::string_view text) {
    return [text](char *target, std::size_t size) mutable {
        const std::size_t got = text.copy(target, size);
        text.remove_prefix(got);
        return static_cast<qsizetype>(got);
    };
}

/// A log in windows. Each window but the last ends between two events, where a comma stands between braces;
/// it is made an array of its own by closing it there and opening the next one. The same three characters may
/// stand inside a string: then the window ends within that string and does not read, so success still means
/// that every cut was right.
class WindowedLog {
  public:
    WindowedLog(Source source, std::size_t windowSize)
        : m_source(std::move(source))
        , m_windowSize(windowSize)
        , m_buffer(std::make_unique_for_overwrite<char[]>(windowSize + simdjson::SIMDJSON_PADDING)) {}

    bool readWith(EventReader &reader) {
        while (fill()) {
            if (m_atEnd) {
                std::memset(m_buffer.get() + m_used, ' ', simdjson::SIMDJSON_PADDING);
                return reader.read({m_buffer.get(), m_used});
            }
            const std::size_t comma = lastCut();
            if (comma == 0)
                return false;
            m_buffer[comma] = ']';
            if (!reader.read({m_buffer.get(), comma + 1}))
                return false;
            m_used -= comma;
            std::memmove(m_buffer.get(), m_buffer.get() + comma, m_used);
            m_buffer[0] = '[';
        }
        return false;
    }

  private:
    /// Fills the window up, or up to the end of the log. False when the log cannot be read.
    bool fill() {
        while (m_used < m_windowSize) {
            const qsizetype got = m_source(m_buffer.get() + m_used, m_windowSize - m_used);
            m_atEnd = got == 0;
            if (got <= 0)
                return got == 0;
            m_used += static_cast<std::size_t>(got);
        }
        return true;
    }

    /// Where the comma of the last cut stands; 0 when there is none.
    std::size_t lastCut() const {
        const std::size_t found = std::string_view(m_buffer.get(), m_used).rfind("},{");
        return found == std::string_view::npos ? 0 : found + 1;
    }

    Source m_source;
    std::size_t m_windowSize;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_used = 0;
    bool m_atEnd = false;
};

} // namespace

namespace {

constexpr qsizetype everything = std::numeric_limits<qsizetype>::max();

/// Reads into a list.
LogReading into(QList<MacProtectionEvent> &events) {
    return {.begin = [&events] { events.clear(); },
            .take = [&events](const MacProtectionEvent &event) { events.append(event); }};
}

/// For those who want no event.
const LogReading checking{.begin = [] {}, .take = [](const MacProtectionEvent &) {}};

bool readText(const QByteArray &text, qsizetype limit, const LogReading &reading) {
    return EventReader(limit, reading).read(viewOf(text));
}

bool readFirstEvents(const QString &path, qsizetype limit, const LogReading &reading,
                     std::size_t windowSize) {
    {
        ReadableFile file(QFile::encodeName(path), logSizeLimit);
        if (file.state() != FileState::readable)
            return false;
        EventReader reader(limit, reading);
        if (WindowedLog(fileSource(file), windowSize).readWith(reader))
            return true;
    }

    // Malformed, or laid out so that it cannot be cut: the text as a whole decides.
    const FileText text = readFile(path, logSizeLimit, logTextSpare);
    return text.state == FileState::readable && readText(text.bytes, limit, reading);
}

} // namespace

std::optional<QList<MacProtectionEvent>> readNewestEvents(const QString &path, qsizetype limit,
                                                          std::size_t windowSize) {
    QList<MacProtectionEvent> events;
    return readFirstEvents(path, limit, into(events), windowSize) ? std::optional(events) : std::nullopt;
}

bool readEvents(const QString &path, const LogReading &reading) {
    return readFirstEvents(path, everything, reading, logWindowSize);
}

bool isActivityLog(const QByteArray &text) {
    EventReader reader(0, checking);
    return WindowedLog(textSource(viewOf(text)), logWindowSize).readWith(reader) ||
           readText(text, 0, checking);
}

std::optional<QList<MacProtectionEvent>> eventsOfActivityLog(const QByteArray &text, qsizetype limit) {
    QList<MacProtectionEvent> events;
    return readText(text, limit, into(events)) ? std::optional(events) : std::nullopt;
}

} // namespace kestrin::engine

// Streams that are linked with a microphone, and no longer, as often as one likes.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::bench {

/// Does what the manager of a PipeWire session does, for streams that nobody else links.
class StreamLinks {
  public:
    /// Waits until all of them are there, by the names of their nodes.
    StreamLinks(const std::string &microphone, const std::vector<std::string> &streams);
    StreamLinks(const StreamLinks &) = delete;
    StreamLinks &operator=(const StreamLinks &) = delete;
    ~StreamLinks();

    void setLinked(std::size_t stream, bool isLinked);
    /// Says it to the server, and takes what that says meanwhile.
    void runFor(std::chrono::milliseconds time);

  private:
    class Session;
    std::unique_ptr<Session> m_session;
};

} // namespace kestrin::bench

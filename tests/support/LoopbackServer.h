#pragma once

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace KVR::Test
{

/// A web server on the loopback address, for the length of a scope: it notes the paths that it is asked for and answers
/// with the text for a path, or that there is none.
class LoopbackServer
{
public:
    using Documents = std::map<std::string, std::string>;

    /// Throws std::runtime_error when the system gives no port.
    explicit LoopbackServer(Documents documents);
    ~LoopbackServer();
    LoopbackServer(LoopbackServer const&) = delete;
    LoopbackServer& operator=(LoopbackServer const&) = delete;

    /// The address of a path that begins with "/".
    std::string AddressOf(std::string const& path) const;
    /// The paths asked for so far, in order.
    std::vector<std::string> Requests() const;

private:
    void Serve();
    void Answer(int connection);

    Documents m_documents;
    int m_listener = -1;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_requests;
    std::thread m_thread;
};

}  // namespace KVR::Test

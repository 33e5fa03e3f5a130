#include "tests/support/LoopbackServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace KVR::Test
{

namespace
{

sockaddr_in Loopback()
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

sockaddr* General(sockaddr_in& address)
{
    return reinterpret_cast<sockaddr*>(&address);
}

void Send(int connection, std::string const& text)
{
    for (std::size_t sent = 0; sent < text.size();)
    {
        ssize_t const count = ::send(connection, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += static_cast<std::size_t>(count);
    }
}

}  // namespace

LoopbackServer::LoopbackServer(Documents documents) : m_documents(std::move(documents))
{
    sockaddr_in address = Loopback();
    socklen_t size = sizeof address;
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // The system chooses the port.
    if (m_listener < 0 || ::bind(m_listener, General(address), size) != 0 || ::listen(m_listener, 16) != 0 ||
        ::getsockname(m_listener, General(address), &size) != 0)
        throw std::runtime_error("no server on the loopback address");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { Serve(); });
}

LoopbackServer::~LoopbackServer()
{
    // Wakes the thread out of its wait for a connection.
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
}

std::string LoopbackServer::AddressOf(std::string const& path) const
{
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

std::vector<std::string> LoopbackServer::Requests() const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_requests;
}

void LoopbackServer::Serve()
{
    for (int connection = ::accept(m_listener, nullptr, nullptr); connection >= 0;
         connection = ::accept(m_listener, nullptr, nullptr))
    {
        Answer(connection);
        ::close(connection);
    }
}

void LoopbackServer::Answer(int connection)
{
    std::string request;
    std::array<char, 4096> buffer;
    while (request.find("\r\n\r\n") == std::string::npos)
    {
        ssize_t const count = ::recv(connection, buffer.data(), buffer.size(), 0);
        if (count <= 0)
            return;
        request.append(buffer.data(), static_cast<std::size_t>(count));
    }
    // "GET /path HTTP/1.1"
    auto const start = request.find(' ') + 1;
    std::string const path = request.substr(start, request.find(' ', start) - start);
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_requests.push_back(path);
    }
    auto const document = m_documents.find(path);
    bool const isThere = document != m_documents.end();
    std::string const body = isThere ? document->second : "";
    Send(connection, std::string(isThere ? "HTTP/1.1 200 OK" : "HTTP/1.1 404 Not Found") +
                         "\r\nContent-Type: text/xml\r\nConnection: close\r\nContent-Length: " +
                         std::to_string(body.size()) + "\r\n\r\n" + body);
}

}  // namespace KVR::Test

#include "tests/platform/loading/ScriptedServer.hpp"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdlib>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace tests {

std::string ScriptedServer::Request::field(std::string_view name) const {
    const auto at = head.find("\r\n" + std::string(name) + ":");
    if (at == std::string::npos) return "<none>";
    const auto start = head.find_first_not_of(' ', at + 2 + name.size() + 1);
    return head.substr(start, head.find("\r\n", start) - start);
}

ScriptedServer::Connection::Connection(ScriptedServer& server, int socket, int number)
    : server_(server)
    , socket_(socket)
    , number_(number) {}

ScriptedServer::Request ScriptedServer::Connection::readRequest() {
    const auto receive = [&] {
        char bytes[16384];
        const auto count = recv(socket_, bytes, sizeof bytes, 0);
        if (count > 0) buffered_.append(bytes, static_cast<std::size_t>(count));
        return count > 0;
    };
    Request request;
    std::size_t end;
    while ((end = buffered_.find("\r\n\r\n")) == std::string::npos) {
        if (!receive()) return {};
    }
    request.head = buffered_.substr(0, end);
    buffered_.erase(0, end + 4);
    const auto length = static_cast<std::size_t>(std::atoll(request.field("Content-Length").c_str()));
    while (buffered_.size() < length) {
        if (!receive()) return {};
    }
    request.body = buffered_.substr(0, length);
    buffered_.erase(0, length);
    {
        const std::lock_guard lock(server_.mutex_);
        server_.requests_.push_back(request);
    }
    ++server_.requestCount_;
    return request;
}

void ScriptedServer::Connection::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

void ScriptedServer::Connection::respond(std::string_view body, std::string_view extraFields) const {
    std::string response = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
    response.append(extraFields).append("\r\n").append(body);
    send(response);
}

void ScriptedServer::Connection::reset() {
    const linger hard{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
}

void ScriptedServer::Connection::stall() const {
    char bytes[4096];
    while (recv(socket_, bytes, sizeof bytes, 0) > 0) {
    }
}

ScriptedServer::ScriptedServer(Script script)
    : script_(std::move(script))
    , listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener_, 1024) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("cannot listen on the loopback interface");
    }
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { serve(); });
}

ScriptedServer::Script ScriptedServer::answering(std::function<void(Connection&, const Request&)> answer) {
    return [answer = std::move(answer)](Connection& connection) {
        while (const Request request = connection.readRequest())
            answer(connection, request);
    };
}

ScriptedServer::~ScriptedServer() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        shutdown(listener_, SHUT_RDWR);
        for (const int socket : open_)
            shutdown(socket, SHUT_RDWR);
    }
    acceptor_.join();
    for (auto& thread : threads_)
        thread.join();
    ::close(listener_);
}

std::string ScriptedServer::url(std::string_view pathAndQuery, std::string_view host) const {
    return "http://" + std::string(host) + ":" + std::to_string(port_) + std::string(pathAndQuery);
}

std::vector<ScriptedServer::Request> ScriptedServer::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void ScriptedServer::serve() {
    while (true) {
        const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(mutex_);
        if (socket < 0 || stopping_) {
            if (socket >= 0) ::close(socket);
            return;
        }
        const int one = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
        open_.push_back(socket);
        threads_.emplace_back([this, socket, number = ++connectionCount_] {
            Connection connection(*this, socket, number);
            script_(connection);
            close(socket);
        });
    }
}

void ScriptedServer::close(int socket) {
    const std::lock_guard lock(mutex_);
    std::erase(open_, socket);
    ::close(socket);
}

} // namespace tests

#include "sandbox/Server.hpp"

#include "sandbox/Problem.hpp"

#include <httplib.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <future>
#include <mutex>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace sandbox {

namespace {

constexpr const char* everyPath = R"([\s\S]*)";
constexpr std::size_t longestBody = 16 * 1024 * 1024;
constexpr std::size_t mostThreads = 1024;
constexpr time_t keepAliveSeconds = 60;
constexpr std::size_t mostRequestsOfConnection = 1'000'000;

// Threads that grow with the number of open connections: each of them holds one, idle or not.
class ConnectionThreads final : public httplib::TaskQueue {
public:
    void enqueue(std::function<void()> connection) override {
        const std::lock_guard lock(mutex_);
        connections_.push_back(std::move(connection));
        if (idle_ < connections_.size() && threads_.size() < mostThreads) {
            threads_.emplace_back([this] { work(); });
        } else {
            changed_.notify_one();
        }
    }

    void shutdown() override {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        changed_.notify_all();
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }

private:
    void work() {
        std::unique_lock lock(mutex_);
        while (true) {
            ++idle_;
            changed_.wait(lock, [this] { return !connections_.empty() || isEnding_; });
            --idle_;
            if (connections_.empty()) return;
            const std::function<void()> connection = std::move(connections_.front());
            connections_.pop_front();
            lock.unlock();
            connection();
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> connections_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool isEnding_ = false;
};

// A connection that waits for its next request would hold a stop back until it times out, and the library knows no way
// to it. This process opens no connections, so each connected socket among its descriptors, but for the three it was
// started with, is a caller's.
void endReadingOnConnections() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/fd", error)) {
        const std::string name = entry.path().filename();
        int descriptor = -1;
        std::from_chars(name.data(), name.data() + name.size(), descriptor);
        if (descriptor <= STDERR_FILENO) continue;
        sockaddr_storage peer{};
        socklen_t length = sizeof peer;
        if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) == 0) ::shutdown(descriptor, SHUT_RD);
    }
}

Request requestOf(const httplib::Request& message) {
    Request request;
    request.isHead = message.method == "HEAD";
    request.method = request.isHead ? "GET" : message.method;
    request.query.insert(message.params.begin(), message.params.end());
    for (const auto& [name, value] : message.headers) {
        std::string key = name;
        std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) {
            return static_cast<char>(std::tolower(c));
        });
        request.headers.emplace(std::move(key), value);
    }
    request.body = message.body;
    return request;
}

void ignoreWhatTheLibraryGetsWrong(httplib::Request& message) {
    // It would cut every answer to the range that was asked for, errors too. A server may do without ranges (RFC 9110,
    // section 14.2).
    message.ranges.clear();
    // It refuses a long body that is said to be a form, which some tools say of any body by default.
    if (message.get_header_value("Content-Type").starts_with("application/x-www-form-urlencoded") &&
        message.get_header_value<std::uint64_t>("Content-Length") > CPPHTTPLIB_FORM_URL_ENCODED_PAYLOAD_MAX_LENGTH) {
        message.headers.erase("Content-Type");
    }
}

void fill(httplib::Response& message, const Response& response) {
    message.status = response.status;
    for (const auto& [name, value] : response.headers) {
        message.set_header(name, value);
    }
    if (!response.body.empty()) message.set_content(response.body, response.contentType);
}

} // namespace

class Server::Implementation : public httplib::Server {
public:
    explicit Implementation(const Router& router) {
        new_task_queue = [] { return new ConnectionThreads; };
        set_keep_alive_max_count(mostRequestsOfConnection);
        set_keep_alive_timeout(keepAliveSeconds);
        set_payload_max_length(longestBody);
        set_tcp_nodelay(true);
        // The library's default also shares the port, so that two sandboxes would take each other's requests.
        set_socket_options([](socket_t socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        const Handler handler = [&router](const httplib::Request& request, httplib::Response& response) {
            fill(response, router.dispatch(requestOf(request), request.target));
        };
        // The library reads a body by the method alone, and without a length waits for the connection's end. Who
        // announces no body (RFC 9112, section 6.3) is answered before it tries.
        set_pre_routing_handler([handler](const httplib::Request& request, httplib::Response& response) {
            ignoreWhatTheLibraryGetsWrong(const_cast<httplib::Request&>(request));
            if (request.has_header("Content-Length") || request.has_header("Transfer-Encoding")) {
                return HandlerResponse::Unhandled;
            }
            handler(request, response);
            return HandlerResponse::Handled;
        });
        Post(everyPath, handler);
        Put(everyPath, handler);
        Patch(everyPath, handler);
        Delete(everyPath, handler);
        // Of the other methods the library leaves a body in the connection, where it would pass for the next request.
        const Handler refusal = [](const httplib::Request& request, httplib::Response& response) {
            fill(response, Problem::badRequest("A " + request.method + " request takes no body.").response());
            response.set_header("Connection", "close");
        };
        Get(everyPath, refusal);
        Options(everyPath, refusal);
        // What the library refuses itself (a broken head, a body too long) comes here without a body.
        set_error_handler([](const httplib::Request&, httplib::Response& response) {
            if (!response.body.empty()) return;
            fill(response, Problem(response.status, "The request could not be read.").response());
        });
    }

    int bind(const std::string& host, int port) {
        const int bound = port == 0 ? bind_to_any_port(host) : bind_to_port(host, port) ? port : -1;
        // The library's queue of five refuses a burst of connections.
        if (bound > 0) ::listen(svr_sock_, SOMAXCONN);
        return bound;
    }

    void run() {
        listen_after_bind();
        finished_.set_value();
    }

    void stopAndWait() {
        const std::future<void> finished = finished_.get_future();
        do {
            if (svr_sock_ != INVALID_SOCKET) stop();
            endReadingOnConnections();
        } while (finished.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready);
    }

private:
    std::promise<void> finished_;
};

Server::Server(const Router& router)
    : implementation_(std::make_unique<Implementation>(router)) {}

Server::~Server() = default;

int Server::bind(const std::string& host, int port) {
    return implementation_->bind(host, port);
}

void Server::run() {
    implementation_->run();
}

void Server::stop() {
    implementation_->stopAndWait();
}

} // namespace sandbox

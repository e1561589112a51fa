#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tests {

/// A TCP server on 127.0.0.1 that does on each connection what a script says: whatever real servers never do on
/// purpose.
class ScriptedServer {
public:
    struct Request {
        std::string head; ///< request line and fields, without the empty line
        std::string body;

        /// False at the end of the connection.
        explicit operator bool() const { return !head.empty(); }

        [[nodiscard]] std::string line() const { return head.substr(0, head.find("\r\n")); }

        /// The value of the first field of this name (in this case), or "<none>".
        [[nodiscard]] std::string field(std::string_view name) const;
    };

    class Connection {
    public:
        Connection(ScriptedServer& server, int socket, int number);

        /// The number of this connection, from 1.
        [[nodiscard]] int number() const { return number_; }

        /// For scripts that speak something else than HTTP; stays the server's.
        [[nodiscard]] int socket() const { return socket_; }

        /// Waits for a whole request, with a body if it declares a length.
        Request readRequest();

        void send(std::string_view bytes) const;

        /// A whole response of status 200 with this body.
        void respond(std::string_view body, std::string_view extraFields = "") const;

        /// Ends with a reset instead of an orderly close.
        void reset();

        /// Does nothing until the client has closed.
        void stall() const;

    private:
        friend class ScriptedServer;
        ScriptedServer& server_;
        int socket_;
        int number_;
        std::string buffered_;
    };

    /// The script runs once for each connection, each on a thread of its own; when it returns the connection is closed.
    using Script = std::function<void(Connection&)>;

    explicit ScriptedServer(Script script);

    /// Serves every request of every connection.
    static Script answering(std::function<void(Connection&, const Request&)> answer);

    /// Closes everything and waits for the scripts.
    ~ScriptedServer();

    [[nodiscard]] int port() const { return port_; }

    [[nodiscard]] std::string url(std::string_view pathAndQuery = "/", std::string_view host = "127.0.0.1") const;

    [[nodiscard]] int connectionCount() const { return connectionCount_; }

    [[nodiscard]] int requestCount() const { return requestCount_; }

    /// All requests so far, in order of arrival.
    [[nodiscard]] std::vector<Request> requests() const;

private:
    void serve();
    void close(int socket);

    Script script_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<int> connectionCount_{0};
    std::atomic<int> requestCount_{0};
    mutable std::mutex mutex_;
    bool stopping_ = false;
    std::vector<Request> requests_;
    std::vector<int> open_;
    std::vector<std::thread> threads_;
    std::thread acceptor_;
};

} // namespace tests

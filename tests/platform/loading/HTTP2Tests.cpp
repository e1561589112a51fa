// HTTP/2 needs a server that somebody else wrote: nghttpd, which echoes what is posted to it.

#include "tests/ChildProcess.hpp"
#include "tests/platform/loading/Identity.hpp"
#include "tests/platform/loading/Loading.hpp"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <netinet/in.h>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace tests;
using platform::URLSession;

namespace {

int freePort() {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(descriptor, reinterpret_cast<sockaddr*>(&address), size);
    getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    close(descriptor);
    return ntohs(address.sin_port);
}

/// nghttpd in a process of its own, with what it tells of its frames.
class Nghttpd {
public:
    Nghttpd(const Identity& identity, int mostStreams) {
        // Between finding a port free and listening on it another process may take it.
        for (int attempt = 0; attempt < 10; ++attempt) {
            if (start(identity, mostStreams, freePort())) return;
        }
        throw std::runtime_error("nghttpd does not start");
    }

    ~Nghttpd() { stop(); }

    Nghttpd(const Nghttpd&) = delete;
    Nghttpd& operator=(const Nghttpd&) = delete;

    [[nodiscard]] std::string url(std::string_view path) const {
        return "https://127.0.0.1:" + std::to_string(port_) + std::string(path);
    }

    /// Waits until it has told of `text`; false if it ends before.
    bool waitFor(std::string_view text) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return told_.find(text) != std::string::npos || hasEnded_; });
        return told_.find(text) != std::string::npos;
    }

    void stop() {
        if (!reader_.joinable()) return;
        process_->signal(SIGKILL);
        reader_.join();
        process_.reset();
    }

    /// How many connections had a request, once it has stopped.
    [[nodiscard]] std::size_t connectionCount() const {
        std::set<std::string> connections;
        for (std::size_t at = 0; (at = told_.find("[id=", at)) != std::string::npos; ++at) {
            const auto line = told_.substr(at, told_.find('\n', at) - at);
            if (line.find("recv HEADERS") != std::string::npos) connections.insert(line.substr(0, line.find(']')));
        }
        return connections.size();
    }

private:
    bool start(const Identity& identity, int mostStreams, int port) {
        port_ = port;
        hasEnded_ = false;
        told_.clear();
        process_.emplace(std::vector<std::string>{
            NGHTTPD,
            "--address=127.0.0.1",
            "--htdocs=" + identity.folder.string(),
            "--echo-upload",
            "--max-concurrent-streams=" + std::to_string(mostStreams),
            "--verbose",
            std::to_string(port),
            identity.keyFile.string(),
            identity.certificateFile.string()
        });
        reader_ = std::thread([this] { read(); });
        if (waitFor("listen 127.0.0.1")) return true;
        stop();
        return false;
    }

    void read() {
        while (const auto line = process_->nextLine()) {
            const std::lock_guard lock(mutex_);
            told_.append(*line).append("\n");
            changed_.notify_all();
        }
        const std::lock_guard lock(mutex_);
        hasEnded_ = true;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string told_;
    bool hasEnded_ = false;
    int port_ = 0;
    std::optional<ChildProcess> process_;
    std::thread reader_;
};

platform::URLRequest post(const std::string& url, std::string body) {
    auto result = request(url, "POST");
    result.httpBody = platform::ByteChunk(std::move(body));
    return result;
}

platform::URLSessionConfiguration trusting(const Identity& identity) {
    auto configuration = direct();
    configuration.certificateAuthorityFile = identity.certificateFile.string();
    return configuration;
}

} // namespace

TEST(HTTP2, TransfersShareAConnectionAndKeepApart) {
    const Identity identity;

    // With more transfers than the server takes on one connection some wait, and few go by another one.
    const struct {
        int mostStreams;
        std::size_t mostConnections;
    } rows[] = {{100, 12}, {8, 40}};

    const auto bodyOf = [](std::size_t i) { return std::string(i % 5 * 100 + 1, static_cast<char>('a' + i % 26)); };

    for (const auto& row : rows) {
        SCOPED_TRACE(row.mostStreams);
        Nghttpd server(identity, row.mostStreams);
        {
            const URLSession session(trusting(identity));
            EXPECT_EQ(load(session, post(server.url("/"), "first")).text(), "200 first");

            std::vector<Outcome> outcomes(300);
            std::vector<platform::URLSessionTask> tasks;
            for (std::size_t i = 0; i < outcomes.size(); ++i) {
                const auto what = post(server.url("/" + std::to_string(i)), bodyOf(i));
                tasks.push_back(session.dataTask(what, outcomes[i].handler()));
                tasks.back().resume();
                if (i % 7 == 3) tasks[i - 1].cancel();
            }
            for (std::size_t i = 0; i < outcomes.size(); ++i) {
                const std::string text = outcomes[i].text();
                if (i % 7 == 2 && text == "cancelled") continue;
                EXPECT_TRUE(text == "200 " + bodyOf(i)) << i << ": " << outcomes[i].errorText();
                EXPECT_EQ(outcomes[i].completions(), 1);
            }
        }
        server.stop();
        EXPECT_LE(server.connectionCount(), row.mostConnections);
    }
}

TEST(HTTP2, AServerThatDiesEndsEveryTransferOnce) {
    const Identity identity;
    Nghttpd server(identity, 100);
    const URLSession session(trusting(identity));
    ASSERT_EQ(load(session, post(server.url("/"), "first")).text(), "200 first");

    // More than the windows take, so that most transfers are under way when the server goes.
    const std::string body(2'000'000, 'x');
    std::vector<Outcome> outcomes(20);
    for (Outcome& outcome : outcomes)
        session.dataTask(post(server.url("/"), body), outcome.handler()).resume();
    ASSERT_TRUE(server.waitFor("stream_id=5"));
    server.stop();
    for (const Outcome& outcome : outcomes) {
        const std::string text = outcome.text();
        EXPECT_TRUE(text == "connectionLost" || text == "cannotConnect" || text == "200 " + body)
            << text.substr(0, 20) << ": " << outcome.errorText();
        EXPECT_EQ(outcome.completions(), 1);
    }
}

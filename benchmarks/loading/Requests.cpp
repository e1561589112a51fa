#include "benchmarks/Ratios.hpp"
#include "platform/loading/URLSession.hpp"

#include <curl/curl.h>
#include <httplib.h>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <unordered_map>
#include <vector>

// Requests on the loopback interface: 1 KB of JSON for a GET over connections that stay open. Compared is the CPU time
// of the client's threads for a request, since the wire and the server are the same for all. The blocking clients make
// one request after the other: more of them at once would be more threads that each cost the same.
//
// With arguments the program is one side alone, for a counter of instructions (see bench_loading_instructions.in):
// `serve` prints the port it answers on, `layer PORT COUNT IN_FLIGHT` and `easy PORT COUNT` make that many requests.

namespace {

using Clock = std::chrono::steady_clock;

const std::string& response() {
    static const std::string text = [] {
        const std::string body = "{\"text\":\"" + std::string(1011, 'x') + "\"}";
        return "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
               "\r\n\r\n" + body;
    }();
    return text;
}

/// Answers every request on every connection, on one thread.
class Server {
public:
    Server() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        bind(listener_, reinterpret_cast<sockaddr*>(&address), size);
        listen(listener_, 1024);
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        watch(listener_);
        watch(stop_[0]);
        thread_ = std::thread([this] { run(); });
    }

    ~Server() {
        close(stop_[1]);
        thread_.join();
        for (const auto& entry : pending_)
            close(entry.first);
        for (const int descriptor : {listener_, epoll_, stop_[0]})
            close(descriptor);
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    int port = 0;

private:
    void watch(int descriptor) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = descriptor;
        epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &event);
    }

    void run() {
        epoll_event events[64];
        while (true) {
            const int count = epoll_wait(epoll_, events, 64, -1);
            for (int i = 0; i < count; ++i) {
                const int descriptor = events[i].data.fd;
                if (descriptor == stop_[0]) return;
                if (descriptor == listener_) {
                    const int accepted = accept(listener_, nullptr, nullptr);
                    const int one = 1;
                    setsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
                    pending_[accepted];
                    watch(accepted);
                } else {
                    serve(descriptor);
                }
            }
        }
    }

    void serve(int descriptor) {
        char bytes[8192];
        const auto got = recv(descriptor, bytes, sizeof bytes, 0);
        if (got <= 0) {
            close(descriptor);
            pending_.erase(descriptor);
            return;
        }
        auto& text = pending_[descriptor];
        text.append(bytes, static_cast<std::size_t>(got));
        for (std::size_t end; (end = text.find("\r\n\r\n")) != std::string::npos;) {
            text.erase(0, end + 4);
            send(descriptor, response().data(), response().size(), MSG_NOSIGNAL);
        }
    }

    int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int epoll_ = epoll_create1(EPOLL_CLOEXEC);
    int stop_[2] = {-1, -1};
    int unused_ = pipe(stop_);
    std::unordered_map<int, std::string> pending_;
    std::thread thread_;
};

double threadCPU() {
    return benchmarks::cpuNanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

/// The layer with a number of requests in flight, each completion starting the next.
class Layer {
public:
    explicit Layer(int port)
        : request_(platform::URL::make("http://127.0.0.1:" + std::to_string(port) + "/links?page=1").value())
        , session_(configuration()) {}

    /// Returns the CPU time a request, on this thread and the session's.
    double run(int count, int inFlight) {
        left_ = count - inFlight;
        open_ = inFlight;
        const double before = threadCPU();
        for (int i = 0; i < inFlight; ++i)
            start();
        const double submitting = threadCPU() - before;
        std::unique_lock lock(mutex_);
        ended_.wait(lock, [&] { return open_ == 0; });
        const double loop = loopAfter_ - loopBefore_;
        loopBefore_ = loopAfter_;
        return (submitting + loop) / count;
    }

    std::vector<double> latencies;

private:
    static platform::URLSessionConfiguration configuration() {
        platform::URLSessionConfiguration result;
        result.proxy = "";
        return result;
    }

    void start() {
        session_
            .dataTask(
                request_,
                [this, started = Clock::now()](auto, auto, auto error) {
                    if (error) std::abort();
                    const std::lock_guard lock(mutex_);
                    latencies.push_back(std::chrono::duration<double, std::micro>(Clock::now() - started).count());
                    if (left_ > 0) {
                        --left_;
                        start();
                    } else if (--open_ == 0) {
                        loopAfter_ = threadCPU();
                        ended_.notify_one();
                    }
                }
            )
            .resume();
    }

    platform::URLRequest request_;
    std::mutex mutex_;
    std::condition_variable ended_;
    int left_ = 0;
    int open_ = 0;
    double loopBefore_ = 0;
    double loopAfter_ = 0;
    platform::URLSession session_;
};

class Easy {
public:
    explicit Easy(int port)
        : url_("http://127.0.0.1:" + std::to_string(port) + "/links?page=1") {
        curl_easy_setopt(easy_, CURLOPT_URL, url_.c_str());
        curl_easy_setopt(easy_, CURLOPT_PROXY, "");
        curl_easy_setopt(
            easy_,
            CURLOPT_WRITEFUNCTION,
            +[](char* bytes, std::size_t, std::size_t size, void* out) {
                static_cast<std::string*>(out)->append(bytes, size);
                return size;
            }
        );
        curl_easy_setopt(easy_, CURLOPT_WRITEDATA, &body_);
        // The same bytes on the wire as the layer's.
        curl_easy_setopt(easy_, CURLOPT_ACCEPT_ENCODING, "");
        curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, fields_);
    }

    ~Easy() {
        curl_easy_cleanup(easy_);
        curl_slist_free_all(fields_);
    }

    Easy(const Easy&) = delete;
    Easy& operator=(const Easy&) = delete;

    double run(int count) {
        const double before = threadCPU();
        for (int i = 0; i < count; ++i) {
            body_.clear();
            if (curl_easy_perform(easy_) != CURLE_OK) std::abort();
        }
        return (threadCPU() - before) / count;
    }

private:
    std::string url_;
    std::string body_;
    CURL* easy_ = curl_easy_init();
    curl_slist* fields_ = curl_slist_append(nullptr, "Accept:");
};

class Raw {
public:
    explicit Raw(int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        if (connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::abort();
    }

    ~Raw() { close(socket_); }

    Raw(const Raw&) = delete;
    Raw& operator=(const Raw&) = delete;

    double run(int count) {
        constexpr std::string_view request = "GET /links?page=1 HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
        const double before = threadCPU();
        for (int i = 0; i < count; ++i) {
            send(socket_, request.data(), request.size(), MSG_NOSIGNAL);
            char bytes[4096];
            for (std::size_t got = 0; got < response().size();)
                got += static_cast<std::size_t>(recv(socket_, bytes, sizeof bytes, 0));
        }
        return (threadCPU() - before) / count;
    }

private:
    int socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

class Httplib {
public:
    explicit Httplib(int port)
        : client_("127.0.0.1", port) {
        client_.set_keep_alive(true);
    }

    double run(int count) {
        const double before = threadCPU();
        for (int i = 0; i < count; ++i) {
            if (!client_.Get("/links?page=1")) std::abort();
        }
        return (threadCPU() - before) / count;
    }

private:
    httplib::Client client_;
};

int runAlone(const std::vector<std::string>& arguments) {
    const auto number = [&](std::size_t index) { return std::atoi(arguments.at(index).c_str()); };
    if (arguments[0] == "serve") {
        const Server server;
        std::printf("%d\n", server.port);
        std::fflush(stdout);
        pause();
    } else if (arguments[0] == "layer") {
        Layer(number(1)).run(number(2), number(3));
    } else if (arguments[0] == "easy") {
        Easy(number(1)).run(number(2));
    } else {
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1) return runAlone({argv + 1, argv + argc});
    const Server server;
    const int rounds = benchmarks::isSmokeRun() ? 3 : 15;
    const int count = benchmarks::isSmokeRun() ? 600 : 2000;
    Easy easy(server.port);
    Raw raw(server.port);
    Httplib httplib(server.port);
    for (const int inFlight : {1, 8, 64, 512}) {
        Layer layer(server.port);
        std::vector<double> ours;
        std::vector<double> easys;
        std::vector<double> raws;
        std::vector<double> httplibs;
        for (int round = -1; round < rounds; ++round) {
            if (round == 0) layer.latencies.clear();
            const double samples[] = {layer.run(count, inFlight), easy.run(count), raw.run(count), httplib.run(count)};
            if (round < 0) continue;
            ours.push_back(samples[0]);
            easys.push_back(samples[1]);
            raws.push_back(samples[2]);
            httplibs.push_back(samples[3]);
        }
        const auto name = "loading: CPU a request, " + std::to_string(inFlight) + " in flight";
        using enum benchmarks::Bound;
        benchmarks::report(
            name, "easy handle", benchmarks::median(ours) / benchmarks::median(easys), atMost, inFlight == 1 ? 1.5 : 0.9
        );
        benchmarks::report(name, "cpp-httplib", benchmarks::median(ours) / benchmarks::median(httplibs), atMost, 0);
        benchmarks::report(name, "raw socket", benchmarks::median(ours) / benchmarks::median(raws), atMost, 0);
        if (inFlight == 512) {
            auto& all = layer.latencies;
            std::sort(all.begin(), all.end());
            benchmarks::report(
                "loading: p99 of the time a request, 512 in flight",
                "its own p50",
                all[all.size() * 99 / 100] / all[all.size() / 2],
                atMost,
                3.5
            );
        }
    }
}

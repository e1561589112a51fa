#include "benchmarks/Ratios.hpp"
#include "platform/loading/URLSession.hpp"
#include "platform/loading/URLSessionTaskDelegate.hpp"

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

// A reader that is slower than its server: it suspends the task while it has enough to do, and resumes it when it needs
// more. Reported are the memory that the process grows by meanwhile, and the time from `resume()` to the next byte.

namespace {

using Clock = std::chrono::steady_clock;
using platform::ByteChunk;
using platform::URLSessionTask;

constexpr std::size_t kibi = 1024;
constexpr std::size_t mebi = 1024 * kibi;

/// Sends one body of a given length, as fast as it is taken.
class Server {
public:
    explicit Server(std::uint64_t length)
        : length_(length) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        bind(listener_, reinterpret_cast<sockaddr*>(&address), size);
        listen(listener_, 1);
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        thread_ = std::thread([this] { run(); });
    }

    ~Server() {
        thread_.join();
        close(listener_);
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    int port = 0;

private:
    void run() {
        const int client = accept(listener_, nullptr, nullptr);
        std::string head;
        char bytes[4096];
        while (head.find("\r\n\r\n") == std::string::npos) {
            const auto got = recv(client, bytes, sizeof bytes, 0);
            if (got <= 0) return;
            head.append(bytes, static_cast<std::size_t>(got));
        }
        send(client, "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length_) + "\r\n\r\n");
        const std::string block(64 * kibi, 'x');
        for (std::uint64_t sent = 0; sent < length_; sent += block.size()) {
            if (!send(client, block)) break;
        }
        close(client);
    }

    static bool send(int client, const std::string& text) {
        for (std::size_t sent = 0; sent < text.size();) {
            const auto took = ::send(client, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
            if (took <= 0) return false;
            sent += static_cast<std::size_t>(took);
        }
        return true;
    }

    const std::uint64_t length_;
    int listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::thread thread_;
};

/// What lies between the session's thread and the reader: suspends the task above a mark.
class Queue final : public platform::URLSessionTaskDelegate {
public:
    explicit Queue(std::size_t highMark)
        : highMark_(highMark) {}

    void didReceiveData(const URLSessionTask& task, const ByteChunk& data) override {
        const auto now = Clock::now();
        const std::lock_guard lock(mutex_);
        if (chunks_.empty()) firstByte_ = now;
        byteCount_ += data.size();
        chunks_.push_back(data);
        if (byteCount_ >= highMark_) task.suspend();
        changed_.notify_one();
    }

    void didComplete(const URLSessionTask&, const std::exception_ptr& error) override {
        static_cast<void>(error);
        const std::lock_guard lock(mutex_);
        isComplete_ = true;
        changed_.notify_one();
    }

    struct Taken {
        std::vector<ByteChunk> chunks{};
        Clock::time_point firstByte{};
    };

    /// Waits until the queue is not empty and takes all of it; takes nothing at the end of the body.
    Taken takeAll() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !chunks_.empty() || isComplete_; });
        byteCount_ = 0;
        return {std::exchange(chunks_, {}), firstByte_};
    }

private:
    const std::size_t highMark_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<ByteChunk> chunks_;
    std::size_t byteCount_ = 0;
    Clock::time_point firstByte_{};
    bool isComplete_ = false;
};

/// A task that loads the server's body into a queue. Not yet resumed.
URLSessionTask makeTask(const platform::URLSession& session, int port, const std::shared_ptr<Queue>& queue) {
    const auto url = platform::URL::make("http://127.0.0.1:" + std::to_string(port) + "/");
    auto task = session.dataTask(platform::URLRequest(url.value()));
    task.setDelegate(queue);
    return task;
}

std::size_t residentBytes() {
    char text[64] = {};
    const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    const auto size = read(file, text, sizeof text - 1);
    close(file);
    unsigned long pages = 0;
    if (size <= 0 || std::sscanf(text, "%*u %lu", &pages) != 1) std::abort();
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// The most by which resident memory grew over what it was when the first byte had come.
double growthInMebibytes(const platform::URLSession& session, std::uint64_t length) {
    const Server server(length);
    const auto queue = std::make_shared<Queue>(256 * kibi);
    const auto task = makeTask(session, server.port, queue);
    task.resume();
    std::size_t before = 0;
    std::size_t most = 0;
    std::uint64_t read = 0;
    for (auto taken = queue->takeAll(); !taken.chunks.empty(); taken = queue->takeAll()) {
        for (const auto& chunk : taken.chunks)
            read += chunk.size();
        most = std::max(most, residentBytes());
        if (before == 0) before = most;
        taken.chunks.clear();
        std::this_thread::sleep_for(std::chrono::microseconds(100)); // the reader's own work
        task.resume();
    }
    if (read != length) std::abort();
    return static_cast<double>(most - before) / static_cast<double>(mebi);
}

/// A thread that sleeps until it is woken and then notes the time: what any hand-over to another thread costs at least.
class Sleeper {
public:
    Sleeper()
        : thread_([this] { run(); }) {}

    ~Sleeper() {
        wake(true);
        thread_.join();
    }

    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;

    /// Wakes the thread and returns the time it noted.
    Clock::time_point wakeAndWait() {
        wake(false);
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !isWoken_; });
        return noted_;
    }

private:
    void wake(bool forGood) {
        const std::lock_guard lock(mutex_);
        isWoken_ = true;
        isEnded_ = forGood;
        changed_.notify_all();
    }

    void run() {
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [&] { return isWoken_; });
            if (isEnded_) return;
            noted_ = Clock::now();
            isWoken_ = false;
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool isWoken_ = false;
    bool isEnded_ = false;
    Clock::time_point noted_{};
    std::thread thread_;
};

struct Delays {
    std::vector<double> resume{}; ///< from `resume()` to the next byte of a task that stood still with data waiting
    std::vector<double> wakeUp{}; ///< of a sleeping thread
};

double quantile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(static_cast<double>(values.size()) * share)];
}

/// Both delays in microseconds, taken in turn.
Delays delays(const platform::URLSession& session, int count) {
    const Server server((static_cast<std::uint64_t>(count) + 64) * 64 * kibi);
    const auto queue = std::make_shared<Queue>(1);
    const auto task = makeTask(session, server.port, queue);
    Sleeper sleeper;
    Delays result;
    const auto microsecondsSince = [](Clock::time_point start, Clock::time_point end) {
        return std::chrono::duration<double, std::micro>(end - start).count();
    };
    const auto rest = [] { std::this_thread::sleep_for(std::chrono::microseconds(300)); }; // all threads fall asleep
    for (int i = 0; i < count; ++i) {
        const auto resumed = Clock::now();
        task.resume();
        const auto taken = queue->takeAll();
        if (taken.chunks.empty()) std::abort();
        if (i > 0) result.resume.push_back(microsecondsSince(resumed, taken.firstByte));
        rest();
        const auto woken = Clock::now();
        result.wakeUp.push_back(microsecondsSince(woken, sleeper.wakeAndWait()));
        rest();
    }
    task.cancel();
    return result;
}

} // namespace

int main() {
    using enum benchmarks::Bound;
    const bool isSmoke = benchmarks::isSmokeRun();
    platform::URLSessionConfiguration configuration;
    configuration.proxy = "";
    const platform::URLSession session(configuration);
    growthInMebibytes(session, mebi); // what is made once is made
    const std::uint64_t length = (isSmoke ? 32 : 1024) * mebi;
    benchmarks::report(
        "loading: growth in MiB, slow reader of " + std::to_string(length / mebi) + " MiB",
        "its first block",
        growthInMebibytes(session, length),
        atMost,
        3
    );
    // Medians over rounds: what else the machine runs reaches the tail of some rounds, but not of most.
    std::vector<double> p99s;
    std::vector<double> p99Ratios;
    std::vector<double> p50Ratios;
    for (int round = 0; round < (isSmoke ? 1 : 9); ++round) {
        const auto [resume, wakeUp] = delays(session, 200);
        p99s.push_back(quantile(resume, 0.99));
        p99Ratios.push_back(quantile(resume, 0.99) / quantile(wakeUp, 0.99));
        p50Ratios.push_back(quantile(resume, 0.5) / quantile(wakeUp, 0.5));
    }
    benchmarks::report("loading: resume to first byte, p99 in us", "none", quantile(p99s, 0.5), atMost, 150);
    benchmarks::report("loading: resume to first byte, p99", "waking a thread", quantile(p99Ratios, 0.5), atMost, 0);
    benchmarks::report("loading: resume to first byte, p50", "waking a thread", quantile(p50Ratios, 0.5), atMost, 0);
}

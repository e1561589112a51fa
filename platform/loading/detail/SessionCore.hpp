#pragma once

#include "platform/loading/URLSessionConfiguration.hpp"
#include "platform/loading/detail/Poller.hpp"
#include "platform/loading/detail/TaskState.hpp"
#include "platform/loading/detail/Transfer.hpp"

#include <curl/curl.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace platform::inline v1::detail {

/// Bounds the transfers under way to one origin and starts waiting ones in the order they came. The engine has such a
/// limit too, but wakes waiters in no order, so that under load some wait ten times as long as others.
struct OriginGate {
    TaskState::List waiting;
    int running = 0;
    int unshared = 0; ///< those of them that need a connection each, whatever the origin speaks
    bool speaksHTTP2 = false;
    /// How many may share connections beyond one on each, found as TCP finds its window: one more with each response,
    /// until the engine opens another connection because the server takes no more streams on those there are. A server
    /// refuses what a fresh connection carries beyond its limit, and a refused POST could not be told from a lost one.
    int furtherStreams = 0;
    bool isFull = false;    ///< nothing more is tried until no transfer is under way
    bool isTouched = false; ///< on the list of those to be looked at
};

/// What stands behind a session: one thread that moves the bytes of all its tasks.
///
/// The loop: look at the tasks that other threads changed, give the engine its due timer, collect what has ended, let
/// waiting tasks through their gates, end the ones that have been idle too long, wait for sockets or a wake-up. Every
/// task ends in `complete`, whose flag makes sure that it ends once.
///
/// The thread keeps the core alive; a task that is under way is kept alive by the core, and any task keeps the core.
class SessionCore final : public std::enable_shared_from_this<SessionCore>, private TransferEvents {
public:
    explicit SessionCore(URLSessionConfiguration configuration);
    ~SessionCore();

    SessionCore(const SessionCore&) = delete;
    SessionCore& operator=(const SessionCore&) = delete;

    [[nodiscard]] const URLSessionConfiguration& configuration() const noexcept { return configuration_; }

    /// Has the loop look at a task whose flags have changed. Any thread.
    void submit(const std::shared_ptr<TaskState>& task);

    /// Cancels everything and refuses what comes later; waits for the thread to end unless this is the thread. Any
    /// thread, any number of times.
    void stop();

private:
    using Clock = std::chrono::steady_clock;

    void start();
    void run() noexcept;
    void loop();
    void takeSubmissions();
    void reconcile(const std::shared_ptr<TaskState>& task);
    void enqueue(const std::shared_ptr<TaskState>& task);
    void touch(OriginGate& gate);
    void openGates();
    void admit(OriginGate& gate);
    void begin(const std::shared_ptr<TaskState>& task);
    void collectResults();
    void didEnd(const std::shared_ptr<TaskState>& task, CURLcode code);
    void redirect(const std::shared_ptr<TaskState>& task);
    void expireIdleTransfers();
    void wait();
    void cancelEverything();

    /// Gives the task's slot, list place and handle back.
    void release(TaskState& task);
    void finish(const std::shared_ptr<TaskState>& task, std::optional<URLError> error);
    static void complete(const std::shared_ptr<TaskState>& task, std::optional<URLError> error) noexcept;
    static void completeElsewhere(const std::shared_ptr<TaskState>& task, const URLError& error) noexcept;

    bool didCompleteHead(Transfer& transfer) override;
    Body didReceiveBody(Transfer& transfer, std::string_view bytes) override;
    void willConnect(Transfer& transfer) override;
    void didProgress(Transfer& transfer) override;

    [[nodiscard]] int connectionsOfOrigin() const noexcept;
    [[nodiscard]] std::chrono::milliseconds idleLimit(const TaskState& task) const noexcept;
    [[nodiscard]] static TaskState& taskOf(const Transfer& transfer) noexcept;
    [[nodiscard]] std::unique_ptr<Transfer> takeTransfer();

    static int socketCallback(CURL*, curl_socket_t socket, int what, void* self, void*) noexcept;
    static int timerCallback(CURLM*, long milliseconds, void* self) noexcept;

    const URLSessionConfiguration configuration_;

    std::mutex mutex_; // guards the next four
    std::vector<std::shared_ptr<TaskState>> submissions_;
    bool stopped_ = false;
    bool started_ = false;
    std::thread thread_;

    /// True while the loop is in, or about to enter, its wait: only then is a wake-up worth a system call.
    std::atomic<bool> sleeping_{false};
    std::unique_ptr<Poller> poller_;

    // The loop thread's from here on.
    CURLM* multi_ = nullptr;
    CURLSH* share_ = nullptr;
    std::unordered_map<std::string, OriginGate> gates_;
    std::vector<OriginGate*> touchedGates_;
    TaskState::List active_;
    std::vector<std::unique_ptr<Transfer>> idleTransfers_;
    std::vector<std::shared_ptr<TaskState>> takenSubmissions_;
    std::vector<Poller::Ready> ready_;
    Clock::time_point now_{};
    std::optional<Clock::time_point> engineTimer_;
    std::optional<Clock::time_point> nextIdleCheck_;
};

} // namespace platform::inline v1::detail

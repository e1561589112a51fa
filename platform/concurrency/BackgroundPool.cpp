#include "platform/concurrency/BackgroundPool.hpp"

#include "platform/concurrency/detail/JobQueue.hpp"

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace platform::inline v1 {

namespace {

/// Blocks all signals on this thread for its lifetime; a thread that is started meanwhile inherits that for good.
class SignalsBlocked {
public:
    SignalsBlocked() noexcept {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }

    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

} // namespace

/// Owned by the pool and by each of its threads, since a thread may outlive the pool.
struct BackgroundPool::State : std::enable_shared_from_this<State> {
    explicit State(unsigned threads)
        : mostThreads(std::max(threads, 1U)) {
        workers.reserve(mostThreads);
    }

    void startThread() {
        const SignalsBlocked blocked;
        workers.emplace_back([self = shared_from_this()] { self->work(); });
    }

    void work() noexcept {
        std::unique_lock lock(mutex);
        while (true) {
            ++idle;
            arrived.wait(lock, [this] { return !jobs.isEmpty() || ended; });
            --idle;
            if (jobs.isEmpty()) return;
            Job& job = jobs.pop();
            --waiting;
            lock.unlock();
            job.run(&job); // may destroy the job and the pool
            lock.lock();
        }
    }

    const std::size_t mostThreads;
    std::mutex mutex{};
    std::condition_variable arrived{};
    detail::JobQueue jobs{};
    std::size_t waiting = 0; ///< jobs in the queue
    std::size_t idle = 0;    ///< threads that wait for one, or were woken and have not looked yet
    bool ended = false;
    std::vector<std::thread> workers{};
};

const std::shared_ptr<Executor>& BackgroundPool::shared() {
    // Never destroyed: tasks may still run on it while the process ends.
    static const auto& pool = *new const std::shared_ptr<Executor>( // NOLINT(cppcoreguidelines-owning-memory)
        std::make_shared<BackgroundPool>(std::clamp(std::thread::hardware_concurrency(), 2U, 4U))
    );
    return pool;
}

BackgroundPool::BackgroundPool(unsigned threads)
    : state_(std::make_shared<State>(threads)) {
    const std::lock_guard lock(state_->mutex);
    state_->startThread();
}

BackgroundPool::~BackgroundPool() {
    std::vector<std::thread> workers;
    {
        const std::lock_guard lock(state_->mutex);
        state_->ended = true;
        workers.swap(state_->workers);
    }
    state_->arrived.notify_all();
    for (std::thread& worker : workers) {
        if (worker.get_id() == std::this_thread::get_id()) {
            worker.detach();
        } else {
            worker.join();
        }
    }
}

void BackgroundPool::post(Job& job) noexcept {
    State& state = *state_;
    {
        const std::lock_guard lock(state.mutex);
        state.jobs.push(job);
        if (++state.waiting > state.idle && state.workers.size() < state.mostThreads) {
            try {
                state.startThread();
            } catch (const std::system_error&) {
                // The threads that there are will do.
            }
        }
    }
    state.arrived.notify_one();
}

} // namespace platform::inline v1

#include "platform/concurrency/Strand.hpp"

#include "platform/concurrency/detail/JobQueue.hpp"

#include <mutex>
#include <utility>

namespace platform::inline v1 {

/// The job that it posts to the executor is the state itself.
struct Strand::State : Job {
    explicit State(std::shared_ptr<Executor> runsOn) noexcept
        : executor(std::move(runsOn)) {
        run = [](Job* job) noexcept { static_cast<State*>(job)->drain(); };
    }

    /// Runs what waits now, and leaves what comes meanwhile for another turn: the executor's other jobs want theirs.
    void drain() noexcept {
        std::unique_lock lock(mutex);
        detail::JobQueue turn(std::move(jobs));
        lock.unlock();
        while (!turn.isEmpty()) {
            Job& job = turn.pop();
            job.run(&job); // may destroy the job and the strand
        }
        lock.lock();
        if (jobs.isEmpty()) {
            const std::shared_ptr<State> self = std::move(scheduled);
            lock.unlock();
            return;
        }
        lock.unlock();
        const std::shared_ptr<Executor> target = executor; // this may be gone before `post` returns
        target->post(*this);
    }

    const std::shared_ptr<Executor> executor;
    std::mutex mutex{};
    detail::JobQueue jobs{};
    std::shared_ptr<State> scheduled{}; ///< this, while it is posted or runs
};

Strand::Strand(std::shared_ptr<Executor> executor)
    : state_(std::make_shared<State>(std::move(executor))) {}

Strand::~Strand() = default;

void Strand::post(Job& job) noexcept {
    const std::shared_ptr<State> state = state_; // the job may let go of the strand before `post` returns
    {
        const std::lock_guard lock(state->mutex);
        state->jobs.push(job);
        if (state->scheduled) return;
        state->scheduled = state;
    }
    state->executor->post(*state);
}

} // namespace platform::inline v1

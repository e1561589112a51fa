#pragma once

#include "platform/Export.hpp"
#include "platform/concurrency/Executor.hpp"
#include "platform/concurrency/detail/JobQueue.hpp"

#include <condition_variable>
#include <mutex>

namespace platform::inline v1 {

/// An executor whose jobs run on the thread that calls `run`, first in, first out.
///
/// Every job must have run before the loop is destroyed. Posting and running a job take constant time.
///
/// Thread safety: `post` and `stop` from any thread; `run` from one thread at a time.
class QUILLBEAM_EXPORT RunLoop final : public Executor {
public:
    RunLoop() = default;
    ~RunLoop() override;

    void post(Job& job) noexcept override;

    /// Runs jobs as they come until `stop` was called and no job is left.
    void run() noexcept;

    /// Makes `run` return once no job is left, now or at its next call.
    void stop() noexcept;

private:
    std::mutex mutex_{};
    std::condition_variable arrived_{};
    detail::JobQueue jobs_{};
    bool stopped_ = false;
};

} // namespace platform::inline v1

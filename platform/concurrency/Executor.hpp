#pragma once

#include "platform/Export.hpp"

namespace platform::inline v1 {

/// A piece of work for an executor, embedded in the object that it works on, so that posting allocates nothing.
///
/// The object stays at its address until `run` was called; `run` may destroy it.
struct Job {
    Job* next = nullptr; ///< for the executor that holds the job
    void (*run)(Job* job) noexcept = nullptr;
};

/// Where suspended tasks go on.
///
/// An executor runs every job that was posted to it exactly once, and never inside `post`. It may be shared by any
/// number of tasks. Tasks on one executor run at the same time only if the executor has more than one thread.
///
/// Thread safety: `post` may be called from any thread.
class QUILLBEAM_EXPORT Executor {
public:
    Executor() = default;
    Executor(const Executor&) = delete;
    Executor& operator=(const Executor&) = delete;
    virtual ~Executor();

    /// Takes `job` over until it has run.
    virtual void post(Job& job) noexcept = 0;
};

} // namespace platform::inline v1

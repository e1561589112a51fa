#pragma once

#include "platform/Export.hpp"
#include "platform/concurrency/Executor.hpp"

#include <memory>

namespace platform::inline v1 {

/// An executor with a few threads of its own. Jobs start in the order they were posted and may run at the same time.
///
/// The first thread starts with the pool, further ones as jobs find none idle. All signals are blocked on them, so that
/// the application's handlers run where the application expects them.
///
/// Destroying the pool lets it run every job that was posted and waits for that, except where the last owner lets go on
/// one of the pool's own threads: that thread then ends by itself.
///
/// Thread safety: `post` and `shared` from any thread. Posting takes constant time.
class QUILLBEAM_EXPORT BackgroundPool final : public Executor {
public:
    /// The pool for what the library starts by itself, such as the writer of a streamed request body. It is made at the
    /// first call, has two to four threads, and lives as long as the process.
    /// @throws std::system_error where no thread can be started
    static const std::shared_ptr<Executor>& shared();

    /// @param threads the most threads it may have, at least one
    /// @throws std::system_error where no thread can be started
    explicit BackgroundPool(unsigned threads);

    ~BackgroundPool() override;

    void post(Job& job) noexcept override;

private:
    struct State;

    std::shared_ptr<State> state_;
};

} // namespace platform::inline v1

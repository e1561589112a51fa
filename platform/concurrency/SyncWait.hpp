#pragma once

#include "platform/Export.hpp"
#include "platform/concurrency/RunLoop.hpp"
#include "platform/concurrency/Spawn.hpp"
#include "platform/concurrency/Task.hpp"

#include <memory>
#include <stdexcept>
#include <stop_token>
#include <utility>

namespace platform::inline v1 {

/// The error of blocking a thread that others depend on: `syncWait` was called on a thread that serves transfers, such
/// as from a callback of the URL-loading layer, where it would wait for itself.
class QUILLBEAM_EXPORT BlockingNotAllowedError final : public std::logic_error {
public:
    BlockingNotAllowedError();
    ~BlockingNotAllowedError() override;
};

/// Marks the current thread, for its lifetime, as one that must never block.
QUILLBEAM_EXPORT void disallowBlockingOnThisThread() noexcept;

namespace detail {
QUILLBEAM_EXPORT void requireBlockingAllowed();
}

/// Runs `task` to its end on the calling thread and returns its value or throws its error.
///
/// Everything that the task awaits runs on this thread too, on a loop that lives for the call.
///
///     auto output = syncWait(client.getDomains());
///
/// @param token asks the task to stop; it still runs to its end, which then comes soon
/// @throws what the task fails with; `BlockingNotAllowedError` on a thread that must not block
template <class T>
T syncWait(Task<T> task, std::stop_token token = {}) {
    detail::requireBlockingAllowed();
    if (task.isReady()) return task.takeReady();
    const auto loop = std::make_shared<RunLoop>();
    Result<T> result;

    struct Done {
        Result<T>* result;
        RunLoop* loop;

        void operator()(Result<T>&& ended) const noexcept {
            std::destroy_at(result);
            std::construct_at(result, std::move(ended));
            loop->stop();
        }
    };

    spawn(loop, std::move(token), std::move(task), Done{&result, loop.get()});
    loop->run();
    return result.take();
}

} // namespace platform::inline v1

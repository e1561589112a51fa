#pragma once

#include "platform/Export.hpp"
#include "platform/loading/URLRequest.hpp"

#include <memory>

namespace platform::inline v1 {

class URLSessionTaskDelegate;

namespace detail {
struct TaskState;
}

/// One load: made suspended by a `URLSession`, started by `resume()`, completed exactly once.
///
/// A handle: copies share the load, and `==` compares identity. Dropping the last handle of a task under way does not
/// stop it; dropping the last handle of one that was never resumed or cancelled drops its completion handler uncalled.
///
/// Thread safety: all functions may be called from any thread at any time, also from within handlers and delegates.
/// None of them blocks, and none calls a handler or a delegate itself: those run later, on the session's own thread.
class QUILLBEAM_EXPORT URLSessionTask {
public:
    enum class State {
        running,   ///< under way, or waiting for a free connection
        suspended, ///< not yet started, or stopped by `suspend()`
        canceling, ///< `cancel()` was called; the completion is still to come
        completed  ///< the completion was, or is being, delivered
    };

    [[nodiscard]] State state() const noexcept;

    /// Starts the task, or lets it go on after `suspend()`. A task of an invalidated session completes with
    /// `URLError::Kind::cancelled`.
    void resume() const;

    /// Stops the delivery of data. A task under way reads no further than what the connection buffers hold, and its
    /// time-out stands still. Data that is being delivered meanwhile on the session's thread still arrives.
    void suspend() const;

    /// Ends the task: it completes with `URLError::Kind::cancelled` unless it has completed before. Also ends a task
    /// that was never resumed.
    void cancel() const;

    /// The request as the task was made with.
    [[nodiscard]] const URLRequest& originalRequest() const noexcept;

    /// Sets who gets this task's callbacks, in place of none. Call it before `resume()`; the task keeps the delegate
    /// alive until it has completed.
    void setDelegate(std::shared_ptr<URLSessionTaskDelegate> delegate) const;

    friend bool operator==(const URLSessionTask&, const URLSessionTask&) noexcept = default;

    /// Used by the session.
    explicit URLSessionTask(std::shared_ptr<detail::TaskState> state) noexcept;

private:
    std::shared_ptr<detail::TaskState> state_;
};

} // namespace platform::inline v1

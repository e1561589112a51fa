#pragma once

#include "platform/loading/URLRequest.hpp"
#include "platform/loading/URLSession.hpp"
#include "platform/loading/URLSessionTaskDelegate.hpp"
#include "platform/loading/detail/Transfer.hpp"

#include <atomic>
#include <chrono>
#include <list>
#include <memory>
#include <string>
#include <utility>

namespace platform::inline v1::detail {

class SessionCore;
struct OriginGate;

/// A task behind its handles. Other threads only change flags and then submit the task to the loop, which makes of the
/// flags what they ask for.
struct TaskState : std::enable_shared_from_this<TaskState> {
    enum Flag : unsigned {
        suspended = 1,       ///< set at the start; nothing is started or delivered while it is set
        cancelled = 2,       ///< never taken back
        responseAllowed = 4, ///< the delegate let the body come
        completed = 8,       ///< whoever sets it delivers the completion
        queued = 16          ///< the loop will look at the task
    };

    TaskState(
        std::shared_ptr<SessionCore> sessionCore,
        URLRequest taskRequest,
        URLSession::CompletionHandler completionHandler
    )
        : core(std::move(sessionCore))
        , request(std::move(taskRequest))
        , handler(std::move(completionHandler)) {}

    /// A task without a handler streams to its delegate.
    [[nodiscard]] bool collectsBody() const noexcept { return collects; }

    [[nodiscard]] bool has(Flag flag) const noexcept { return (flags.load() & flag) != 0; }

    const std::shared_ptr<SessionCore> core;
    const URLRequest request;
    std::atomic<unsigned> flags{suspended};

    // Set before the task is resumed, then the loop thread's.
    URLSession::CompletionHandler handler;
    const bool collects = handler != nullptr;
    std::shared_ptr<URLSessionTaskDelegate> delegate;

    // The loop thread's from here on.
    using List = std::list<std::shared_ptr<TaskState>>;
    enum class Place { nowhere, waiting, active };
    Place place = Place::nowhere;
    List::iterator position{};  ///< in its gate's waiting list or in the active list, as `place` says
    OriginGate* gate = nullptr; ///< where it waits, or holds a slot
    Transfer::Target target{};
    bool hasTarget = false;
    bool retries = false;   ///< the next attempt is the one repetition
    bool redirects = false; ///< the head that came leads elsewhere
    int redirectCount = 0;
    std::size_t skippedBytes = 0; ///< of the body of a redirecting response
    std::unique_ptr<Transfer> transfer;
    std::chrono::steady_clock::time_point lastProgress{};
    std::int64_t uploadedBytes = 0;
    std::shared_ptr<const HTTPURLResponse> response;
    std::string body;
};

} // namespace platform::inline v1::detail

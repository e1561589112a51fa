#pragma once

#include "platform/Export.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/loading/URLRequest.hpp"
#include "platform/loading/URLResponse.hpp"
#include "platform/loading/URLSessionConfiguration.hpp"
#include "platform/loading/URLSessionTask.hpp"

#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace platform::inline v1 {

/// Loads URLs over HTTP: makes tasks, and shares connections, TLS sessions and name look-ups between them.
///
///     URLSession session;
///     auto task = session.dataTask(
///         URLRequest(*URL::make("https://host.example/")),
///         [](std::optional<ByteChunk> data, std::shared_ptr<const URLResponse> response, std::exception_ptr error)
///         {});
///     task.resume();
///
/// A handle: copies share the session, and `==` compares identity. A session starts one thread at its first task, which
/// moves all bytes and runs all handlers and delegates; it blocks every signal. There is nothing to initialise before
/// and nothing to shut down after.
///
/// When the last handle goes, tasks still under way complete with `URLError::Kind::cancelled` and the destructor waits
/// for the thread to end; on the session's own thread (in a handler) it does not wait, and the thread ends by itself.
///
/// Thread safety: all functions may be called from any thread.
class QUILLBEAM_EXPORT URLSession {
public:
    /// Runs once on the session's thread. On success `data` (possibly empty) and `response` are there and `error` is
    /// not; on failure `error` holds a `URLError`, `data` is absent, and `response` is there if its head had come.
    /// It must not block and must not throw.
    using CompletionHandler = std::function<
        void(std::optional<ByteChunk> data, std::shared_ptr<const URLResponse> response, std::exception_ptr error)>;

    URLSession();
    explicit URLSession(URLSessionConfiguration configuration);

    /// The session with default configuration that the process shares. It is made at first use and lives until the
    /// process ends.
    [[nodiscard]] static URLSession shared();

    [[nodiscard]] const URLSessionConfiguration& configuration() const noexcept;

    /// A suspended task that collects the whole body in memory and then calls `completionHandler`.
    [[nodiscard]] URLSessionTask dataTask(URLRequest request, CompletionHandler completionHandler) const;

    /// A suspended task that delivers what comes to its delegate (`URLSessionTask::setDelegate`) as it comes,
    /// undecoded: it asks for no compression. It uses a connection of its own, so that suspending it stops no other
    /// task.
    [[nodiscard]] URLSessionTask dataTask(URLRequest request) const;

    /// Ends the session for all its handles: every task under way, and every one resumed later, completes with
    /// `URLError::Kind::cancelled`. Waits for the session's thread as the destructor does.
    void invalidateAndCancel() const;

    friend bool operator==(const URLSession&, const URLSession&) noexcept = default;

private:
    struct Owner;

    std::shared_ptr<const Owner> owner_;
};

} // namespace platform::inline v1

#pragma once

#include "platform/Export.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/loading/URLResponse.hpp"
#include "platform/loading/URLSessionTask.hpp"

#include <exception>
#include <functional>
#include <memory>

namespace platform::inline v1 {

/// What is to happen with a response whose head has come.
enum class ResponseDisposition {
    cancel = 0, ///< end the task with `URLError::Kind::cancelled`
    allow = 1   ///< deliver the body
};

/// Receives a task's events as they happen: at most one response, then any number of blocks of data, then exactly one
/// completion.
///
/// All callbacks of a session come one at a time on the session's own thread. They must not block and must not throw:
/// while one runs, nothing else of the session moves. They may call anything on tasks and sessions.
class QUILLBEAM_EXPORT URLSessionTaskDelegate {
public:
    virtual ~URLSessionTaskDelegate();

    /// The head of the response. No data is delivered until `completionHandler` has been called, here or later, on any
    /// thread. The default allows at once.
    virtual void didReceiveResponse(
        const URLSessionTask& task,
        const std::shared_ptr<const URLResponse>& response,
        const std::function<void(ResponseDisposition)>& completionHandler
    );

    /// A block of the body, of at least one byte. The default drops it.
    virtual void didReceiveData(const URLSessionTask& task, const ByteChunk& data);

    /// The last callback. `error` is a `URLError`, or empty when the response came whole. The default does nothing.
    virtual void didComplete(const URLSessionTask& task, const std::exception_ptr& error);

protected:
    URLSessionTaskDelegate() = default;
    URLSessionTaskDelegate(const URLSessionTaskDelegate&) = default;
    URLSessionTaskDelegate& operator=(const URLSessionTaskDelegate&) = default;
};

} // namespace platform::inline v1

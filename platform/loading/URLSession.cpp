#include "platform/loading/URLSession.hpp"

#include "platform/loading/detail/SessionCore.hpp"
#include "platform/loading/detail/TaskState.hpp"

namespace platform::inline v1 {

/// What the handles of a session share: when the last one goes, the core stops.
struct URLSession::Owner {
    explicit Owner(URLSessionConfiguration configuration)
        : core(std::make_shared<detail::SessionCore>(std::move(configuration))) {}

    ~Owner() { core->stop(); }

    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

    const std::shared_ptr<detail::SessionCore> core;
};

URLSession::URLSession()
    : URLSession(URLSessionConfiguration()) {}

URLSession::URLSession(URLSessionConfiguration configuration)
    : owner_(std::make_shared<const Owner>(std::move(configuration))) {}

URLSession URLSession::shared() {
    static const auto* const session = new URLSession();
    return *session;
}

const URLSessionConfiguration& URLSession::configuration() const noexcept {
    return owner_->core->configuration();
}

URLSessionTask URLSession::dataTask(URLRequest request, CompletionHandler completionHandler) const {
    // Without a handler the task would stream.
    if (!completionHandler) completionHandler = [](const auto&...) {};
    return URLSessionTask(
        std::make_shared<detail::TaskState>(owner_->core, std::move(request), std::move(completionHandler))
    );
}

URLSessionTask URLSession::dataTask(URLRequest request) const {
    return URLSessionTask(std::make_shared<detail::TaskState>(owner_->core, std::move(request), nullptr));
}

void URLSession::invalidateAndCancel() const {
    owner_->core->stop();
}

} // namespace platform::inline v1

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"

#include "platform/concurrency/BackgroundPool.hpp"
#include "platform/concurrency/Cancellation.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/Spawn.hpp"
#include "platform/url/Origin.hpp"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using platform::CancellationError;
using platform::Continuation;
using platform::Result;
using platform::Task;
using platform::URL;

namespace {

/// A token as it stands in the field, and which one it is: 1 for the first, one more for each that took its place.
struct Credential {
    std::string fieldValue{};
    std::uint64_t generation = 0;

    Credential() = default;

    Credential(const std::string& token, std::uint64_t generation_)
        : fieldValue(token.empty() ? "" : "Bearer " + token)
        , generation(generation_) {}

    void addTo(HTTPRequest& request) const {
        if (!fieldValue.empty()) request.headerFields[HTTPField::Name::authorization] = fieldValue;
    }
};

std::string requiredOrigin(const URL& serverURL) {
    auto origin = platform::originOf(serverURL.absoluteString());
    if (!origin) throw std::invalid_argument("A bearer token needs a server URL with scheme http or https and a host.");
    return *std::move(origin);
}

} // namespace

/// What the calls share. At most one asking of the source is under way; the calls that need its answer stand in a list.
class BearerToken::State : public std::enable_shared_from_this<State> {
public:
    State(Source source, const std::string& token, std::optional<std::string> origin)
        : source_(std::move(source))
        , origin_(std::move(origin)) {
        if (!source_) credential_ = Credential(token, 1);
    }

    [[nodiscard]] bool isFixed() const noexcept { return !source_; }

    /// Whether the token may go to this address; the first address with an origin decides where none was given.
    bool admits(const URL& baseURL) {
        auto origin = platform::originOf(baseURL.absoluteString());
        if (!origin) return false;
        const std::lock_guard lock(mutex_);
        if (!origin_) origin_ = *origin;
        return *origin_ == *origin;
    }

    Credential current() {
        const std::lock_guard lock(mutex_);
        return credential_;
    }

    /// Makes the next call ask for a new token, unless this one has been replaced already.
    void expire(std::uint64_t generation) {
        const std::lock_guard lock(mutex_);
        oldestValid_ = std::max(oldestValid_, generation + 1);
    }

    /// A credential that has not expired, awaited where there is none.
    static Task<Credential> valid(std::shared_ptr<State> state);

    /// Sends a request with a credential of the source, once more with a newer one where it is refused.
    static Task<HTTPResponseAndBody>
    send(std::shared_ptr<State> state, HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, Next next);

private:
    struct Waiting {
        const void* call;
        Continuation<Credential> continuation;
    };

    static Task<Credential> newer(std::shared_ptr<State> state);

    void enter(const void* call, const std::stop_token& token, Continuation<Credential> continuation) {
        {
            const std::lock_guard lock(mutex_);
            // A cancellation before this point found nobody in the list, one after it will.
            if (token.stop_requested()) {
                continuation.fail(std::make_exception_ptr(CancellationError()));
                return;
            }
            if (credential_.generation >= oldestValid_) {
                continuation.resume(credential_);
                return;
            }
            waiting_.push_back({call, std::move(continuation)});
            if (std::exchange(isAsking_, true)) return;
        }
        startAsking();
    }

    void leave(const void* call) {
        const std::lock_guard lock(mutex_);
        const auto at =
            std::find_if(waiting_.begin(), waiting_.end(), [&](const Waiting& w) { return w.call == call; });
        if (at == waiting_.end()) return;
        at->continuation.fail(std::make_exception_ptr(CancellationError()));
        waiting_.erase(at);
    }

    static Task<std::string> ask(std::shared_ptr<State> state) {
        auto asking = state->source_();
        co_return co_await std::move(asking);
    }

    void startAsking() noexcept {
        std::exception_ptr error;
        try {
            const auto self = shared_from_this();
            const auto done = [self](Result<std::string>&& token) { self->answered(std::move(token)); };
            platform::spawn(platform::BackgroundPool::shared(), {}, ask(self), done);
            return;
        } catch (...) {
            error = std::current_exception();
        }
        refused(std::move(error));
    }

    void answered(Result<std::string> token) noexcept {
        std::exception_ptr error;
        try {
            const std::string text = token.take();
            std::vector<Waiting> served;
            const std::lock_guard lock(mutex_);
            credential_ = Credential(text, std::max(credential_.generation + 1, oldestValid_));
            isAsking_ = false;
            served.swap(waiting_);
            for (Waiting& waiting : served) {
                waiting.continuation.resume(credential_);
            }
            return;
        } catch (...) {
            error = std::current_exception();
        }
        refused(std::move(error));
    }

    void refused(std::exception_ptr error) noexcept {
        std::vector<Waiting> served;
        const std::lock_guard lock(mutex_);
        isAsking_ = false;
        served.swap(waiting_);
        if (served.empty()) return;
        // The last one gets the error itself, so that it ends where it is read and not on this thread.
        Waiting last = std::move(served.back());
        served.pop_back();
        for (Waiting& waiting : served) {
            waiting.continuation.fail(error);
        }
        last.continuation.fail(std::move(error));
    }

    const Source source_; // none for a fixed token
    std::mutex mutex_{};
    std::optional<std::string> origin_;
    Credential credential_{};
    std::uint64_t oldestValid_ = 1; // generations below have expired
    bool isAsking_ = false;
    std::vector<Waiting> waiting_{};
};

Task<Credential> BearerToken::State::valid(std::shared_ptr<State> state) {
    {
        const std::lock_guard lock(state->mutex_);
        if (state->credential_.generation >= state->oldestValid_) return Task<Credential>::ready(state->credential_);
    }
    return newer(std::move(state));
}

Task<Credential> BearerToken::State::newer(std::shared_ptr<State> state) {
    const std::stop_token token = co_await platform::currentStopToken();
    const void* const call = &token; // an address of this call alone
    const auto cancel = [&state, call] { state->leave(call); };
    const auto start = [&state, &token, call](Continuation<Credential> continuation) {
        state->enter(call, token, std::move(continuation));
    };
    co_return co_await platform::withContinuation<Credential>(start, cancel);
}

Task<HTTPResponseAndBody> BearerToken::State::send(
    std::shared_ptr<State> state, HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, Next next
) {
    Task<Credential> asking = valid(state);
    Credential credential = co_await std::move(asking);
    HTTPRequest first = request;
    credential.addTo(first);
    Task<HTTPResponseAndBody> sending = next(std::move(first), body, baseURL);
    HTTPResponseAndBody answer = co_await std::move(sending);
    if (answer.response.status() != HTTPResponse::Status::unauthorized) co_return answer;

    state->expire(credential.generation);
    if (body && body->iterationBehavior() == IterationBehavior::single) co_return answer;
    answer = HTTPResponseAndBody(); // its body may hold a connection
    Task<Credential> askingAnew = valid(std::move(state));
    credential = co_await std::move(askingAnew);
    credential.addTo(request);
    Task<HTTPResponseAndBody> sendingAgain = next(std::move(request), std::move(body), std::move(baseURL));
    co_return co_await std::move(sendingAgain);
}

BearerToken::BearerToken(const std::string& token)
    : state_(std::make_shared<State>(nullptr, token, std::nullopt)) {}

BearerToken::BearerToken(Source source)
    : state_(std::make_shared<State>(std::move(source), "", std::nullopt)) {}

BearerToken::BearerToken(const std::string& token, const URL& serverURL)
    : state_(std::make_shared<State>(nullptr, token, requiredOrigin(serverURL))) {}

BearerToken::BearerToken(Source source, const URL& serverURL)
    : state_(std::make_shared<State>(std::move(source), "", requiredOrigin(serverURL))) {}

BearerToken::~BearerToken() = default;

Task<HTTPResponseAndBody> BearerToken::intercept(
    HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string /*operationID*/, Next next
) {
    if (request.headerFields.contains(HTTPField::Name::authorization) || !state_->admits(baseURL)) {
        return next(std::move(request), std::move(body), std::move(baseURL));
    }
    if (!state_->isFixed()) {
        return State::send(state_, std::move(request), std::move(body), std::move(baseURL), std::move(next));
    }
    state_->current().addTo(request);
    return next(std::move(request), std::move(body), std::move(baseURL));
}

} // namespace OpenAPIRuntime::inline v1

#pragma once

#include "platform/loading/HTTPURLResponse.hpp"
#include "platform/loading/URLError.hpp"
#include "platform/loading/URLSession.hpp"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace tests {

/// What a task completed with, and how often. Shared with the handler, so that a completion after the test's own end
/// is no fault by itself.
class Outcome {
public:
    [[nodiscard]] platform::URLSession::CompletionHandler handler() const {
        return [state = state_](auto data, auto response, auto error) {
            const std::lock_guard lock(state->mutex);
            ++state->completions;
            state->data = std::move(data);
            state->response = std::dynamic_pointer_cast<const platform::HTTPURLResponse>(response);
            state->error = error;
            state->thread = std::this_thread::get_id();
            state->changed.notify_all();
        };
    }

    /// Waits for the completion; false if it does not come within a minute.
    bool wait() const {
        std::unique_lock lock(state_->mutex);
        return state_->changed.wait_for(lock, std::chrono::minutes(1), [&] { return state_->completions > 0; });
    }

    [[nodiscard]] int completions() const {
        const std::lock_guard lock(state_->mutex);
        return state_->completions;
    }

    /// "200 body" of a success, or the kind of the error as a word.
    [[nodiscard]] std::string text() const {
        if (!wait()) return "no completion";
        const std::lock_guard lock(state_->mutex);
        if (!state_->error) {
            return std::to_string(state_->response->statusCode()) + " " + std::string(state_->data->view());
        }
        try {
            std::rethrow_exception(state_->error);
        } catch (const platform::URLError& error) {
            return kindName(error.kind());
        }
    }

    [[nodiscard]] std::string errorText() const { return platform::localizedDescription(state_->error); }

    [[nodiscard]] const platform::HTTPURLResponse& response() const { return *state_->response; }

    [[nodiscard]] std::thread::id thread() const { return state_->thread; }

    static std::string kindName(platform::URLError::Kind kind) {
        constexpr const char* names[] = {
            "cancelled",
            "timedOut",
            "cannotConnect",
            "dns",
            "connectionLost",
            "badResponse",
            "tls",
            "tooManyRedirects",
            "bodyLength",
            "unsupportedURL",
            "invalidRequest",
            "other"
        };
        return names[static_cast<int>(kind)];
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        int completions = 0;
        std::optional<platform::ByteChunk> data;
        std::shared_ptr<const platform::HTTPURLResponse> response;
        std::exception_ptr error;
        std::thread::id thread;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

inline platform::URLRequest request(std::string_view url, std::string_view method = "GET") {
    platform::URLRequest result(platform::URL::make(url).value());
    result.httpMethod = method;
    return result;
}

/// Loads and waits.
inline Outcome load(const platform::URLSession& session, platform::URLRequest what) {
    Outcome outcome;
    session.dataTask(std::move(what), outcome.handler()).resume();
    outcome.wait();
    return outcome;
}

/// A configuration that no proxy of the environment reaches.
inline platform::URLSessionConfiguration direct() {
    platform::URLSessionConfiguration configuration;
    configuration.proxy = "";
    return configuration;
}

} // namespace tests

#include "platform/loading/URLSessionTask.hpp"

#include "platform/loading/detail/SessionCore.hpp"
#include "platform/loading/detail/TaskState.hpp"

namespace platform::inline v1 {

using detail::TaskState;

URLSessionTask::URLSessionTask(std::shared_ptr<detail::TaskState> state) noexcept
    : state_(std::move(state)) {}

URLSessionTask::State URLSessionTask::state() const noexcept {
    const auto flags = state_->flags.load();
    if ((flags & TaskState::completed) != 0) return State::completed;
    if ((flags & TaskState::cancelled) != 0) return State::canceling;
    return (flags & TaskState::suspended) != 0 ? State::suspended : State::running;
}

void URLSessionTask::resume() const {
    state_->flags.fetch_and(~unsigned(TaskState::suspended));
    state_->core->submit(state_);
}

void URLSessionTask::suspend() const {
    state_->flags.fetch_or(TaskState::suspended);
}

void URLSessionTask::cancel() const {
    if ((state_->flags.fetch_or(TaskState::cancelled) & TaskState::cancelled) != 0) return;
    state_->core->submit(state_);
}

const URLRequest& URLSessionTask::originalRequest() const noexcept {
    return state_->request;
}

void URLSessionTask::setDelegate(std::shared_ptr<URLSessionTaskDelegate> delegate) const {
    state_->delegate = std::move(delegate);
}

} // namespace platform::inline v1

#pragma once

#include "platform/concurrency/Executor.hpp"

#include <coroutine>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <utility>

namespace platform::inline v1::detail {

/// What all tasks below one root share: where they run and whether they are to stop.
///
/// Owned by the root; its children point to it. Used by the thread that runs the root at the moment.
struct TaskContext {
    /// How far the stack may grow by tasks that start one another before the chain goes on from a fresh frame.
    static constexpr std::ptrdiff_t stackBudget = std::ptrdiff_t(48) * 1024;

    std::shared_ptr<Executor> executor{};
    std::stop_token stopToken{};

    std::coroutine_handle<>* next = nullptr; ///< what `run` resumes next: a local of its frame
    std::uint64_t runCount = 0;              ///< tells a task that ends whether its starter is on this stack
    char* stackBase = nullptr;

    /// Resumes `coroutine` and whatever it leaves to be resumed. The only place that resumes a suspended task.
    ///
    /// The context may be gone once the last coroutine was resumed: afterwards only the local is read.
    static void run(TaskContext& context, std::coroutine_handle<> coroutine) noexcept {
        std::coroutine_handle<> next = coroutine;
        context.next = &next;
        context.stackBase = static_cast<char*>(__builtin_frame_address(0));
        do {
            ++context.runCount;
            std::exchange(next, nullptr).resume();
        } while (next);
    }

    [[nodiscard]] bool isStackDeep() const noexcept {
        return stackBase - static_cast<char*>(__builtin_frame_address(0)) > stackBudget;
    }
};

} // namespace platform::inline v1::detail

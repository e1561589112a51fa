// The least that a program on coroutines includes.
#include <coroutine>
#include <exception>
#include <memory>
#include <string>

struct Nothing {
    struct promise_type {
        Nothing get_return_object() { return {}; }

        std::suspend_never initial_suspend() noexcept { return {}; }

        std::suspend_never final_suspend() noexcept { return {}; }

        void return_void() {}

        void unhandled_exception() { std::terminate(); }
    };
};

Nothing run() {
    co_return;
}

int main() {
    run();
}

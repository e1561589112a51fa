// A small program on tasks.
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/Task.hpp"

#include <string>

platform::Task<std::string> greeting(int number) {
    co_return "hello " + std::to_string(number);
}

platform::Task<int> measure() {
    int total = 0;
    for (int i = 0; i < 3; ++i) {
        std::string text = co_await greeting(i);
        total += static_cast<int>(text.size());
    }
    co_return total;
}

int main() {
    return platform::syncWait(measure());
}

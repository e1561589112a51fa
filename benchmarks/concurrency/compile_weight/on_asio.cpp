// The same program on Asio's awaitables.
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>

#include <exception>
#include <string>

boost::asio::awaitable<std::string> greeting(int number) {
    co_return "hello " + std::to_string(number);
}

boost::asio::awaitable<int> measure() {
    int total = 0;
    for (int i = 0; i < 3; ++i) {
        std::string text = co_await greeting(i);
        total += static_cast<int>(text.size());
    }
    co_return total;
}

int main() {
    int result = 0;
    boost::asio::io_context context;
    boost::asio::co_spawn(context, measure(), [&result](const std::exception_ptr&, int total) { result = total; });
    context.run();
    return result;
}

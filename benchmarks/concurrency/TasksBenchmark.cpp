// Tasks against plain functions, Boost.Asio's awaitables and std::promise.
//
// With an argument it runs one contender of the pull pipeline and nothing else (plain, ready, suspended, asio), for a
// count of its instructions: valgrind --tool=callgrind bench_tasks ready

#include "benchmarks/Ratios.hpp"
#include "platform/concurrency/BackgroundPool.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/Task.hpp"

#include <benchmark/benchmark.h>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/bind_executor.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <charconv>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace {

namespace asio = boost::asio;
using asio::awaitable;
using asio::use_awaitable;
using benchmarks::Bound;
using platform::Continuation;
using platform::syncWait;
using platform::Task;

void runAsio(awaitable<void> work) {
    asio::io_context context(1);
    asio::co_spawn(context, std::move(work), [](const std::exception_ptr& error) {
        if (error) std::rethrow_exception(error);
    });
    context.run();
}

// --- one await
// ----------------------------------------------------------------------------------------------------------

[[gnu::noinline]] Task<int> child(int value) {
    co_return value + 1;
}

[[gnu::noinline]] Task<int> readyChild(int value) {
    return Task<int>::ready(value + 1);
}

[[gnu::noinline]] awaitable<int> asioChild(int value) {
    co_return value + 1;
}

Task<void> awaitChildren(int count) {
    int value = 0;
    for (int i = 0; i < count; ++i)
        value = co_await child(value);
    benchmark::DoNotOptimize(value);
}

Task<void> awaitReady(int count) {
    int value = 0;
    for (int i = 0; i < count; ++i)
        value = co_await readyChild(value);
    benchmark::DoNotOptimize(value);
}

awaitable<void> asioAwaitChildren(int count) {
    int value = 0;
    for (int i = 0; i < count; ++i)
        value = co_await asioChild(value);
    benchmark::DoNotOptimize(value);
}

// --- a continuation resumed within its body
// -----------------------------------------------------------------------------

Task<void> awaitContinuations(int count) {
    int value = 0;
    auto body = [&value](Continuation<int> continuation) { continuation.resume(value + 1); };
    for (int i = 0; i < count; ++i)
        value = co_await platform::withContinuation<int>(body);
    benchmark::DoNotOptimize(value);
}

awaitable<void> asioAwaitContinuations(int count) {
    int value = 0;
    auto body = [&value](auto handler) { std::move(handler)(value + 1); };
    for (int i = 0; i < count; ++i) {
        value = co_await asio::async_initiate<decltype(use_awaitable), void(int)>(body, use_awaitable);
    }
    benchmark::DoNotOptimize(value);
}

// --- three stages: chunks of bytes, lines, numbers
// ---------------------------------------------------------------------- The machines are the same for all; `next`
// stays a call, as it is between stages that know each other by concept only.

std::string makeText(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i)
        text += std::to_string(100'000 + i * 7) + "\n";
    return text;
}

class ChunkMachine {
public:
    explicit ChunkMachine(std::string_view text)
        : text_(text) {}

    std::optional<std::string_view> take() {
        if (text_.empty()) return std::nullopt;
        const std::string_view chunk = text_.substr(0, 100);
        text_.remove_prefix(chunk.size());
        return chunk;
    }

private:
    std::string_view text_;
};

class LineMachine {
public:
    std::optional<std::string> take() {
        const auto end = chunk_.find('\n');
        if (end == std::string_view::npos) return std::nullopt;
        partial_.append(chunk_.substr(0, end));
        chunk_.remove_prefix(end + 1);
        return std::exchange(partial_, {});
    }

    /// False at the end.
    bool feed(const std::optional<std::string_view>& chunk) {
        partial_.append(chunk_);
        chunk_ = chunk.value_or(std::string_view());
        return chunk.has_value();
    }

private:
    std::string partial_{};
    std::string_view chunk_{};
};

std::optional<long> number(const std::optional<std::string>& line) {
    if (!line) return std::nullopt;
    long value = 0;
    std::from_chars(line->data(), line->data() + line->size(), value);
    return value;
}

struct PlainChunks {
    ChunkMachine machine;

    [[gnu::noinline]] std::optional<std::string_view> next() { return machine.take(); }
};

struct PlainLines {
    PlainChunks upstream;
    LineMachine machine{};

    [[gnu::noinline]] std::optional<std::string> next() {
        while (true) {
            if (auto line = machine.take()) return line;
            if (!machine.feed(upstream.next())) return std::nullopt;
        }
    }
};

struct PlainNumbers {
    PlainLines upstream;

    [[gnu::noinline]] std::optional<long> next() { return number(upstream.next()); }
};

template <bool suspends>
struct TaskChunks {
    using Next = Task<std::optional<std::string_view>>;

    ChunkMachine machine;

    static Next later(std::optional<std::string_view> chunk) { co_return chunk; }

    [[gnu::noinline]] Next next() {
        if constexpr (suspends) return later(machine.take());
        return Next::ready(machine.take());
    }
};

template <bool suspends>
struct TaskLines {
    using Next = Task<std::optional<std::string>>;

    TaskChunks<suspends> upstream;
    LineMachine machine{};

    [[gnu::noinline]] Next next() {
        while (true) {
            if (auto line = machine.take()) return Next::ready(std::move(line));
            auto chunk = upstream.next();
            if (!chunk.isReady()) return slow(this, std::move(chunk));
            if (!machine.feed(chunk.takeReady())) return Next::ready(std::nullopt);
        }
    }

    static Next slow(TaskLines* self, Task<std::optional<std::string_view>> chunk) {
        std::optional<std::string_view> bytes = co_await std::move(chunk);
        while (self->machine.feed(bytes)) {
            if (auto line = self->machine.take()) co_return line;
            auto following = self->upstream.next();
            bytes = co_await std::move(following);
        }
        co_return std::nullopt;
    }
};

template <bool suspends>
struct TaskNumbers {
    using Next = Task<std::optional<long>>;

    TaskLines<suspends> upstream;

    [[gnu::noinline]] Next next() {
        auto line = upstream.next();
        if (!line.isReady()) return slow(std::move(line));
        return Next::ready(number(line.takeReady()));
    }

    static Next slow(Task<std::optional<std::string>> line) {
        std::optional<std::string> text = co_await std::move(line);
        co_return number(text);
    }
};

struct AsioChunks {
    ChunkMachine machine;

    [[gnu::noinline]] awaitable<std::optional<std::string_view>> next() { co_return machine.take(); }
};

struct AsioLines {
    AsioChunks upstream;
    LineMachine machine{};

    [[gnu::noinline]] awaitable<std::optional<std::string>> next() {
        while (true) {
            if (auto line = machine.take()) co_return line;
            std::optional<std::string_view> chunk = co_await upstream.next();
            if (!machine.feed(chunk)) co_return std::nullopt;
        }
    }
};

struct AsioNumbers {
    AsioLines upstream;

    [[gnu::noinline]] awaitable<std::optional<long>> next() {
        std::optional<std::string> line = co_await upstream.next();
        co_return number(line);
    }
};

void pullPlain(std::string_view text) {
    PlainNumbers numbers{PlainLines{PlainChunks{ChunkMachine(text)}}};
    long sum = 0;
    while (auto value = numbers.next())
        sum += *value;
    benchmark::DoNotOptimize(sum);
}

template <bool suspends>
Task<void> pullTask(std::string_view text) {
    TaskNumbers<suspends> numbers{TaskLines<suspends>{TaskChunks<suspends>{ChunkMachine(text)}}};
    long sum = 0;
    while (auto value = co_await numbers.next())
        sum += *value;
    benchmark::DoNotOptimize(sum);
}

awaitable<void> pullAsio(std::string_view text) {
    AsioNumbers numbers{AsioLines{AsioChunks{ChunkMachine(text)}}};
    long sum = 0;
    while (auto value = co_await numbers.next())
        sum += *value;
    benchmark::DoNotOptimize(sum);
}

// --- to another thread and back
// -----------------------------------------------------------------------------------------

/// The callback code of all but Asio: one job on a thread.
template <class Ended>
struct Errand : platform::Job {
    std::optional<Ended> ended{};

    Errand() {
        run = [](platform::Job* job) noexcept {
            Ended there = std::move(*static_cast<Errand*>(job)->ended); // the job is free before its owner goes on
            if constexpr (std::is_same_v<Ended, std::promise<int>>) {
                there.set_value(1);
            } else {
                there.resume(1);
            }
        };
    }
};

Task<void> roundTrips(platform::Executor* thread, int count) {
    Errand<Continuation<int>> errand;
    auto body = [&errand, thread](Continuation<int> continuation) {
        errand.ended.emplace(std::move(continuation));
        thread->post(errand);
    };
    for (int i = 0; i < count; ++i) {
        int one = co_await platform::withContinuation<int>(body);
        benchmark::DoNotOptimize(one);
    }
}

void promiseRoundTrips(platform::Executor* thread, int count) {
    Errand<std::promise<int>> errand;
    for (int i = 0; i < count; ++i) {
        std::promise<int> promise;
        std::future<int> future = promise.get_future();
        errand.ended.emplace(std::move(promise));
        thread->post(errand);
        benchmark::DoNotOptimize(future.get());
    }
}

awaitable<void> asioRoundTrips(asio::thread_pool* thread, int count) {
    const auto home = co_await asio::this_coro::executor;
    for (int i = 0; i < count; ++i) {
        co_await asio::post(thread->get_executor(), asio::bind_executor(thread->get_executor(), use_awaitable));
        co_await asio::post(home, use_awaitable);
    }
}

int runOne(std::string_view contender, std::string_view text) {
    if (contender == "plain") {
        pullPlain(text);
    } else if (contender == "ready") {
        syncWait(pullTask<false>(text));
    } else if (contender == "suspended") {
        syncWait(pullTask<true>(text));
    } else if (contender == "asio") {
        runAsio(pullAsio(text));
    } else {
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const bool smoke = benchmarks::isSmokeRun();
    const int awaits = smoke ? 100 : 20'000;
    const int rounds = smoke ? 1 : 41;
    const std::string text = makeText(awaits);
    if (argc > 1) return runOne(argv[1], text);

    const auto one = benchmarks::compare(
        {{"child", [&] { syncWait(awaitChildren(awaits)); }},
         {"ready", [&] { syncWait(awaitReady(awaits)); }},
         {"asio", [&] { runAsio(asioAwaitChildren(awaits)); }}},
        rounds
    );
    benchmarks::report(
        "Task: await of a child that ends at once", "Asio awaitable", one.ratio("child", "asio"), Bound::atMost, 1.1
    );
    benchmarks::report("Task: await of a ready task", "Asio awaitable", one.ratio("ready", "asio"), Bound::atMost, 0.5);

    const auto continuation = benchmarks::compare(
        {{"task", [&] { syncWait(awaitContinuations(awaits)); }},
         {"asio", [&] { runAsio(asioAwaitContinuations(awaits)); }}},
        rounds
    );
    benchmarks::report(
        "Task: continuation resumed in its body",
        "Asio async_initiate",
        continuation.ratio("task", "asio"),
        Bound::atMost,
        0.5
    );

    const auto pull = benchmarks::compare(
        {{"plain", [&] { pullPlain(text); }},
         {"ready", [&] { syncWait(pullTask<false>(text)); }},
         {"suspended", [&] { syncWait(pullTask<true>(text)); }},
         {"asio", [&] { runAsio(pullAsio(text)); }}},
        rounds
    );
    benchmarks::report(
        "Task: three-stage pull, ready", "plain functions", pull.ratio("ready", "plain"), Bound::atMost, 2.5
    );
    benchmarks::report(
        "Task: three-stage pull, ready", "Asio awaitable", pull.ratio("ready", "asio"), Bound::atMost, 0.45
    );
    benchmarks::report(
        "Task: three-stage pull, a coroutine a chunk",
        "Asio awaitable",
        pull.ratio("suspended", "asio"),
        Bound::atMost,
        1
    );

    const int trips = smoke ? 10 : 1000;
    platform::BackgroundPool thread(1);
    asio::thread_pool asioThread(1);
    const auto trip = benchmarks::compare(
        {{"task", [&] { syncWait(roundTrips(&thread, trips)); }},
         {"promise", [&] { promiseRoundTrips(&thread, trips); }},
         {"asio", [&] { runAsio(asioRoundTrips(&asioThread, trips)); }}},
        rounds
    );
    benchmarks::report("Task: to a thread and back", "Asio awaitable", trip.ratio("task", "asio"), Bound::atMost, 1);
    benchmarks::report(
        "Task: to a thread and back", "promise and future", trip.ratio("task", "promise"), Bound::atMost, 1
    );
}

#include "platform/loading/URLSessionTaskDelegate.hpp"
#include "platform/loading/detail/Poller.hpp"
#include "tests/platform/loading/Loading.hpp"
#include "tests/platform/loading/ScriptedServer.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <optional>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace tests;
using platform::ByteChunk;
using platform::ResponseDisposition;
using platform::URLSession;
using platform::URLSessionTask;
using Request = ScriptedServer::Request;
using Connection = ScriptedServer::Connection;
using State = URLSessionTask::State;

namespace {

/// Records what comes, and lets a test step in.
class Recorder : public platform::URLSessionTaskDelegate {
public:
    void didReceiveResponse(
        const URLSessionTask& task,
        const std::shared_ptr<const platform::URLResponse>&,
        const std::function<void(ResponseDisposition)>& allow
    ) override {
        record("head");
        onHead(task, allow);
    }

    void didReceiveData(const URLSessionTask& task, const ByteChunk& data) override {
        {
            const std::lock_guard lock(mutex);
            body += data.view();
            if (events.back() != "data") events.push_back("data");
            changed.notify_all();
        }
        onData(task);
    }

    void didComplete(const URLSessionTask& task, const std::exception_ptr& error) override {
        EXPECT_EQ(task.state(), State::completed);
        record(error ? "error" : "end");
    }

    void record(std::string event) {
        const std::lock_guard lock(mutex);
        events.push_back(std::move(event));
        changed.notify_all();
    }

    void waitFor(std::size_t bytes) {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::minutes(1), [&] { return body.size() >= bytes; }));
    }

    void waitForEnd() {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::minutes(1), [&] {
            return !events.empty() && (events.back() == "end" || events.back() == "error");
        }));
    }

    [[nodiscard]] std::string text() {
        const std::lock_guard lock(mutex);
        std::string all;
        for (const auto& event : events)
            all += (all.empty() ? "" : " ") + event;
        return all;
    }

    std::function<void(const URLSessionTask&, const std::function<void(ResponseDisposition)>&)> onHead =
        [](const auto&, const auto& allow) { allow(ResponseDisposition::allow); };
    std::function<void(const URLSessionTask&)> onData = [](const auto&) {};
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> events;
    std::string body;
};

} // namespace

TEST(Lifecycle, CancellingAtAnyStageCompletesExactlyOnce) {
    // The server stops at a stage of the response and says so; then the task is cancelled.
    const std::string stages[] = {
        "not resumed",
        "at once",
        "connected",
        "HTTP/1.1 200",
        "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nfour",
        "waiting for a slot"
    };
    for (const auto& stage : stages) {
        SCOPED_TRACE(stage);
        std::promise<void> reached;
        ScriptedServer server([&](Connection& connection) {
            if (!connection.readRequest()) return;
            if (stage.starts_with("HTTP")) connection.send(stage);
            if (connection.number() == 1) reached.set_value();
            connection.stall();
        });
        auto configuration = direct();
        configuration.httpMaximumConnectionsPerHost = 1;
        const URLSession session(configuration);
        const Outcome before;
        const Outcome outcome;
        const auto first = session.dataTask(request(server.url()), before.handler());
        const auto task = session.dataTask(request(server.url()), outcome.handler());
        EXPECT_EQ(task.state(), State::suspended);
        if (stage == "waiting for a slot") first.resume();
        if (stage != "not resumed") task.resume();
        if (stage != "not resumed" && stage != "at once") reached.get_future().wait();
        std::thread rival([&] { task.cancel(); });
        task.cancel();
        rival.join();
        EXPECT_EQ(outcome.text(), "cancelled");
        EXPECT_EQ(task.state(), State::completed);
        task.resume();
        task.cancel();
        session.invalidateAndCancel();
        EXPECT_EQ(outcome.completions(), 1);
        EXPECT_EQ(before.completions(), stage == "waiting for a slot" ? 1 : 0);
    }
}

TEST(Lifecycle, CancellingRacesWithTheResponse) {
    ScriptedServer server(ScriptedServer::answering([](Connection& connection, const Request&) {
        connection.respond("fine");
    }));
    const URLSession session(direct());
    for (int round = 0; round < 200; ++round) {
        const Outcome outcome;
        const auto task = session.dataTask(request(server.url()), outcome.handler());
        task.resume();
        std::thread rival([&, round] {
            for (int i = 0; i < round % 20; ++i)
                std::this_thread::yield();
            task.cancel();
        });
        const auto text = outcome.text();
        EXPECT_TRUE(text == "200 fine" || text == "cancelled") << text;
        rival.join();
        EXPECT_EQ(outcome.completions(), 1);
    }
}

TEST(Lifecycle, SessionMayGoFromAnywhere) {
    ScriptedServer server(ScriptedServer::answering([](Connection& connection, const Request& got) {
        if (got.line().starts_with("GET /stall")) return connection.stall();
        connection.respond("fine");
    }));
    { // by going out of scope: what is under way, waits or comes later still completes
        std::vector<Outcome> outcomes(20);
        const Outcome late;
        std::optional<URLSessionTask> lateTask;
        {
            const URLSession session(direct());
            for (const Outcome& outcome : outcomes)
                session.dataTask(request(server.url("/stall")), outcome.handler()).resume();
            lateTask = session.dataTask(request(server.url()), late.handler());
        }
        for (const Outcome& outcome : outcomes) {
            EXPECT_EQ(outcome.completions(), 1) << "the destructor waits";
            EXPECT_EQ(outcome.text(), "cancelled");
        }
        EXPECT_EQ(late.completions(), 0);
        lateTask->resume();
        EXPECT_EQ(late.text(), "cancelled");
        EXPECT_NE(late.thread(), std::this_thread::get_id()) << "never inline";
    }
    { // from within a handler
        auto session = std::make_shared<std::optional<URLSession>>(direct());
        const Outcome stalled;
        (*session)->dataTask(request(server.url("/stall")), stalled.handler()).resume();
        std::promise<void> dropped;
        const auto task = (*session)->dataTask(request(server.url()), [&](auto, auto, auto) {
            session->reset();
            dropped.set_value();
        });
        task.resume();
        dropped.get_future().wait();
        EXPECT_EQ(stalled.text(), "cancelled");
    }
    { // while other threads submit
        URLSession session(direct());
        std::vector<Outcome> outcomes(64);
        std::thread submitter([&, copy = session] {
            for (const Outcome& outcome : outcomes)
                copy.dataTask(request(server.url()), outcome.handler()).resume();
        });
        session.invalidateAndCancel();
        submitter.join();
        for (const Outcome& outcome : outcomes) {
            outcome.wait();
            EXPECT_EQ(outcome.completions(), 1);
        }
    }
    EXPECT_EQ(URLSession::shared(), URLSession::shared());
    EXPECT_NE(URLSession::shared(), URLSession());
}

TEST(Lifecycle, HandlersStartFurtherTasksOnTheSessionsOwnThread) {
    ScriptedServer server(ScriptedServer::answering([](Connection& connection, const Request&) {
        connection.respond("fine");
    }));
    const URLSession session(direct());
    const Outcome last;
    std::promise<std::thread::id> thread;
    std::function<void(int)> next = [&](int left) {
        if (left == 0) {
            thread.set_value(std::this_thread::get_id());
            session.dataTask(request(server.url()), last.handler()).resume();
            return;
        }
        session.dataTask(request(server.url()), [&, left](auto, auto, auto) { next(left - 1); }).resume();
    };
    next(50);
    EXPECT_EQ(last.text(), "200 fine");
    EXPECT_EQ(thread.get_future().get(), last.thread());
    EXPECT_EQ(server.connectionCount(), 1);
}

TEST(Streaming, EventsComeInOrderAndDataOnlyWhenAllowedAndResumed) {
    const std::string large(32'000'000, 'x');
    std::atomic<bool> sentAll = false;
    ScriptedServer server(ScriptedServer::answering([&](Connection& connection, const Request& got) {
        EXPECT_EQ(got.field("Accept-Encoding"), "identity");
        connection.respond(large);
        sentAll = true;
    }));
    const URLSession session(direct());
    const auto recorder = std::make_shared<Recorder>();
    std::promise<std::function<void(ResponseDisposition)>> allow;
    recorder->onHead = [&](const auto&, const auto& handler) { allow.set_value(handler); };
    std::atomic<int> pauses = 0;
    std::promise<void> paused;
    recorder->onData = [&](const URLSessionTask& task) {
        task.suspend();
        if (++pauses == 1) paused.set_value();
    };
    const auto task = session.dataTask(request(server.url()));
    task.setDelegate(recorder);
    task.resume();
    const auto allowed = allow.get_future().get();
    EXPECT_EQ(recorder->text(), "head");
    allowed(ResponseDisposition::allow);
    paused.get_future().wait();
    // Time for a fault to show: whatever comes in it would be too much.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(task.state(), State::suspended);
    EXPECT_EQ(recorder->text(), "head data");
    EXPECT_EQ(pauses, 1);
    EXPECT_FALSE(sentAll) << "the server is held back";
    {
        const std::lock_guard lock(recorder->mutex);
        recorder->onData = [](const auto&) {};
    }
    task.resume();
    recorder->waitForEnd();
    EXPECT_EQ(recorder->text(), "head data end");
    EXPECT_TRUE(recorder->body == large);
}

TEST(Streaming, EndsOnceHowever) {
    ScriptedServer server([](Connection& connection) {
        const auto got = connection.readRequest();
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nfour");
        if (got.line().starts_with("GET /stall")) connection.stall();
    });

    const struct {
        std::string_view path;
        std::string_view way;
        std::string_view events;
    } rows[] = {
        {"/close", "read", "head data error"},
        {"/stall", "cancel at head", "head error"},
        {"/stall", "refuse", "head error"},
        {"/stall", "cancel at data", "head data error"},
        {"/stall", "suspend and cancel", "head data error"},
    };

    const URLSession session(direct());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.way);
        const auto recorder = std::make_shared<Recorder>();
        recorder->onHead = [&](const URLSessionTask& task, const auto& handler) {
            if (row.way == "cancel at head") task.cancel();
            handler(row.way == "refuse" ? ResponseDisposition::cancel : ResponseDisposition::allow);
        };
        recorder->onData = [&](const URLSessionTask& task) {
            if (row.way == "suspend and cancel") task.suspend();
            if (row.way != "read") task.cancel();
        };
        const auto task = session.dataTask(request(server.url(row.path)));
        task.setDelegate(recorder);
        task.resume();
        recorder->waitForEnd();
        EXPECT_EQ(recorder->text(), row.events);
    }
}

TEST(Poller, BothMechanismsReportReadinessAndWakeUps) {
    using platform::detail::Poller;
    for (const auto mechanism : {Poller::Mechanism::epoll, Poller::Mechanism::poll}) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const auto poller = Poller::make(mechanism);
        std::vector<Poller::Ready> ready;
        poller->watch(ends[0], true, false);
        poller->wait(0, ready);
        EXPECT_TRUE(ready.empty());
        poller->wake();
        poller->wait(-1, ready);
        EXPECT_TRUE(ready.empty()) << "woken, but nothing to read";
        ASSERT_EQ(write(ends[1], "x", 1), 1);
        poller->watch(ends[1], false, true);
        poller->wait(-1, ready);
        ASSERT_EQ(ready.size(), 2U);
        for (const auto& one : ready)
            EXPECT_TRUE(one.descriptor == ends[0] ? one.readable && !one.writable : one.writable && !one.readable);
        poller->watch(ends[1], false, false);
        poller->watch(ends[0], false, false);
        poller->wait(0, ready);
        EXPECT_TRUE(ready.empty());
        close(ends[0]);
        close(ends[1]);
    }
}

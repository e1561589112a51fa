// Many calls at once from one client: makes links, a few at a time, and tells the progress. Ctrl-C ends it early; what
// was answered until then is listed all the same.
//
//     many_links ADDRESS KEY [COUNT]
//
// Ends with status 0 if all links were made, 1 if some were not, 130 if it was interrupted.

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Links.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/WhenAll.hpp"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <stop_token>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using OpenAPIURLSession::URLSessionTransport;
using platform::Task;
using QuillbeamAPI::Client;
using namespace QuillbeamAPI::Components::Schemas;

constexpr std::size_t callsAtOnce = 8;
constexpr int interrupted = 128 + SIGINT; // the exit status that shells know

/// What became of the links. Tasks that `syncWait` runs take turns on one thread, so it needs no lock.
struct Batch {
    std::size_t count = 0;
    std::vector<LinkDTO> made{};
    std::vector<std::string> failures{};

    void showProgress() const {
        if (!isatty(STDERR_FILENO)) return;
        std::cerr << '\r' << made.size() << " of " << count << " links made, " << failures.size() << " not"
                  << std::flush;
    }
};

/// Never fails, so that one link that cannot be made does not stop the others.
Task<void> makeLink(Client client, CreateLinkDTO link, Batch* batch) {
    try {
        auto output = co_await client.createLink(link);
        batch->made.push_back(output.created().body.json());
    } catch (const std::exception& error) {
        batch->failures.push_back(link.destinationUrl + ": " + error.what());
    }
    batch->showProgress();
}

Task<void> makeLinks(Client client, Batch* batch) {
    auto domains = co_await client.getDomains();
    CreateLinkDTO link;
    link.domain = domains.ok().body.json().domains.at(0).name;
    std::vector<Task<void>> tasks;
    for (std::size_t i = 1; i <= batch->count; ++i) {
        link.destinationUrl = "https://www.example.com/page/" + std::to_string(i);
        tasks.push_back(makeLink(client, link, batch)); // a task does nothing before its turn
    }
    co_await platform::whenAll(std::move(tasks), callsAtOnce);
}

/// Turns the first Ctrl-C into a request to stop, as long as it lives; the second one ends the program.
class Interruption {
public:
    Interruption() {
        // Blocked before any other thread starts, so that the signal comes to the thread that waits for it.
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGINT);
        pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
        waiting_ = std::thread([this] {
            int signal = 0;
            while (sigwait(&signals_, &signal) == 0 && !isOver_) {
                if (!stop_.request_stop()) std::_Exit(interrupted);
            }
        });
    }

    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    ~Interruption() {
        isOver_ = true;
        pthread_kill(waiting_.native_handle(), SIGINT);
        waiting_.join();
    }

    std::stop_token token() const { return stop_.get_token(); }

private:
    sigset_t signals_{};
    std::stop_source stop_{};
    std::atomic<bool> isOver_ = false;
    std::thread waiting_{};
};

} // namespace

int main(int argumentCount, char** arguments) {
    const auto server = platform::URL::make(argumentCount >= 3 ? arguments[1] : "");
    const long count = argumentCount == 4 ? std::strtol(arguments[3], nullptr, 10) : 100;
    if (argumentCount < 3 || argumentCount > 4 || !server || count < 1) {
        std::cerr << "Usage: many_links ADDRESS KEY [COUNT]\n";
        return 2;
    }
    const Interruption interruption;
    platform::URLSessionConfiguration loading;
    loading.httpMaximumConnectionsPerHost = static_cast<int>(callsAtOnce);
    const URLSessionTransport::Configuration configuration{platform::URLSession(loading)};
    const auto transport = std::make_shared<URLSessionTransport>(configuration);
    const auto authentication = std::make_shared<OpenAPIRuntime::BearerToken>(arguments[2]);
    const Client client(*server, transport, {authentication});

    Batch batch;
    batch.count = static_cast<std::size_t>(count);
    try {
        platform::syncWait(makeLinks(client, &batch), interruption.token());
    } catch (const std::exception& error) { // none was tried
        batch.failures.emplace_back(error.what());
    }
    if (isatty(STDERR_FILENO)) std::cerr << '\n';
    for (const LinkDTO& link : batch.made) {
        std::cout << link.shortUrl << "  " << link.destinationUrl << '\n';
    }
    const bool isInterrupted = interruption.token().stop_requested();
    if (isInterrupted) {
        std::cerr << "Interrupted: " << batch.made.size() << " of " << count << " links are known to be made.\n";
        return interrupted;
    }
    for (const std::string& failure : batch.failures) {
        std::cerr << failure << '\n';
    }
    return batch.failures.empty() ? 0 : 1;
}

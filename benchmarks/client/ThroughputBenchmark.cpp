// Concurrent creations of links against a sandbox in another process: through one client on one thread of the
// application, and as it would be done by hand, with an easy handle on each of as many threads and nlohmann-json. Both
// keep the same number of connections open and busy. The sandbox does most of the work and is the same for both, so the
// wall time says whether the client keeps it busy, and the CPU time of this process what the client itself costs.

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "benchmarks/Ratios.hpp"
#include "benchmarks/client/ByHand.hpp"
#include "benchmarks/client/Samples.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/WhenAll.hpp"
#include "tests/sandbox/SandboxProcess.hpp"

#include <curl/curl.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr int connections = 8;

/// One HTTP connection of the application without this library.
class Connection {
public:
    explicit Connection(const std::string& key)
        : fields_(curl_slist_append(
              curl_slist_append(nullptr, ("Authorization: Bearer " + key).c_str()), "Content-Type: application/json"
          )) {
        curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, fields_);
        curl_easy_setopt(easy_, CURLOPT_PROXY, "");
        curl_easy_setopt(easy_, CURLOPT_WRITEDATA, &answer_);
        curl_easy_setopt(
            easy_,
            CURLOPT_WRITEFUNCTION,
            +[](char* bytes, std::size_t, std::size_t size, void* answer) {
                static_cast<std::string*>(answer)->append(bytes, size);
                return size;
            }
        );
    }

    ~Connection() {
        curl_easy_cleanup(easy_);
        curl_slist_free_all(fields_);
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    const std::string& send(const char* method, const std::string& url, const std::string& body, long status) {
        curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
        curl_easy_setopt(easy_, CURLOPT_HTTPGET, 1L);
        if (!body.empty()) {
            curl_easy_setopt(easy_, CURLOPT_POSTFIELDSIZE, static_cast<long>(body.size()));
            curl_easy_setopt(easy_, CURLOPT_POSTFIELDS, body.c_str());
        }
        curl_easy_setopt(easy_, CURLOPT_CUSTOMREQUEST, method);
        answer_.clear();
        long got = 0;
        if (curl_easy_perform(easy_) == CURLE_OK) curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &got);
        if (got != status) throw std::runtime_error(std::string(method) + ' ' + url + ": " + answer_);
        return answer_;
    }

private:
    CURL* easy_ = curl_easy_init();
    curl_slist* fields_;
    std::string answer_;
};

class ByHand {
public:
    ByHand(const SandboxProcess& sandbox, std::string domain)
        : url_(sandbox.address() + "/links")
        , domain_(std::move(domain)) {
        for (int i = 0; i < connections; ++i)
            connections_.push_back(std::make_unique<Connection>(sandbox.key()));
    }

    void createLinks(int count) {
        std::atomic<int> next{0};
        std::vector<std::thread> threads;
        for (const auto& connection : connections_) {
            threads.emplace_back([&] {
                for (int i; (i = next++) < count;) {
                    const std::string body = byHand::text(samples::newLink(static_cast<std::size_t>(i), domain_));
                    if (byHand::link(connection->send("POST", url_, body, 201)).id.empty()) std::abort();
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }

private:
    std::string url_;
    std::string domain_;
    std::vector<std::unique_ptr<Connection>> connections_;
};

class ByClient {
public:
    ByClient(const SandboxProcess& sandbox, std::string domain)
        : client_(
              platform::URL::make(sandbox.address()).value(),
              std::make_shared<OpenAPIURLSession::URLSessionTransport>(transportConfiguration()),
              {std::make_shared<OpenAPIRuntime::BearerToken>(sandbox.key())}
          )
        , domain_(std::move(domain)) {}

    void createLinks(int count) {
        std::vector<platform::Task<QuillbeamAPI::Operations::createLink::Output>> calls;
        for (int i = 0; i < count; ++i)
            calls.push_back(client_.createLink(samples::newLink(static_cast<std::size_t>(i), domain_)));
        for (const auto& output : platform::syncWait(platform::whenAll(std::move(calls), connections))) {
            if (output.created().body.json().id.empty()) std::abort();
        }
    }

private:
    static OpenAPIURLSession::URLSessionTransport::Configuration transportConfiguration() {
        platform::URLSessionConfiguration configuration;
        configuration.proxy = "";
        configuration.httpMaximumConnectionsPerHost = connections;
        return OpenAPIURLSession::URLSessionTransport::Configuration(platform::URLSession(configuration));
    }

    QuillbeamAPI::Client client_;
    std::string domain_;
};

double processCPU() {
    return benchmarks::cpuNanoseconds(CLOCK_PROCESS_CPUTIME_ID);
}

struct Samples {
    std::vector<double> wall, cpu;

    template <class Contender>
    void take(Contender& contender, int count) {
        const auto start = std::chrono::steady_clock::now();
        const double cpuBefore = processCPU();
        contender.createLinks(count);
        cpu.push_back((processCPU() - cpuBefore) / count);
        const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
        wall.push_back(elapsed.count() / count);
    }
};

} // namespace

int main() {
    const SandboxProcess sandbox;
    Connection setUp(sandbox.key());
    setUp.send("PUT", sandbox.address() + "/sandbox/limits", R"({"linkLimit": 1000000})", 200);
    const auto domains = nlohmann::json::parse(setUp.send("GET", sandbox.address() + "/domains", "", 200));
    const auto domain = domains["domains"][0]["name"].get<std::string>();

    ByClient client(sandbox, domain);
    ByHand hand(sandbox, domain);
    Samples ours;
    Samples theirs;
    const int rounds = benchmarks::isSmokeRun() ? 1 : 15;
    const int count = benchmarks::isSmokeRun() ? 50 : 200;
    for (int round = -1; round < rounds; ++round) {
        if (round == 0) ours = theirs = Samples();
        ours.take(client, count);
        theirs.take(hand, count);
    }
    using benchmarks::Bound;
    using benchmarks::median;
    const char* peer = "easy handles and nlohmann";
    benchmarks::report(
        "createLink, 8 at once: time", peer, median(ours.wall) / median(theirs.wall), Bound::atMost, 1.1
    );
    benchmarks::report("createLink, 8 at once: CPU", peer, median(ours.cpu) / median(theirs.cpu), Bound::atMost, 0);
    std::printf(
        "    %.0f calls a second, by hand %.0f; %.0f us CPU a call, by hand %.0f us\n",
        1e9 / median(ours.wall),
        1e9 / median(theirs.wall),
        median(ours.cpu) / 1000,
        median(theirs.cpu) / 1000
    );
}

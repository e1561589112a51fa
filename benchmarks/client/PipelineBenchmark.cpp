// Large bodies through the whole client over a transport that answers from memory, against the JSON work alone as an
// application without this library would do it. What the peer does not do (path, header fields, status, content type,
// the task of the call) is thus on our side of the scale.

#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "benchmarks/Ratios.hpp"
#include "benchmarks/client/ByHand.hpp"
#include "benchmarks/client/Samples.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace QuillbeamAPI::Operations;
using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using platform::Task;

/// Reads the body that it is given, as a transport has to, and answers with the same bytes each time.
class InMemoryTransport final : public OpenAPIRuntime::ClientTransport {
public:
    InMemoryTransport(HTTPResponse::Status status, std::string answer)
        : status_(status)
        , answer_(std::move(answer)) {
        fields_[HTTPField::Name::contentType] = "application/json";
    }

    Task<HTTPResponseAndBody>
    send(HTTPRequest /*request*/, std::optional<HTTPBody> body, platform::URL /*baseURL*/, std::string /*id*/)
        override {
        if (body) {
            Task<platform::ByteChunk> collected =
                OpenAPIRuntime::collect(*std::move(body), std::numeric_limits<std::size_t>::max());
            received = co_await std::move(collected);
        }
        co_return HTTPResponseAndBody(HTTPResponse(status_, fields_), HTTPBody(answer_));
    }

    platform::ByteChunk received;

private:
    HTTPResponse::Status status_;
    HTTPTypes::HTTPFields fields_{};
    platform::ByteChunk answer_;
};

QuillbeamAPI::Client clientOver(std::shared_ptr<InMemoryTransport> transport) {
    return QuillbeamAPI::Client(platform::URL::make("https://host.example").value(), std::move(transport));
}

void require(bool same) {
    if (!same) throw std::logic_error("the contenders differ");
}

template <class Ours, class Theirs>
void row(const char* name, Ours ours, Theirs theirs) {
    const auto comparison = benchmarks::compare(
        {{"client", [&] { benchmark::DoNotOptimize(ours()); }},
         {"nlohmann", [&] { benchmark::DoNotOptimize(theirs()); }}},
        benchmarks::isSmokeRun() ? 1 : 21
    );
    benchmarks::report(
        name, "nlohmann, JSON alone", comparison.ratio("client", "nlohmann"), benchmarks::Bound::atMost, 1
    );
    std::printf(
        "    %.0f us a call, by hand %.0f us\n",
        comparison.median("client") / 1000,
        comparison.median("nlohmann") / 1000
    );
}

void historyRow() {
    const auto expected = samples::history(1000);
    const std::string answer = byHand::text(expected);
    auto client = clientOver(std::make_shared<InMemoryTransport>(HTTPResponse::Status::ok, answer));
    const auto call = [&] { return platform::syncWait(client.getLinkHistory()).ok().body.json(); };
    require(call() == expected && byHand::history(answer) == expected);
    row("client: history of 1,000 links", call, [&] { return byHand::history(answer); });
}

void analyticsRow() {
    const auto expected = samples::analytics(366 * 24);
    const std::string answer = byHand::text(expected);
    auto client = clientOver(std::make_shared<InMemoryTransport>(HTTPResponse::Status::ok, answer));
    const getLinkAnalytics::Query query(
        getLinkAnalytics::Query::unitPayload::hour,
        expected.timeline.entries.front().date,
        expected.timeline.entries.back().date
    );
    const auto call = [&] {
        return platform::syncWait(client.getLinkAnalytics(getLinkAnalytics::Path(expected.linkId), query))
            .ok()
            .body.json();
    };
    require(call() == expected && byHand::analytics(answer) == expected);
    row("client: a year of hourly analytics", call, [&] { return byHand::analytics(answer); });
}

void bulkRow() {
    samples::Schemas::BulkCreateLinksDTO links;
    for (std::size_t i = 0; i < 1000; ++i)
        links.links.push_back(samples::newLink(i, "dom_0"));
    const auto transport = std::make_shared<InMemoryTransport>(HTTPResponse::Status::created, R"({"links": []})");
    auto client = clientOver(transport);
    const auto call = [&] { return platform::syncWait(client.createBulkLinks(links)).created().body.json(); };
    require(call().links.empty());
    require(
        nlohmann::json::parse(std::string(transport->received.view())) == nlohmann::json::parse(byHand::text(links))
    );
    row("client: creation of 1,000 links in bulk", call, [&] { return byHand::text(links); });
}

} // namespace

int main() {
    historyRow();
    analyticsRow();
    bulkRow();
}

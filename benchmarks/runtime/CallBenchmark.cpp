// A whole call over a transport that answers at once, against the same work written by hand: build the request, look at
// the response's status and content type, decode the body.

#include "OpenAPIRuntime/Interface/UniversalClient.hpp"
#include "benchmarks/Ratios.hpp"
#include "platform/coding/Fields.hpp"
#include "platform/coding/Record.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace OpenAPIRuntime;
using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using platform::Task;
using platform::URL;

struct Domain {
    std::string id{};
    std::string name{};
    std::optional<std::string> redirectUrl{};

    static const platform::RecordFields& recordFields();
    friend bool operator==(const Domain&, const Domain&) = default;
};

struct DomainList {
    std::vector<Domain> domains{};

    static const platform::RecordFields& recordFields();
    friend bool operator==(const DomainList&, const DomainList&) = default;
};

const platform::RecordFields& Domain::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Domain", field("id", &Domain::id), field("name", &Domain::name), field("redirectUrl", &Domain::redirectUrl)
    );
    return table;
}

const platform::RecordFields& DomainList::recordFields() {
    static const platform::RecordTable table("DomainList", platform::field("domains", &DomainList::domains));
    return table;
}

std::string bodyOf(int count) {
    std::string text = R"({"domains":[)";
    for (int i = 0; i < count; ++i) {
        if (i > 0) text += ',';
        text += R"({"id":"0d1c5a52-8d0b-4f0e-9d3c-)" + std::to_string(100000000000 + i) + R"(","name":"links)" +
                std::to_string(i) + R"(.example","redirectUrl":"https://www.example/)" + std::to_string(i) + R"("})";
    }
    return text + "]}";
}

/// Answers every request with the same bytes, without copying them.
struct InMemoryTransport final : ClientTransport {
    explicit InMemoryTransport(std::string body_)
        : body(std::move(body_)) {
        fields[HTTPField::Name::contentType] = "application/json; charset=utf-8";
    }

    Task<HTTPResponseAndBody> send(HTTPRequest request, std::optional<HTTPBody>, URL, std::string) override {
        benchmark::DoNotOptimize(request);
        return Task<HTTPResponseAndBody>::ready(HTTPResponse(HTTPResponse::Status::ok, fields), HTTPBody(body));
    }

    platform::ByteChunk body;
    HTTPTypes::HTTPFields fields{};
};

struct Passing final : ClientMiddleware {
    Task<HTTPResponseAndBody>
    intercept(HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string, Next next) override {
        return next(std::move(request), std::move(body), std::move(baseURL));
    }
};

struct Input {
    std::string owner;
};

Task<DomainList> callTyped(const UniversalClient& client, std::string owner) {
    const Converter converter = client.converter();
    return client.send(
        Input{std::move(owner)},
        "listDomains",
        [converter](const Input& input) {
            HTTPRequest request(
                HTTPRequest::Method::get,
                std::nullopt,
                std::nullopt,
                converter.renderedPath("/owners/{}/domains", input.owner)
            );
            request.headerFields.setValue(HTTPField::Name::accept, "application/json");
            return HTTPRequestAndBody(std::move(request));
        },
        [converter](HTTPResponse response, std::optional<HTTPBody> body) {
            if (response.status() != HTTPResponse::Status::ok) std::abort();
            (void)converter.bestContentType(
                converter.extractContentTypeIfPresent(response.headerFields), {"application/json"}
            );
            return converter.getResponseBodyAsJSON<DomainList>(std::move(body));
        }
    );
}

// --- the same by hand

struct PlainResponse {
    int status;
    std::string contentType;
    const simdjson::padded_string* body;
};

struct PlainRequest {
    std::string method;
    std::string path;
    std::vector<std::pair<std::string, std::string>> fields;
};

__attribute__((noinline)) PlainResponse sendPlainly(const PlainRequest& request, const simdjson::padded_string& body) {
    benchmark::DoNotOptimize(&request);
    return {200, "application/json; charset=utf-8", &body};
}

std::string escaped(std::string_view text) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || c == '-' || c == '.' || c == '_' || c == '~') {
            result += c;
        } else {
            result += {'%', digits[byte >> 4U], digits[byte & 15U]};
        }
    }
    return result;
}

DomainList
callByHand(simdjson::ondemand::parser& parser, const simdjson::padded_string& answer, std::string_view owner) {
    PlainRequest request{"GET", "/owners/" + escaped(owner) + "/domains", {{"Accept", "application/json"}}};
    const PlainResponse response = sendPlainly(request, answer);
    if (response.status != 200 || !response.contentType.starts_with("application/json")) std::abort();
    DomainList list;
    auto document = parser.iterate(*response.body);
    for (auto element : document["domains"].get_array()) {
        Domain& domain = list.domains.emplace_back();
        for (auto member : element.get_object()) {
            const std::string_view key = member.unescaped_key();
            if (key == "id") {
                domain.id = std::string_view(member.value().get_string());
            } else if (key == "name") {
                domain.name = std::string_view(member.value().get_string());
            } else if (key == "redirectUrl") {
                domain.redirectUrl.emplace(std::string_view(member.value().get_string()));
            }
        }
    }
    return list;
}

void row(const std::string& name, int domains, int middlewares, double target) {
    const std::string text = bodyOf(domains);
    const int repetitions = benchmarks::isSmokeRun() ? 5 : 4000 / (domains + 4);
    std::vector<std::shared_ptr<ClientMiddleware>> chain(
        static_cast<std::size_t>(middlewares), std::make_shared<Passing>()
    );
    const UniversalClient client(
        URL::make("https://host.example").value(), Configuration(), std::make_shared<InMemoryTransport>(text), chain
    );
    const simdjson::padded_string padded(text);
    simdjson::ondemand::parser parser;
    if (platform::syncWait(callTyped(client, "a b")) != callByHand(parser, padded, "a b")) {
        throw std::logic_error("the contenders differ");
    }
    const auto comparison = benchmarks::compare(
        {{"typed",
          [&] {
              for (int i = 0; i < repetitions; ++i) {
                  benchmark::DoNotOptimize(platform::syncWait(callTyped(client, "a b")));
              }
          }},
         {"by hand",
          [&] {
              for (int i = 0; i < repetitions; ++i) {
                  benchmark::DoNotOptimize(callByHand(parser, padded, "a b"));
              }
          }}},
        benchmarks::isSmokeRun() ? 3 : 41
    );
    benchmarks::report(name, "by hand", comparison.ratio("typed", "by hand"), benchmarks::Bound::atMost, target);
    std::printf(
        "    %.0f ns a call, by hand %.0f ns\n",
        comparison.median("typed") / repetitions,
        comparison.median("by hand") / repetitions
    );
}

} // namespace

int main() {
    row("call, 1 record", 1, 0, 0);
    row("call, 1 record, 3 middlewares", 1, 3, 0);
    row("call, 100 records", 100, 0, 0);
}

#include "benchmarks/Ratios.hpp"
#include "http_types/HTTPFields.hpp"

#include <benchmark/benchmark.h>
#include <boost/beast/http/fields.hpp>

#include <array>
#include <string>
#include <utility>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using Peer = boost::beast::http::fields;

/// The head of a response as a service behind a proxy sends it.
constexpr std::array<std::pair<const char*, const char*>, 16> head{{
    {"Date", "Sun, 22 Nov 2026 10:15:30 GMT"},
    {"Content-Type", "application/json; charset=utf-8"},
    {"Content-Length", "18342"},
    {"Connection", "keep-alive"},
    {"Vary", "Origin"},
    {"Access-Control-Allow-Origin", "*"},
    {"Cache-Control", "private, max-age=0, must-revalidate"},
    {"ETag", "W/\"47a6-1Wf8xX0p3rZ8gqVQpX3cQ2\""},
    {"X-RateLimit-Limit", "600"},
    {"X-RateLimit-Remaining", "597"},
    {"Set-Cookie", "session=4b1f0c8d2e7a; Path=/; HttpOnly; Secure"},
    {"Set-Cookie", "region=eu; Path=/"},
    {"Strict-Transport-Security", "max-age=31536000; includeSubDomains"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Request-Id", "0d1c5a52-8d0b-4f0e-9d3c-5b2e7a1f4c66"},
    {"Server", "edge"},
}};

HTTPFields makeFields(std::size_t count) {
    HTTPFields fields;
    for (std::size_t i = 0; i < count; ++i) {
        fields.append(HTTPField(HTTPField::Name::make(head[i].first).value(), head[i].second));
    }
    return fields;
}

Peer makePeer(std::size_t count) {
    Peer fields;
    for (std::size_t i = 0; i < count; ++i) {
        fields.insert(head[i].first, head[i].second);
    }
    return fields;
}

const int repetitions = benchmarks::isSmokeRun() ? 10 : 2000;

/// Compares one round of ours with one of the peer's and reports the ratio.
void row(
    const std::string& name, const std::function<void()>& ours, const std::function<void()>& theirs, double target = 1.0
) {
    const auto repeated = [](const std::function<void()>& once) {
        return [once] {
            for (int i = 0; i < repetitions; ++i) {
                once();
            }
        };
    };
    const auto comparison = benchmarks::compare({{"ours", repeated(ours)}, {"peer", repeated(theirs)}});
    benchmarks::report(name, "Boost.Beast fields", comparison.ratio("ours", "peer"), benchmarks::Bound::atMost, target);
}

} // namespace

int main() {
    namespace http = boost::beast::http;
    const auto absent = HTTPField::Name::make("X-Absent").value();
    for (const std::size_t count : {std::size_t{6}, head.size()}) {
        const std::string size = " (" + std::to_string(count) + " fields)";
        const auto last = HTTPField::Name::make(head[count - 1].first).value();
        const HTTPFields fields = makeFields(count);
        const Peer peer = makePeer(count);
        row(
            "HTTPFields: make from names and values" + size,
            [count] { benchmark::DoNotOptimize(makeFields(count)); },
            [count] { benchmark::DoNotOptimize(makePeer(count)); }
        );
        row(
            "HTTPFields: append by constant names" + size,
            [count] {
                HTTPFields made;
                for (std::size_t i = 0; i < count; ++i) {
                    made.append(HTTPField(HTTPField::Name::contentType, head[i].second));
                }
                benchmark::DoNotOptimize(made);
            },
            [count] {
                Peer made;
                for (std::size_t i = 0; i < count; ++i) {
                    made.insert(http::field::content_type, head[i].second);
                }
                benchmark::DoNotOptimize(made);
            }
        );
        row(
            "HTTPFields: find a known name" + size,
            [&] { benchmark::DoNotOptimize(fields.find(HTTPField::Name::accessControlAllowOrigin)); },
            [&] { benchmark::DoNotOptimize(peer.find(http::field::access_control_allow_origin)); }
        );
        row(
            "HTTPFields: find the last field" + size,
            [&] { benchmark::DoNotOptimize(fields.find(last)); },
            [&] { benchmark::DoNotOptimize(peer.find(head[count - 1].first)); }
        );
        row(
            "HTTPFields: miss" + size,
            [&] { benchmark::DoNotOptimize(fields.contains(absent)); },
            [&] { benchmark::DoNotOptimize(peer.count("X-Absent")); }
        );
        row(
            "HTTPFields: miss, name made from text" + size,
            [&] { benchmark::DoNotOptimize(fields.contains(HTTPField::Name::make("X-Absent").value())); },
            [&] { benchmark::DoNotOptimize(peer.count("X-Absent")); },
            0 // for information: names are made once and kept; one unknown to the library owns its text
        );
        row(
            "HTTPFields: value as text" + size,
            [&] { benchmark::DoNotOptimize(fields[HTTPField::Name::contentType].value()); },
            [&] { benchmark::DoNotOptimize(std::string(peer[http::field::content_type])); }
        );
        row(
            "HTTPFields: make and look up once" + size,
            [count] { benchmark::DoNotOptimize(makeFields(count).contains(HTTPField::Name::contentType)); },
            [count] { benchmark::DoNotOptimize(makePeer(count).count(http::field::content_type)); }
        );
        row(
            "HTTPFields: copy" + size,
            [&] { benchmark::DoNotOptimize(HTTPFields(fields)); },
            [&] { benchmark::DoNotOptimize(Peer(peer)); }
        );
        row(
            "HTTPFields: copy and replace one value" + size,
            [&] {
                HTTPFields copy = fields;
                copy[HTTPField::Name::contentType] = "text/plain";
                benchmark::DoNotOptimize(copy);
            },
            [&] {
                Peer copy = peer;
                copy.set(http::field::content_type, "text/plain");
                benchmark::DoNotOptimize(copy);
            }
        );
    }
}

#include "benchmarks/Ratios.hpp"
#include "benchmarks/json/Peers.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> allocations{0};
} // namespace

void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

int main() {
    using namespace benchmarks;
    using platform::JSONEncoder;

    const links::History history = links::sample(isSmokeRun() ? 10 : 1000);
    const platform::JSONDecoder decoder(&links::dateOf);
    const JSONEncoder inOrder(JSONEncoder::plain, &links::textOf);
    const JSONEncoder pretty(JSONEncoder::prettyPrinted | JSONEncoder::sortedKeys, &links::textOf);
    const std::string json = inOrder.encode(history);
    const std::string sortedJSON = JSONEncoder(JSONEncoder::sortedKeys, &links::textOf).encode(history);
    const std::string body =
        R"({"code":"DOMAIN_NAME_ALREADY_REGISTERED","errorDescription":"The domain name go.example.com is registered with )"
        R"(another account. Choose another one, or ask the owner of that account to release it first."})";

    peers::OnDemand onDemand;
    const auto padded = onDemand.padded(json);
    const auto paddedSorted = onDemand.padded(sortedJSON);
    const auto paddedBody = onDemand.padded(body);

    bool ok = true;
    const auto check = [&](bool holds, const char* what) {
        if (!holds) std::fprintf(stderr, "contenders differ: %s\n", what);
        ok = ok && holds;
    };
    check(decoder.decode<links::History>(json) == history, "decode");
    check(onDemand.history(*padded, json.size()) == history, "simdjson");
    check(peers::decodeNlohmann(json) == history, "nlohmann");
    check(peers::decodeRapidJSON(json) == history, "RapidJSON");
    check(peers::decodeBoost(json) == history, "Boost.JSON");
    check(pretty.encode(history) == peers::encodeByHand(history), "encode");
    check(decoder.decode<links::ErrorBody>(body) == onDemand.errorBody(*paddedBody, body.size()), "error body");
    if (!ok) return 1;

    const int rounds = isSmokeRun() ? 3 : 41;
    std::size_t sink = 0;
    const auto decoding = compare(
        {
            {"ours", [&] { sink += decoder.decode<links::History>(json).links.size(); }},
            {"ours, any order", [&] { sink += decoder.decode<links::History>(sortedJSON).links.size(); }},
            {"simdjson on-demand", [&] { sink += onDemand.history(*padded, json.size()).links.size(); }},
            {"simdjson on-demand, any order",
             [&] { sink += onDemand.history(*paddedSorted, sortedJSON.size()).links.size(); }},
            {"nlohmann", [&] { sink += peers::decodeNlohmann(json).links.size(); }},
            {"RapidJSON", [&] { sink += peers::decodeRapidJSON(json).links.size(); }},
            {"Boost.JSON", [&] { sink += peers::decodeBoost(json).links.size(); }},
        },
        rounds
    );
    report(
        "json decode 1000 links",
        "simdjson on-demand",
        decoding.ratio("ours", "simdjson on-demand"),
        Bound::atMost,
        1.15
    );
    report(
        "json decode, members in any order",
        "simdjson on-demand",
        decoding.ratio("ours, any order", "simdjson on-demand, any order"),
        Bound::atMost,
        1.35
    );
    report("json decode, times faster", "nlohmann", decoding.ratio("nlohmann", "ours"), Bound::atLeast, 6);
    report("json decode, times faster", "RapidJSON", decoding.ratio("RapidJSON", "ours"), Bound::atLeast, 0);
    report("json decode, times faster", "Boost.JSON", decoding.ratio("Boost.JSON", "ours"), Bound::atLeast, 0);

    const auto encoding = compare(
        {
            {"ours", [&] { sink += pretty.encode(history).size(); }},
            {"by hand", [&] { sink += peers::encodeByHand(history).size(); }},
            {"nlohmann", [&] { sink += peers::encodeNlohmann(history).size(); }},
        },
        rounds
    );
    report(
        "json encode 1000 links", "hand-written sorted writer", encoding.ratio("ours", "by hand"), Bound::atMost, 2.0
    );
    report("json encode, times faster", "nlohmann", encoding.ratio("nlohmann", "ours"), Bound::atLeast, 8);

    const auto small = compare(
        {
            {"ours",
             [&] {
                 for (int i = 0; i < 1000; ++i)
                     sink += decoder.decode<links::ErrorBody>(body).errorDescription.size();
             }},
            {"simdjson on-demand",
             [&] {
                 for (int i = 0; i < 1000; ++i)
                     sink += onDemand.errorBody(*paddedBody, body.size()).errorDescription.size();
             }},
        },
        rounds
    );
    report(
        "json decode 200-byte error body",
        "simdjson on-demand",
        small.ratio("ours", "simdjson on-demand"),
        Bound::atMost,
        0
    );
    const std::size_t before = allocations;
    sink += decoder.decode<links::ErrorBody>(body).errorDescription.size();
    report("json error body, allocations", "count", static_cast<double>(allocations - before), Bound::atMost, 3);
    return sink == 0 ? 1 : 0;
}

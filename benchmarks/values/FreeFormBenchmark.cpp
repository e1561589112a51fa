#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"
#include "benchmarks/Ratios.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <benchmark/benchmark.h>
#include <boost/json.hpp>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdio>
#include <string>

/// Free-form documents: from text to a tree that can be read and changed, which is then destroyed, and from the tree
/// to text. Every contender uses the allocator of the process.
namespace {

using OpenAPIRuntime::OpenAPIArrayContainer;
using OpenAPIRuntime::OpenAPIObjectContainer;
using OpenAPIRuntime::OpenAPIValueContainer;

/// The records that a service might keep as it gets them: names in no order, texts of all lengths, some beyond ASCII,
/// whole and broken numbers, what is absent, and lists.
std::string document(std::size_t size) {
    std::uint64_t state = 0x2545F4914F6CDD1DULL;
    const auto next = [&state](std::uint64_t below) {
        state ^= state << 13U;
        state ^= state >> 7U;
        state ^= state << 17U;
        return state % below;
    };
    const auto words = [&next](std::uint64_t count) {
        static constexpr std::string_view all[] = {
            "spring", "sale", "blue", "newsletter", "launch", "caf\u00e9", "week", "a", "partner", "\\\"quoted\\\""
        };
        std::string text;
        for (std::uint64_t i = 0; i < count; ++i) {
            if (i > 0) text += ' ';
            text += all[next(std::size(all))];
        }
        return text;
    };
    std::string text = "[";
    while (text.size() < size) {
        if (text.size() > 1) text += ',';
        text += R"({"kind":"click","id":)" + std::to_string(next(1'000'000'000));
        text += R"(,"campaign":{"name":")" + words(1 + next(3)) + R"(","budget":)" + std::to_string(next(100'000)) +
                "." + std::to_string(1 + next(99)) + R"(,"isActive":)" + (next(2) == 0 ? "true" : "false") + "}";
        text += R"(,"note":)" + (next(3) == 0 ? "null" : '"' + words(4 + next(12)) + '"');
        text += R"(,"browserVersion":")" + std::to_string(next(200)) + R"(","utm":{"source":")" + words(1) +
                R"(","medium":"email","term":")" + words(2) + R"("},"samples":[)";
        for (std::uint64_t i = 0, count = next(12); i < count; ++i)
            text += (i == 0 ? "" : ",") + std::to_string(next(10'000));
        text += R"(],"position":{"latitude":)" + std::to_string(next(90)) + "." + std::to_string(next(1'000'000)) +
                R"(,"longitude":-)" + std::to_string(next(180)) + "." + std::to_string(next(1'000'000)) + "}";
        text += R"(,"tags":[")" + words(1) + R"(",")" + words(1) + R"("],"durationInMilliseconds":)" +
                std::to_string(next(5'000)) + "}";
    }
    return text + "]";
}

/// Takes a result, so that it is made, and destroys it.
template <class Result>
void consume(Result result) {
    benchmark::DoNotOptimize(result);
}

} // namespace

int main() {
    using namespace benchmarks;

    const std::string text = document(isSmokeRun() ? 10'000 : 1'000'000);
    const platform::JSONDecoder decoder;
    const platform::JSONEncoder encoder(platform::JSONEncoder::withoutEscapingSlashes);

    const auto ours = decoder.decode<OpenAPIValueContainer>(text);
    const auto nlohmann = nlohmann::json::parse(text);
    const auto boost = boost::json::parse(text);
    if (nlohmann::json::parse(encoder.encode(ours)) != nlohmann || boost::json::parse(encoder.encode(ours)) != boost) {
        std::fprintf(stderr, "contenders differ\n");
        return 1;
    }
    const auto fromText = compare({
        {"ours", [&] { consume(decoder.decode<OpenAPIValueContainer>(text)); }},
        {"nlohmann", [&] { consume(nlohmann::json::parse(text)); }},
        {"Boost.JSON", [&] { consume(boost::json::parse(text)); }},
    });
    const auto toText = compare({
        {"ours", [&] { consume(encoder.encode(ours)); }},
        {"nlohmann", [&] { consume(nlohmann.dump()); }},
        {"Boost.JSON", [&] { consume(boost::json::serialize(boost)); }},
    });
    for (const char* peer : {"nlohmann", "Boost.JSON"}) {
        report("values: 1 MB free-form, text to tree", peer, fromText.ratio("ours", peer), Bound::atMost, 1.0);
        report("values: 1 MB free-form, tree to text", peer, toText.ratio("ours", peer), Bound::atMost, 1.0);
    }
    return 0;
}

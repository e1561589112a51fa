#include "OpenAPIRuntime/Conversion/ISO8601DateTranscoder.hpp"
#include "OpenAPIRuntime/URICoding/URIEncoder.hpp"
#include "benchmarks/Ratios.hpp"
#include "platform/text/PercentEncoding.hpp"

#include <benchmark/benchmark.h>
#include <boost/url/encode.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>
#include <boost/url/url.hpp>

#include <functional>
#include <string>
#include <vector>

namespace {

using namespace OpenAPIRuntime;
namespace urls = boost::urls;

const int repetitions = benchmarks::isSmokeRun() ? 10 : 20000;

/// Compares rounds of ours with as many of the peer's and reports the ratio.
void row(
    const std::string& name, const std::function<void()>& ours, const std::function<void()>& theirs, double target
) {
    const auto repeated = [](const std::function<void()>& once) {
        return [once] {
            for (int i = 0; i < repetitions; ++i) {
                once();
            }
        };
    };
    const auto comparison = benchmarks::compare({{"ours", repeated(ours)}, {"peer", repeated(theirs)}});
    benchmarks::report(name, "Boost.URL", comparison.ratio("ours", "peer"), benchmarks::Bound::atMost, target);
}

URIEncoder encoder(URICoderConfiguration::Style style) {
    return URIEncoder(URICoderConfiguration(
        style,
        style == URICoderConfiguration::Style::form,
        URICoderConfiguration::SpaceEscapingCharacter::percentEncoded,
        ISO8601DateTranscoder::iso8601()
    ));
}

} // namespace

int main() {
    const std::string plain = "spring-campaign_2026.landing~page-with-a-long-enough-name";
    const std::string escaped = "https://shop.example/sale?source=mail&label=spring 2026";
    const auto percent = [](const std::string& name, const std::string& text) {
        row(
            "percent-encode: " + name,
            [&text] { benchmark::DoNotOptimize(platform::percentEncoded(text, "-._~")); },
            [&text] { benchmark::DoNotOptimize(urls::encode(text, urls::unreserved_chars)); },
            1.0
        );
    };
    percent("nothing to escape", plain);
    percent("a quarter to escape", escaped);

    const URIEncoder simple = encoder(URICoderConfiguration::Style::simple);
    row(
        "URIEncoder: a path parameter",
        [&] { benchmark::DoNotOptimize(simple.encode(plain, "")); },
        [&] { benchmark::DoNotOptimize(urls::encode(plain, urls::unreserved_chars)); },
        2.0
    );
    const URIEncoder form = encoder(URICoderConfiguration::Style::form);
    const std::vector<std::string> tags{"spring sale", "mail", "2026", "landing page"};
    row(
        "URIEncoder: a query item with four values",
        [&] { benchmark::DoNotOptimize(form.encode(tags, "tagId")); },
        [&] {
            urls::url url;
            for (const std::string& tag : tags) {
                url.params().append({"tagId", tag});
            }
            benchmark::DoNotOptimize(std::string(url.encoded_query()));
        },
        1.0
    );
    return 0;
}

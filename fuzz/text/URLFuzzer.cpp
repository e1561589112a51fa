#include "platform/text/UTF8.hpp"
#include "platform/url/URLComponents.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using platform::URL;
using platform::URLComponents;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

/// RFC 3986, section 5.3, from a URL's own accessors.
std::string recomposed(const URL& url) {
    std::string text;
    const auto add =
        [&text](std::string_view before, std::optional<std::string_view> component, std::string_view after) {
            if (component) text.append(before).append(*component).append(after);
        };
    add("", url.scheme(), ":");
    if (url.host()) text += "//";
    add("", url.percentEncodedUserInfo(), "@");
    add("", url.host(), "");
    add(":", url.portText(), "");
    text += url.percentEncodedPath();
    add("?", url.percentEncodedQuery(), "");
    add("#", url.fragment(), "");
    return text;
}

} // namespace

// What parses prints the same and takes apart without loss; whatever components form a URL form it from them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::optional<URL> url = URL::make(text);
    const std::optional<URLComponents> components = URLComponents::make(text);
    if (url) {
        require(platform::isASCII(text));
        require(url->absoluteString() == text);
        require(recomposed(*url) == text);
        require(components && components->url() == url);
    } else {
        require(!components || !platform::isASCII(text));
    }
    if (components) {
        const std::optional<URL> made = components->url();
        require(made && URLComponents::make(made->absoluteString()) == components);
    }

    // Anything at all, set as a path or a query, either stays itself or gives no URL.
    URLComponents base = *URLComponents::make("http://h/p?q#f");
    base.setPercentEncodedPath(std::string(text));
    if (const std::optional<URL> made = base.url()) {
        require(made->percentEncodedPath() == text && made->host() == "h" && made->percentEncodedQuery() == "q");
    }
    base.setPercentEncodedPath("");
    base.setPercentEncodedQuery(std::string(text));
    if (const std::optional<URL> made = base.url()) {
        require(made->percentEncodedQuery() == text && made->fragment() == "f");
    }
    return 0;
}

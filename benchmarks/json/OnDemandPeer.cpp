#include "benchmarks/json/Peers.hpp"

#include <simdjson.h>

#include <cstring>

namespace peers {

namespace ondemand = simdjson::ondemand;

struct OnDemand::State {
    ondemand::parser parser;
};

OnDemand::OnDemand()
    : state_(std::make_unique<State>()) {}

OnDemand::~OnDemand() = default;

std::unique_ptr<std::string> OnDemand::padded(std::string_view json) const {
    auto text = std::make_unique<std::string>(json);
    text->resize(json.size() + simdjson::SIMDJSON_PADDING, ' ');
    return text;
}

namespace {

std::string_view string(ondemand::value value) {
    return value.get_string().value();
}

/// The key as it stands in the text: those of the records have no escapes.
template <class Member>
std::string_view keyOf(Member& member) {
    const char* const start = member.key().value().raw();
    return {start, static_cast<std::size_t>(std::strchr(start, '"') - start)};
}

links::Tag tag(ondemand::object object) {
    links::Tag out;
    for (auto member : object) {
        const std::string_view key = keyOf(member);
        if (key == "id") {
            out.id = string(member.value());
        } else if (key == "name") {
            out.name = string(member.value());
        }
    }
    return out;
}

links::Link link(ondemand::object object) {
    links::Link out;
    for (auto member : object) {
        const std::string_view key = keyOf(member);
        ondemand::value value = member.value();
        const auto take = [&](std::string_view name, auto& target) {
            if (key == name) target = string(value);
        };
        switch (key.size()) {
        case 2:
            take("id", out.id);
            break;
        case 4:
            if (key == "tags") {
                ondemand::array array = value.get_array();
                for (auto element : array)
                    out.tags.push_back(tag(element.get_object()));
            } else {
                take("slug", out.slug);
            }
            break;
        case 5:
            take("title", out.title);
            break;
        case 6:
            if (key == "domain") {
                ondemand::object domain = value.get_object();
                for (auto inner : domain) {
                    const std::string_view name = keyOf(inner);
                    if (name == "id") out.domain.id = string(inner.value());
                    if (name == "name") out.domain.name = string(inner.value());
                }
            }
            break;
        case 7:
            take("utmTerm", out.utmTerm);
            break;
        case 8:
            if (key == "expireAt") {
                out.expireAt = links::dateOf(string(value));
            } else if (key == "imageUrl") {
                out.imageUrl = string(value);
            } else {
                take("shortUrl", out.shortUrl);
            }
            break;
        case 9:
            if (key == "createdAt") {
                out.createdAt = links::dateOf(string(value));
            } else if (key == "utmSource") {
                out.utmSource = string(value);
            } else {
                take("utmMedium", out.utmMedium);
            }
            break;
        case 10:
            if (key == "clickCount") {
                out.clickCount = value.get_double().value();
            } else {
                take("utmContent", out.utmContent);
            }
            break;
        case 11:
            if (key == "description") {
                out.description = string(value);
            } else {
                take("utmCampaign", out.utmCampaign);
            }
            break;
        case 14:
            if (key == "destinationUrl") {
                out.destinationUrl = string(value);
            } else {
                take("iosRedirectUrl", out.iosRedirectUrl);
            }
            break;
        case 15:
            if (key == "regionRedirects") {
                ondemand::array array = value.get_array();
                auto& redirects = out.regionRedirects.emplace();
                for (auto element : array) {
                    auto& redirect = redirects.emplace_back();
                    ondemand::object inner = element.get_object();
                    for (auto pair : inner) {
                        const std::string_view name = keyOf(pair);
                        if (name == "countryCode") redirect.countryCode = string(pair.value());
                        if (name == "url") redirect.url = string(pair.value());
                    }
                }
            }
            break;
        case 18:
            if (key == "androidRedirectUrl") {
                out.androidRedirectUrl = string(value);
            } else {
                take("expirationRedirect", out.expirationRedirect);
            }
            break;
        default:
            break;
        }
    }
    return out;
}

} // namespace

links::History OnDemand::history(const std::string& padded, std::size_t length) {
    ondemand::document document = state_->parser.iterate(padded.data(), length, padded.size());
    links::History out;
    ondemand::object top = document.get_object();
    for (auto member : top) {
        const std::string_view key = keyOf(member);
        ondemand::array array = member.value().get_array();
        if (key == "links") {
            for (auto element : array)
                out.links.push_back(link(element.get_object()));
        } else {
            for (auto element : array)
                out.tags.push_back(tag(element.get_object()));
        }
    }
    return out;
}

links::ErrorBody OnDemand::errorBody(const std::string& padded, std::size_t length) {
    ondemand::document document = state_->parser.iterate(padded.data(), length, padded.size());
    links::ErrorBody out;
    ondemand::object top = document.get_object();
    for (auto member : top) {
        const std::string_view key = keyOf(member);
        if (key == "code") {
            out.code = string(member.value());
        } else if (key == "errorDescription") {
            out.errorDescription = string(member.value());
        }
    }
    return out;
}

} // namespace peers

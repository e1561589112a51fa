#include "benchmarks/json/Peers.hpp"

#include <boost/json.hpp>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>

#include <charconv>
#include <iterator>

namespace peers {

namespace {

/// What the peers that build a tree first are asked for; the rest of the work is the same for all of them.
struct Nlohmann {
    using Node = nlohmann::json;

    static const Node* member(const Node& node, const char* key) {
        const auto at = node.find(key);
        return at == node.end() ? nullptr : &*at;
    }

    static const std::string& text(const Node& node) { return node.get_ref<const std::string&>(); }

    static double number(const Node& node) { return node.get<double>(); }

    static const Node& elements(const Node& node) { return node; }
};

struct RapidJSON {
    using Node = rapidjson::Value;

    static const Node* member(const Node& node, const char* key) {
        const auto at = node.FindMember(key);
        return at == node.MemberEnd() ? nullptr : &at->value;
    }

    static std::string_view text(const Node& node) { return {node.GetString(), node.GetStringLength()}; }

    static double number(const Node& node) { return node.GetDouble(); }

    static auto elements(const Node& node) { return node.GetArray(); }
};

struct Boost {
    using Node = boost::json::value;

    static const Node* member(const Node& node, const char* key) { return node.get_object().if_contains(key); }

    static std::string_view text(const Node& node) {
        const auto& string = node.get_string();
        return {string.data(), string.size()};
    }

    static double number(const Node& node) { return node.to_number<double>(); }

    static const boost::json::array& elements(const Node& node) { return node.get_array(); }
};

template <class Tree>
struct Reader {
    using Node = typename Tree::Node;

    static void take(const Node& node, const char* key, std::string& out) {
        out = Tree::text(*Tree::member(node, key));
    }

    static void take(const Node& node, const char* key, links::Text& out) {
        if (const Node* found = Tree::member(node, key)) out = Tree::text(*found);
    }

    static void takeTags(const Node& node, std::vector<links::Tag>& out) {
        for (const auto& element : Tree::elements(*Tree::member(node, "tags"))) {
            auto& tag = out.emplace_back();
            take(element, "id", tag.id);
            take(element, "name", tag.name);
        }
    }

    static links::Link link(const Node& node) {
        links::Link out;
        take(node, "id", out.id);
        out.createdAt = links::dateOf(Tree::text(*Tree::member(node, "createdAt")));
        take(node, "destinationUrl", out.destinationUrl);
        take(node, "title", out.title);
        take(node, "description", out.description);
        take(node, "imageUrl", out.imageUrl);
        take(node, "slug", out.slug);
        take(*Tree::member(node, "domain"), "id", out.domain.id);
        take(*Tree::member(node, "domain"), "name", out.domain.name);
        take(node, "shortUrl", out.shortUrl);
        if (const Node* found = Tree::member(node, "clickCount")) out.clickCount = Tree::number(*found);
        takeTags(node, out.tags);
        take(node, "utmSource", out.utmSource);
        take(node, "utmMedium", out.utmMedium);
        take(node, "utmCampaign", out.utmCampaign);
        take(node, "utmTerm", out.utmTerm);
        take(node, "utmContent", out.utmContent);
        take(node, "iosRedirectUrl", out.iosRedirectUrl);
        take(node, "androidRedirectUrl", out.androidRedirectUrl);
        if (const Node* found = Tree::member(node, "regionRedirects")) {
            out.regionRedirects.emplace();
            for (const auto& element : Tree::elements(*found)) {
                auto& redirect = out.regionRedirects->emplace_back();
                take(element, "countryCode", redirect.countryCode);
                take(element, "url", redirect.url);
            }
        }
        if (const Node* found = Tree::member(node, "expireAt")) out.expireAt = links::dateOf(Tree::text(*found));
        take(node, "expirationRedirect", out.expirationRedirect);
        return out;
    }

    static links::History history(const Node& node) {
        links::History out;
        for (const auto& element : Tree::elements(*Tree::member(node, "links")))
            out.links.push_back(link(element));
        takeTags(node, out.tags);
        return out;
    }
};

template <class Object>
void put(Object& object, const char* key, const links::Text& value) {
    if (value) object[key] = *value;
}

nlohmann::json tree(const links::Tag& tag) {
    nlohmann::json out = nlohmann::json::object();
    put(out, "id", tag.id);
    out["name"] = tag.name;
    return out;
}

nlohmann::json tree(const links::Link& link) {
    nlohmann::json out = {
        {"id", link.id},
        {"createdAt", links::textOf(link.createdAt)},
        {"destinationUrl", link.destinationUrl},
        {"slug", link.slug},
        {"domain", {{"id", link.domain.id}, {"name", link.domain.name}}},
        {"shortUrl", link.shortUrl},
        {"tags", nlohmann::json::array()},
    };
    for (const auto& tag : link.tags)
        out["tags"].push_back(tree(tag));
    put(out, "title", link.title);
    put(out, "description", link.description);
    put(out, "imageUrl", link.imageUrl);
    if (link.clickCount) out["clickCount"] = *link.clickCount;
    put(out, "utmSource", link.utmSource);
    put(out, "utmMedium", link.utmMedium);
    put(out, "utmCampaign", link.utmCampaign);
    put(out, "utmTerm", link.utmTerm);
    put(out, "utmContent", link.utmContent);
    put(out, "iosRedirectUrl", link.iosRedirectUrl);
    put(out, "androidRedirectUrl", link.androidRedirectUrl);
    if (link.regionRedirects) {
        auto& redirects = out["regionRedirects"] = nlohmann::json::array();
        for (const auto& redirect : *link.regionRedirects)
            redirects.push_back({{"countryCode", redirect.countryCode}, {"url", redirect.url}});
    }
    if (link.expireAt) out["expireAt"] = links::textOf(*link.expireAt);
    put(out, "expirationRedirect", link.expirationRedirect);
    return out;
}

/// The least that writes this text: keys in order and layout known beforehand.
class HandWriter {
public:
    std::string out{};

    void open(char bracket) {
        out += bracket;
        ++depth_;
        isFirst_ = true;
    }

    void close(char bracket) {
        --depth_;
        if (!isFirst_) line();
        isFirst_ = false;
        out += bracket;
    }

    void next() {
        if (!isFirst_) out += ',';
        isFirst_ = false;
        line();
    }

    void key(std::string_view quoted) {
        next();
        out += quoted;
    }

    void string(std::string_view text) {
        static constexpr auto isPlain = [](char c) {
            return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\' && c != '/';
        };
        out += '"';
        std::size_t start = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (isPlain(text[i])) continue;
            out.append(text, start, i - start);
            out += '\\';
            out += text[i] == '\n' ? 'n' : text[i];
            start = i + 1;
        }
        out.append(text, start);
        out += '"';
    }

    void member(std::string_view quoted, std::string_view text) {
        key(quoted);
        string(text);
    }

    void memberIfAny(std::string_view quoted, const links::Text& text) {
        if (text) member(quoted, std::string_view(*text));
    }

    void number(double value) {
        char buffer[32];
        out.append(buffer, std::to_chars(std::begin(buffer), std::end(buffer), static_cast<long long>(value)).ptr);
    }

    void tags(const std::vector<links::Tag>& tags) {
        key("\"tags\": ");
        open('[');
        for (const auto& tag : tags) {
            next();
            open('{');
            memberIfAny("\"id\": ", tag.id);
            member("\"name\": ", tag.name);
            close('}');
        }
        close(']');
    }

private:
    void line() {
        out += '\n';
        out.append(2 * depth_, ' ');
    }

    std::size_t depth_ = 0;
    bool isFirst_ = true;
};

} // namespace

links::History decodeNlohmann(std::string_view json) {
    return Reader<Nlohmann>::history(nlohmann::json::parse(json));
}

links::History decodeRapidJSON(std::string_view json) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag>(
        json.data(), json.size()
    );
    return Reader<RapidJSON>::history(document);
}

links::History decodeBoost(std::string_view json) {
    boost::json::monotonic_resource memory;
    return Reader<Boost>::history(boost::json::parse({json.data(), json.size()}, &memory));
}

std::string encodeNlohmann(const links::History& history) {
    nlohmann::json out = {{"links", nlohmann::json::array()}, {"tags", nlohmann::json::array()}};
    for (const auto& link : history.links)
        out["links"].push_back(tree(link));
    for (const auto& tag : history.tags)
        out["tags"].push_back(tree(tag));
    return out.dump(2);
}

std::string encodeByHand(const links::History& history) {
    HandWriter writer;
    writer.open('{');
    writer.key("\"links\": ");
    writer.open('[');
    for (const auto& link : history.links) {
        writer.next();
        writer.open('{');
        writer.memberIfAny("\"androidRedirectUrl\": ", link.androidRedirectUrl);
        if (link.clickCount) {
            writer.key("\"clickCount\": ");
            writer.number(*link.clickCount);
        }
        writer.member("\"createdAt\": ", links::textOf(link.createdAt));
        writer.memberIfAny("\"description\": ", link.description);
        writer.member("\"destinationUrl\": ", link.destinationUrl);
        writer.key("\"domain\": ");
        writer.open('{');
        writer.member("\"id\": ", link.domain.id);
        writer.member("\"name\": ", link.domain.name);
        writer.close('}');
        writer.memberIfAny("\"expirationRedirect\": ", link.expirationRedirect);
        if (link.expireAt) writer.member("\"expireAt\": ", links::textOf(*link.expireAt));
        writer.member("\"id\": ", link.id);
        writer.memberIfAny("\"imageUrl\": ", link.imageUrl);
        writer.memberIfAny("\"iosRedirectUrl\": ", link.iosRedirectUrl);
        if (link.regionRedirects) {
            writer.key("\"regionRedirects\": ");
            writer.open('[');
            for (const auto& redirect : *link.regionRedirects) {
                writer.next();
                writer.open('{');
                writer.member("\"countryCode\": ", redirect.countryCode);
                writer.member("\"url\": ", redirect.url);
                writer.close('}');
            }
            writer.close(']');
        }
        writer.member("\"shortUrl\": ", link.shortUrl);
        writer.member("\"slug\": ", link.slug);
        writer.tags(link.tags);
        writer.memberIfAny("\"title\": ", link.title);
        writer.memberIfAny("\"utmCampaign\": ", link.utmCampaign);
        writer.memberIfAny("\"utmContent\": ", link.utmContent);
        writer.memberIfAny("\"utmMedium\": ", link.utmMedium);
        writer.memberIfAny("\"utmSource\": ", link.utmSource);
        writer.memberIfAny("\"utmTerm\": ", link.utmTerm);
        writer.close('}');
    }
    writer.close(']');
    writer.tags(history.tags);
    writer.close('}');
    return std::move(writer.out);
}

} // namespace peers

#pragma once

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sandbox {

/// Bodies keep the order in which their members were written, which reads better in a terminal.
using Json = nlohmann::ordered_json;

/// A request as the resources see it: routed, decoded, its body read.
struct Request {
    /// "GET" for HEAD, too: its answer is the same, and the server leaves the body out.
    std::string method;

    bool isHead = false;

    /// The path's segments, percent-decoded one by one, so that an escaped slash stays inside its segment.
    std::vector<std::string> path;

    /// What stood in the place of each "{}" of the route's template.
    std::vector<std::string> parameters;

    std::multimap<std::string, std::string> query;

    /// Names are in lower case; of a repeated field, the first.
    std::map<std::string, std::string, std::less<>> headers;

    std::string body;

    /// @param name in lower case.
    std::optional<std::string> header(std::string_view name) const;

    /// Of a repeated parameter, the first.
    std::optional<std::string> queryText(const std::string& name) const;

    /// Of a repeated parameter, all of them in their order.
    std::vector<std::string> queryTexts(const std::string& name) const;

    /// Where the caller reached the sandbox, such as "http://127.0.0.1:3000": the beginning of every address that it
    /// hands out for itself.
    std::string origin() const;
};

struct Response {
    int status = 200;

    /// Empty for an answer without a body.
    std::string body;

    std::vector<std::pair<std::string, std::string>> headers;

    /// Of the body, if there is one.
    std::string contentType = "application/json; charset=utf-8";

    static Response json(int status, const Json& body);
    static Response empty(int status);
};

} // namespace sandbox

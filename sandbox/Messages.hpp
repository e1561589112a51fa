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
    std::string method;

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
};

struct Response {
    int status = 200;

    /// JSON text; empty for an answer without a body.
    std::string body;

    std::vector<std::pair<std::string, std::string>> headers;

    static Response json(int status, const Json& body);
    static Response empty(int status);
};

} // namespace sandbox

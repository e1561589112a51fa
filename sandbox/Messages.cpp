#include "sandbox/Messages.hpp"

#include <nlohmann/json.hpp>

namespace sandbox {

std::optional<std::string> Request::header(std::string_view name) const {
    const auto found = headers.find(name);
    if (found == headers.end()) return std::nullopt;
    return found->second;
}

std::optional<std::string> Request::queryText(const std::string& name) const {
    const auto found = query.find(name);
    if (found == query.end()) return std::nullopt;
    return found->second;
}

std::vector<std::string> Request::queryTexts(const std::string& name) const {
    std::vector<std::string> texts;
    const auto [begin, end] = query.equal_range(name);
    for (auto parameter = begin; parameter != end; ++parameter) {
        texts.push_back(parameter->second);
    }
    return texts;
}

std::string Request::origin() const {
    return "http://" + header("host").value_or("127.0.0.1");
}

Response Response::json(int status, const Json& body) {
    // Texts may echo what the caller sent; what is not UTF-8 in them is replaced rather than refused.
    return Response{.status = status, .body = body.dump(-1, ' ', false, Json::error_handler_t::replace), .headers = {}};
}

Response Response::empty(int status) {
    return Response{.status = status, .body = {}, .headers = {}};
}

} // namespace sandbox

#include "sandbox/Body.hpp"

#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

namespace sandbox {

Body::Body(const Request& request) {
    if (request.body.empty()) throw Problem::badRequest("The request needs a JSON body.");
    object_ = std::make_unique<const Json>(Json::parse(request.body, nullptr, /*allow_exceptions=*/false));
    if (object_->is_discarded()) throw Problem::badRequest("The body is not JSON.");
    if (!object_->is_object()) throw Problem::badRequest("The body is not a JSON object.");
}

Body::~Body() = default;

std::string Body::text(const char* key) const {
    if (auto text = optionalText(key)) return *text;
    throw Problem::badRequest("\"" + std::string(key) + "\" is required.");
}

std::optional<std::string> Body::optionalText(const char* key) const {
    const auto found = object_->find(key);
    if (found == object_->end() || found->is_null()) return std::nullopt;
    if (!found->is_string()) throw Problem::badRequest("\"" + std::string(key) + "\" must be a text.");
    return found->get<std::string>();
}

} // namespace sandbox

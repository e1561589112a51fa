#include "sandbox/Body.hpp"

#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace sandbox {

Body::Body(const Request& request) {
    if (request.body.empty()) throw Problem::badRequest("The request needs a JSON body.");
    object_ = std::make_shared<const Json>(Json::parse(request.body, nullptr, /*allow_exceptions=*/false));
    if (object_->is_discarded()) throw Problem::badRequest("The body is not JSON.");
    if (!object_->is_object()) throw Problem::badRequest("The body is not a JSON object.");
}

Body::Body(std::shared_ptr<const Json> object)
    : object_(std::move(object)) {}

const Json* Body::find(const char* key) const {
    const auto found = object_->find(key);
    return found == object_->end() || found->is_null() ? nullptr : &*found;
}

std::string Body::text(const char* key) const {
    if (auto text = optionalText(key)) return *text;
    throw Problem::badRequest("\"" + std::string(key) + "\" is required.");
}

std::optional<std::string> Body::optionalText(const char* key) const {
    const Json* const member = find(key);
    if (!member) return std::nullopt;
    if (!member->is_string()) throw Problem::badRequest("\"" + std::string(key) + "\" must be a text.");
    return member->get<std::string>();
}

std::vector<std::string> Body::texts(const char* key) const {
    const Json* const member = find(key);
    const auto isText = [](const Json& element) { return element.is_string(); };
    if (!member || !member->is_array() || !std::all_of(member->begin(), member->end(), isText)) {
        throw Problem::badRequest("\"" + std::string(key) + "\" must be a list of texts.");
    }
    return member->get<std::vector<std::string>>();
}

std::optional<std::int64_t> Body::optionalInteger(const char* key, std::int64_t least) const {
    const Json* const member = find(key);
    if (!member) return std::nullopt;
    if (!member->is_number_integer() || member->get<std::int64_t>() < least) {
        throw Problem::badRequest(
            "\"" + std::string(key) + "\" must be an integer of at least " + std::to_string(least) + "."
        );
    }
    return member->get<std::int64_t>();
}

std::optional<std::vector<Body>> Body::optionalObjects(const char* key) const {
    const Json* const member = find(key);
    if (!member) return std::nullopt;
    const auto refuse = [key] { throw Problem::badRequest("\"" + std::string(key) + "\" must be a list of objects."); };
    if (!member->is_array()) refuse();
    std::vector<Body> objects;
    for (const Json& element : *member) {
        if (!element.is_object()) refuse();
        objects.push_back(Body(std::shared_ptr<const Json>(object_, &element)));
    }
    return objects;
}

} // namespace sandbox

#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

namespace sandbox {

namespace {

const char* wireText(ErrorCode code) {
    switch (code) {
    case ErrorCode::linkLimitReached:
        return "LINK_LIMIT_REACHED";
    case ErrorCode::customDomainLimitReached:
        return "CUSTOM_DOMAIN_LIMIT_REACHED";
    case ErrorCode::domainSettingsNotAvailable:
        return "DOMAIN_SETTINGS_NOT_AVAILABLE";
    }
    return "";
}

} // namespace

Problem::Problem(int status, const std::string& description, std::optional<ErrorCode> code)
    : std::runtime_error(description)
    , status_(status)
    , code_(code) {}

Problem Problem::badRequest(const std::string& description) {
    return {400, description};
}

Problem Problem::unauthorized(const std::string& description) {
    return {401, description};
}

Problem Problem::notFound(const std::string& description) {
    return {404, description};
}

Problem Problem::conflict(const std::string& description) {
    return {409, description};
}

Response Problem::response() const {
    Json body;
    if (code_) body["code"] = wireText(*code_);
    body["errorDescription"] = what();
    Response response = Response::json(status_, body);
    // RFC 9110, section 11.6.1: a 401 names the scheme that would be accepted.
    if (status_ == 401) response.headers.emplace_back("WWW-Authenticate", "Bearer");
    return response;
}

} // namespace sandbox

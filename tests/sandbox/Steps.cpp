#include "tests/sandbox/Steps.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <stdexcept>

namespace {

using Json = nlohmann::json;

std::string filled(std::string text, const Names& names) {
    for (const auto& [name, value] : names) {
        for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size())) {
            text.replace(at, name.size(), value);
        }
    }
    return text;
}

} // namespace

Caller::Caller(const SandboxProcess& sandbox)
    : Caller(sandbox, sandbox.key()) {}

Caller::Caller(const SandboxProcess& sandbox, const std::string& key)
    : client_(sandbox.address()) {
    client_.set_keep_alive(true);
    client_.set_tcp_nodelay(true);
    client_.set_default_headers({{"Authorization", "Bearer " + key}});
}

httplib::Response Caller::call(
    const std::string& method, const std::string& path, const std::string& body, const httplib::Headers& headers
) {
    httplib::Request request;
    request.method = method;
    request.path = path.starts_with('/') ? path : path.substr(path.find('/', path.find("//") + 2));
    request.body = body;
    request.headers = headers;
    const httplib::Result result = client_.send(request);
    if (!result) throw std::runtime_error(method + " " + path + ": " + httplib::to_string(result.error()));
    return *result;
}

bool matches(const Json& pattern, const Json& value) {
    if (pattern == "*") return value.is_string() && !value.get<std::string>().empty();
    if (pattern.is_number() && value.is_number()) return pattern == value;
    if (pattern.type() != value.type() || pattern.size() != value.size()) return false;
    if (!pattern.is_structured()) return pattern == value;
    for (const auto& [key, member] : pattern.items()) {
        if (pattern.is_object() && !value.contains(key)) return false;
        if (!matches(member, pattern.is_object() ? value[key] : value[std::stoul(key)])) return false;
    }
    return true;
}

void runSteps(Caller& caller, const std::vector<Step>& steps, Names& names) {
    for (const Step& step : steps) {
        SCOPED_TRACE(std::string(step.what) + ": " + step.method + " " + step.path);
        const httplib::Response response =
            caller.call(step.method, filled(step.path, names), filled(step.body, names), step.headers);
        EXPECT_EQ(response.status, step.status) << response.body;
        if (step.answer == "*" && step.keep.empty()) continue;
        if (step.answer.empty()) {
            EXPECT_EQ(response.body, "");
            continue;
        }
        EXPECT_EQ(response.get_header_value("Content-Type"), "application/json; charset=utf-8");
        const Json answer = Json::parse(response.body, nullptr, /*allow_exceptions=*/false);
        for (const auto& [name, pointer] : step.keep) {
            const Json::json_pointer place(pointer);
            ASSERT_TRUE(answer.contains(place)) << response.body;
            names[name] = answer[place];
        }
        if (step.answer == "*") continue;
        EXPECT_TRUE(matches(Json::parse(filled(step.answer, names)), answer)) << response.body;
    }
}

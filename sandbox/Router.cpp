#include "sandbox/Router.hpp"

#include "sandbox/Development.hpp"
#include "sandbox/Problem.hpp"

#include <cstdio>
#include <optional>
#include <utility>

namespace sandbox {

namespace {

std::vector<std::string> split(std::string_view path) {
    std::vector<std::string> segments;
    std::size_t start = path.starts_with('/') ? 1 : 0;
    while (start <= path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        segments.emplace_back(path.substr(start, end - start));
        start = end + 1;
    }
    return segments;
}

int hexadecimal(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        const int high = i + 1 < text.size() ? hexadecimal(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? hexadecimal(text[i + 2]) : -1;
        if (high < 0 || low < 0) throw Problem::badRequest("The path holds a broken percent-escape.");
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

std::optional<std::vector<std::string>>
match(const std::vector<std::string>& segments, const std::vector<std::string>& path) {
    if (segments.size() != path.size()) return std::nullopt;
    std::vector<std::string> parameters;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (segments[i] == "{}" && !path[i].empty()) {
            parameters.push_back(path[i]);
        } else if (segments[i] != path[i]) {
            return std::nullopt;
        }
    }
    return parameters;
}

} // namespace

void Router::add(std::string method, std::string_view pathTemplate, Handler handler) {
    routes_.push_back({std::move(method), split(pathTemplate), std::move(handler)});
}

Response Router::dispatch(Request request, std::string_view target) const {
    try {
        if (auto response = responseByHeader(request)) return *std::move(response);
        return route(request, target);
    } catch (const Problem& problem) {
        return problem.response();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillbeam-sandbox: %s\n", error.what());
        return Problem(500, "The sandbox failed; its standard error output tells more.").response();
    }
}

Response Router::route(Request& request, std::string_view target) const {
    for (const std::string& segment : split(target.substr(0, target.find_first_of("?#")))) {
        request.path.push_back(percentDecoded(segment));
    }
    // A literal segment wins over a parameter ("/links/public" over "/links/{}"), whatever the order of the routes.
    const Route* found = nullptr;
    std::string allowed;
    for (const Route& route : routes_) {
        auto parameters = match(route.segments, request.path);
        if (!parameters) continue;
        if (route.method != request.method) {
            allowed += (allowed.empty() ? "" : ", ") + route.method;
        } else if (!found || parameters->size() < request.parameters.size()) {
            found = &route;
            request.parameters = *std::move(parameters);
        }
    }
    if (found) {
        return database_->transaction([&](Session& session) { return found->handler(session, request); });
    }
    if (allowed.empty()) throw Problem::notFound("There is nothing at this path.");
    Response response = Problem(405, "This path does not answer to " + request.method + ".").response();
    response.headers.emplace_back("Allow", allowed);
    return response;
}

} // namespace sandbox

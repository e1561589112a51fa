#pragma once

#include "sandbox/Database.hpp"
#include "sandbox/Messages.hpp"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

/// Answers one request inside one transaction; throws Problem to refuse it.
using Handler = std::function<Response(Session&, const Request&)>;

/// Finds the handler of a method and path, runs it in a transaction and turns every failure into an error answer.
/// Distinct requests may be dispatched at the same time once all routes are added.
class Router {
public:
    explicit Router(Database& database)
        : database_(&database) {}

    /// @param pathTemplate such as "/domains/{}"; each "{}" matches one segment that is not empty.
    void add(std::string method, std::string_view pathTemplate, Handler handler);

    /// @param target the request's path and query as they came; fills the request's `path` and `parameters`.
    Response dispatch(Request request, std::string_view target) const;

private:
    struct Route {
        std::string method;
        std::vector<std::string> segments;
        Handler handler;
    };

    Response route(Request& request, std::string_view target) const;

    Database* database_;
    std::vector<Route> routes_;
};

} // namespace sandbox

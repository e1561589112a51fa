#include "sandbox/Pages.hpp"

#include "sandbox/Identifiers.hpp"
#include "sandbox/Problem.hpp"

#include <utility>

namespace sandbox {

std::string openPage(
    Session& database,
    const Request& request,
    const std::string& kind,
    const std::string& account,
    const std::optional<std::string>& redirect,
    const std::optional<std::string>& priceID
) {
    const std::string token = makeIdentifier("page", 20);
    database.execute(
        "INSERT INTO pages (token, kind, account_id, redirect, price_id) VALUES (?, ?, ?, ?, ?)",
        {token, kind, account, valueOf(redirect), valueOf(priceID)}
    );
    return request.origin() + "/" + kind + "/" + token;
}

Page requirePage(Session& database, const Request& request, const std::string& kind) {
    const auto row = database.first(
        "SELECT token, account_id, redirect, price_id, is_done FROM pages WHERE token = ? AND kind = ?",
        {request.parameters.at(0), kind}
    );
    if (!row) throw Problem::notFound("There is nothing at this path.");
    return Page{row->text(0), row->text(1), row->optionalText(2), row->optionalText(3), row->integer(4) != 0};
}

Response htmlResponse(const std::string& title, const std::string& body) {
    constexpr const char* style =
        "body{font:1rem/1.5 sans-serif;max-width:32rem;margin:4rem auto;padding:0 1rem}label{display:block}";
    Response response = Response::empty(200);
    response.contentType = "text/html; charset=utf-8";
    response.headers.emplace_back("Cache-Control", "no-store");
    response.body = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>" + escaped(title) +
                    "</title><style>" + style + "</style></head>\n<body><h1>" + escaped(title) + "</h1>\n" + body +
                    "</body></html>\n";
    return response;
}

Response seeSamePage(const Request& request) {
    std::string path;
    for (const std::string& segment : request.path) {
        path += "/" + segment;
    }
    Response response = Response::empty(303);
    response.headers.emplace_back("Location", std::move(path));
    return response;
}

std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        case '\'':
            result += "&#39;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

} // namespace sandbox

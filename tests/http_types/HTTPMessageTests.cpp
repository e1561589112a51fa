#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using Method = HTTPRequest::Method;
using Status = HTTPResponse::Status;
using Strategy = HTTPField::DynamicTableIndexingStrategy;

TEST(HTTPRequestMethod, IsATokenWithRegardToCase) {
    EXPECT_EQ(Method::make("GET"), Method::get);
    EXPECT_EQ(Method::make("DELETE"), Method::_delete);
    EXPECT_NE(Method::make("get").value(), Method::get);
    EXPECT_EQ(Method::make("PROPFIND").value().description(), "PROPFIND");
    for (const std::string_view bad : {"", "G T", "GÉT", "GET\n", "a:b"}) {
        EXPECT_FALSE(Method::make(bad)) << bad;
    }
}

TEST(HTTPRequest, SplitsThePath) {
    struct Case {
        std::optional<std::string_view> path;
        std::string_view pathOnly;
        std::optional<std::string> query;
    };

    const std::vector<Case> cases{
        {"/a?b=1#c", "/a", "b=1"},
        {"/a#c", "/a", std::nullopt},
        {"/a", "/a", std::nullopt},
        {std::nullopt, "", std::nullopt},
        {"/a?", "/a", ""},
        {"/a?b?c", "/a", "b?c"},
        {"?#", "", ""},
        {"/a#b?c", "/a#b", std::nullopt},
    };
    for (const Case& c : cases) {
        const HTTPRequest request(Method::get, std::nullopt, std::nullopt, c.path);
        EXPECT_EQ(request.soar_pathOnly(), c.pathOnly);
        EXPECT_EQ(request.soar_query(), c.query);
    }
}

TEST(HTTPRequest, SettersKeepTheStrategyOfAPresentField) {
    HTTPRequest request(Method::post, "https", std::nullopt, "/a\nb");
    EXPECT_EQ(request.path(), "/a b");
    EXPECT_EQ(request.scheme(), "https");
    EXPECT_EQ(request.authority(), std::nullopt);
    HTTPField path = request.pseudoHeaderFields.path().value();
    path.indexingStrategy = Strategy::avoid;
    request.pseudoHeaderFields.setPath(path);
    request.setPath("/c");
    EXPECT_EQ(request.pseudoHeaderFields.path()->indexingStrategy, Strategy::avoid);
    EXPECT_NE(request, HTTPRequest(Method::post, "https", std::nullopt, "/c"));
    request.setPath(std::nullopt);
    request.setPath("/c");
    EXPECT_EQ(request, HTTPRequest(Method::post, "https", std::nullopt, "/c"));
    request.setMethod(Method::make("BREW").value());
    EXPECT_EQ(request.method().rawValue(), "BREW");
    request.setAuthority("example.com");
    request.setExtendedConnectProtocol("websocket");
    EXPECT_EQ(request.extendedConnectProtocol(), "websocket");
    EXPECT_EQ(request.debugDescription(), "(BREW) https://example.com/c");
    EXPECT_NE(HTTPRequest("a", Method::get), HTTPRequest(Method::get, std::nullopt, "a", std::nullopt));
}

TEST(HTTPRequestDeathTest, RefusesAForeignPseudoField) {
    HTTPRequest request("/", Method::get);
    const HTTPField method = request.pseudoHeaderFields.method();
    EXPECT_DEATH(request.pseudoHeaderFields.setPath(method), "Expected the pseudo header field :path, got :method");
    EXPECT_DEATH(request.headerFields.append(method), "no pseudo header fields: :method");
    EXPECT_DEATH(request.headerFields = HTTPFields{method}, "no pseudo header fields: :method");
    HTTPField bad = method;
    bad.setValue("G T");
    EXPECT_DEATH(request.pseudoHeaderFields.setMethod(bad), "Not a valid method: G T");
}

TEST(HTTPResponseStatus, ClassesAndPhrases) {
    struct Range {
        int first, last;
        Status::Kind kind;
    };

    for (const Range& range : std::vector<Range>{
             {0, 99, Status::Kind::invalid},
             {100, 199, Status::Kind::informational},
             {200, 299, Status::Kind::successful},
             {300, 399, Status::Kind::redirection},
             {400, 499, Status::Kind::clientError},
             {500, 599, Status::Kind::serverError},
             {600, 999, Status::Kind::invalid}
         }) {
        EXPECT_EQ(Status(range.first).kind(), range.kind);
        EXPECT_EQ(Status(range.last).kind(), range.kind);
    }
    EXPECT_EQ(Status(404, "x"), Status::notFound);
    EXPECT_EQ(Status::unavailableForLegalReasons.description(), "451 Unavailable For Legal Reasons");
    EXPECT_EQ(Status(404, "Not Found").reasonPhrase().data(), Status::notFound.reasonPhrase().data());

    struct Phrase {
        std::string_view given, kept;
    };

    for (const Phrase& phrase : std::vector<Phrase>{
             {"a\nb", "a b"},
             {"a€", "a€"},
             {"a€\nb", "a  b"},
             {"é\x7F\tÿ\U0001F600", "é \tÿ "},
             {"Ā\n", "  "},
             {"\xFF", "\uFFFD"},
             {"", ""}
         }) {
        EXPECT_EQ(Status(404, phrase.given).reasonPhrase(), phrase.kept);
    }
    EXPECT_DEATH(Status(1000), "at most three digits: 1000");
    EXPECT_DEATH(Status(-1), "at most three digits: -1");
}

TEST(HTTPResponse, CarriesItsStatusAsThreeDigits) {
    HTTPResponse response(45);
    EXPECT_EQ(response.pseudoHeaderFields.status().description(), ":status: 045");
    EXPECT_EQ(response.status().code(), 45);
    EXPECT_EQ(response.debugDescription(), "45 ");
    HTTPField status = response.pseudoHeaderFields.status();
    status.indexingStrategy = Strategy::prefer;
    response.pseudoHeaderFields.setStatus(status);
    response.setStatus(Status(404, "Gone fishing"));
    EXPECT_EQ(response.pseudoHeaderFields.status().indexingStrategy, Strategy::prefer);
    EXPECT_EQ(response.debugDescription(), "404 Gone fishing");
    EXPECT_EQ(response.status().reasonPhrase(), "Gone fishing");
    EXPECT_EQ(HTTPResponse(Status(404, "x")), HTTPResponse(Status::notFound));
    status.setValue("20");
    EXPECT_DEATH(response.pseudoHeaderFields.setStatus(status), "Not a valid status code: 20");
}

TEST(HTTPMessages, CanBeAskedAfterTheyWereMovedFrom) {
    HTTPRequest request(HTTPRequest::Method::post, "https", "e.com", "/");
    HTTPResponse response(HTTPResponse::Status::notFound);
    const HTTPRequest takenRequest = std::move(request);
    const HTTPResponse takenResponse = std::move(response);
    // NOLINTBEGIN(bugprone-use-after-move)
    EXPECT_FALSE(request.debugDescription().empty());
    EXPECT_FALSE(response.debugDescription().empty());
    // NOLINTEND(bugprone-use-after-move)
    EXPECT_EQ(takenResponse.status(), HTTPResponse::Status::notFound);
}

TEST(HTTPMessages, PrettyDescriptions) {
    const HTTPFields fields{{HTTPField::Name::contentType, "b"}, {HTTPField::Name::accept, "a"}};
    EXPECT_EQ(HTTPRequest("/x?y", Method::get, fields).prettyDescription(), "GET /x?y [accept: a; content-type: b]");
    EXPECT_EQ(HTTPRequest().prettyDescription(), "GET <nil> []");
    EXPECT_EQ(HTTPResponse(Status::ok, fields).prettyDescription(), "200 [accept: a; content-type: b]");
}

} // namespace

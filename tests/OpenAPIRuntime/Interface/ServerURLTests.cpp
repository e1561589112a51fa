#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Interface/ServerURL.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using OpenAPIRuntime::RuntimeError;
using OpenAPIRuntime::ServerVariable;
using OpenAPIRuntime::validatingOpenAPIServerURL;

TEST(ServerURL, ReplacesVariablesAndChecksThem) {
    struct Case {
        std::string text;
        std::vector<ServerVariable> variables;
        std::string expected; ///< the URL, or the text of the error
    };

    using List = std::vector<std::string>;
    const std::vector<Case> cases = {
        {"https://host.example/v1", {}, "https://host.example/v1"},
        {"s://{h}/p", {{"h", "x", List{"x", "y"}}}, "s://x/p"},
        {"s://{h}/p",
         {{"h", "z", List{"x", "y"}}},
         "Invalid server variable named: 'h', which has the value: 'z', but the only allowed values are: x, y"},
        {"s://h/p",
         {{"unused", "z", List{}}},
         "Invalid server variable named: 'unused', which has the value: 'z', but the only allowed values are: "},
        {"s://{a}/{b}/{a}", {{"a", "h"}, {"b", "q"}}, "s://h/q/h"},
        {"s://h/{a}", {{"a", "x-{a}"}, {"a", "y"}}, "s://h/x-y"},
        {"s://h/{a}", {{"a", "1{b}"}, {"b", "2"}}, "s://h/12"},
        {"s://{h}/p", {}, "Invalid server URL: s://{h}/p"},
        {"not a url", {}, "Invalid server URL: not a url"},
    };
    for (const auto& [text, variables, expected] : cases) {
        SCOPED_TRACE(text);
        try {
            EXPECT_EQ(validatingOpenAPIServerURL(text, variables).absoluteString(), expected);
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.description(), expected);
        }
    }
    EXPECT_THROW((void)validatingOpenAPIServerURL("a b"), RuntimeError);
    EXPECT_EQ(OpenAPIRuntime::defaultOpenAPIServerURL().absoluteString(), "/");
}

} // namespace

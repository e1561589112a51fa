#pragma once

#include "tests/sandbox/SandboxProcess.hpp"

#include <httplib.h>
#include <nlohmann/json_fwd.hpp>

#include <map>
#include <string>
#include <vector>

/// One kept-alive connection with a key.
class Caller {
public:
    explicit Caller(const SandboxProcess& sandbox);
    Caller(const SandboxProcess& sandbox, const std::string& key);

    /// @param path also a whole address of the sandbox, as its answers give them.
    /// @throws std::runtime_error if no answer comes.
    httplib::Response call(
        const std::string& method,
        const std::string& path,
        const std::string& body = "",
        const httplib::Headers& headers = {}
    );

private:
    httplib::Client client_;
};

/// Whether the value is the pattern, in which the text "*" stands for any text that is not empty.
bool matches(const nlohmann::json& pattern, const nlohmann::json& value);

/// Texts by the names that stand for them in steps, such as "{id}".
using Names = std::map<std::string, std::string>;

/// A request and what must come back. Names in the path, body and answer stand for their texts.
struct Step {
    const char* what;
    std::string method, path, body;
    int status;

    /// A pattern for a JSON body; empty for no body, "*" for anything.
    std::string answer;
    httplib::Headers headers = {};

    /// Names for parts of the answer, given as JSON pointers.
    Names keep = {};
};

/// Takes the steps one after the other and expects each answer.
void runSteps(Caller& caller, const std::vector<Step>& steps, Names& names);

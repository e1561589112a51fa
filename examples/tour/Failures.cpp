#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "examples/tour/Chapters.hpp"

#include <exception>

namespace examples {

namespace {

using OpenAPIRuntime::ClientError;

constexpr std::size_t longestShownBody = 4096;

std::string textOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "unknown";
    }
}

void showFailure(Report& report, const ClientError& error) {
    report.detail("operationID", error.operationID);
    report.detail("cause", error.causeDescription);
    report.detail("underlying", textOf(error.underlyingError));
    report.detail("baseURL", error.baseURL ? error.baseURL->absoluteString() : "none");
    report.detail("request", error.request ? error.request->prettyDescription() : "none");
    report.detail("response", error.response ? error.response->prettyDescription() : "none");
}

} // namespace

Task<void> meetFailures(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("What can go wrong");

    report.step("Call without a key");
    auto keyless = co_await guide->keyless.getDomains();
    guide->show(Operations::getDomains::id, keyless, 401);
    guide->showError(keyless.unauthorized().body.json());

    report.step("Meet a status that the service does not document: a result like any other");
    auto strange = co_await guide->undocumented.getDomains();
    guide->show(Operations::getDomains::id, strange, 418);
    if (const auto* undocumented = strange.getIf<QuillbeamAPI::Undocumented>()) {
        for (const HTTPField& field : undocumented->payload.headerFields) {
            report.detail("header field", std::string(field.name.rawName()) + ": " + field.value());
        }
        if (undocumented->payload.body) {
            const HTTPBody body = *undocumented->payload.body;
            auto text = co_await OpenAPIRuntime::collect<std::string>(body, longestShownBody);
            report.detail("body", text);
        }
    } else {
        report.mismatch("the status passed for a documented one");
    }

    report.step("Call a server that is gone: the one error that a call throws tells all of it");
    std::optional<ClientError> failure;
    try {
        auto impossible = co_await guide->unreachable.getDomains();
        report.mismatch("somebody answered with status " + std::to_string(impossible.statusCode()));
    } catch (const ClientError& error) {
        failure = error;
    }
    if (failure) {
        report.failedCall(failure->operationID, guide->trace->latest());
        showFailure(report, *failure);
    }
}

} // namespace examples

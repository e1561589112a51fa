#pragma once

#include "sandbox/Messages.hpp"

#include <optional>
#include <stdexcept>
#include <string>

namespace sandbox {

/// The codes that an error body may carry beside its description.
enum class ErrorCode { linkLimitReached, customDomainLimitReached, domainSettingsNotAvailable };

/// Why a request is refused. Thrown by whoever finds out; it undoes the request's transaction and becomes the answer.
class Problem : public std::runtime_error {
public:
    Problem(int status, const std::string& description, std::optional<ErrorCode> code = std::nullopt);

    static Problem badRequest(const std::string& description);
    static Problem unauthorized(const std::string& description);
    static Problem notFound(const std::string& description);
    static Problem conflict(const std::string& description);

    /// The answer with the service's error body; the one place that writes it.
    Response response() const;

private:
    int status_;
    std::optional<ErrorCode> code_;
};

} // namespace sandbox

#pragma once

#include "sandbox/Messages.hpp"

#include <memory>
#include <optional>
#include <string>

namespace sandbox {

/// A request's JSON object, read member by member; everything that is wrong with it is a Problem with status 400.
/// Members that nobody asks for are ignored.
class Body {
public:
    /// @throws Problem if the body is missing or is not one JSON object.
    explicit Body(const Request& request);
    ~Body();

    /// @throws Problem if the member is missing, null or not a text.
    std::string text(const char* key) const;

    /// @return nothing if the member is missing or null.
    /// @throws Problem if the member is not a text.
    std::optional<std::string> optionalText(const char* key) const;

private:
    std::unique_ptr<const Json> object_;
};

} // namespace sandbox

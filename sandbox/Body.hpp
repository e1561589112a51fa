#pragma once

#include "sandbox/Messages.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sandbox {

/// A request's JSON object, read member by member; everything that is wrong with it is a Problem with status 400.
/// Members that nobody asks for are ignored.
class Body {
public:
    /// @throws Problem if the body is missing or is not one JSON object.
    explicit Body(const Request& request);

    /// @throws Problem if the member is missing, null or not a text.
    std::string text(const char* key) const;

    /// @return nothing if the member is missing or null.
    /// @throws Problem if the member is not a text.
    std::optional<std::string> optionalText(const char* key) const;

    /// @throws Problem if the member is missing, null or not a list of texts.
    std::vector<std::string> texts(const char* key) const;

    /// @return nothing if the member is missing or null.
    /// @throws Problem if the member is not an integer of at least `least`.
    std::optional<std::int64_t> optionalInteger(const char* key, std::int64_t least) const;

    /// @return nothing if the member is missing or null.
    /// @throws Problem if the member is not a list of objects.
    std::optional<std::vector<Body>> optionalObjects(const char* key) const;

private:
    explicit Body(std::shared_ptr<const Json> object);
    const Json* find(const char* key) const;

    // An object within a body shares the whole: a copy of deeply nested JSON would recurse until the stack ends.
    std::shared_ptr<const Json> object_;
};

} // namespace sandbox

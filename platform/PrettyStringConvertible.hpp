#pragma once

#include "platform/Export.hpp"

#include <exception>
#include <string>

namespace platform::inline v1 {

/// The interface of everything that offers a diagnostic text of one line, made for logs and for the texts of errors.
///
/// Errors implement it beside `std::exception`. Value types that are no errors (message heads, bodies) have a plain
/// member function `prettyDescription()` of the same meaning and stay without a virtual table.
class QUILLBEAM_EXPORT PrettyStringConvertible {
public:
    virtual ~PrettyStringConvertible();

    /// The diagnostic text: one line, for people, without secrets beyond what the value itself shows.
    [[nodiscard]] virtual std::string prettyDescription() const = 0;

protected:
    PrettyStringConvertible() = default;
    PrettyStringConvertible(const PrettyStringConvertible&) = default;
    PrettyStringConvertible& operator=(const PrettyStringConvertible&) = default;
};

/// The diagnostic text of a travelling error: its `prettyDescription()` where it implements `PrettyStringConvertible`,
/// else its `what()`, else "unknown error" for something that is not a `std::exception`. The text of no error at all is
/// "<nil>".
[[nodiscard]] QUILLBEAM_EXPORT std::string prettyDescription(const std::exception_ptr& error);

/// The text that an error gives for itself: `what()` of a `std::exception`, "unknown error" for anything else, "<nil>"
/// for no error at all.
[[nodiscard]] QUILLBEAM_EXPORT std::string localizedDescription(const std::exception_ptr& error);

} // namespace platform::inline v1

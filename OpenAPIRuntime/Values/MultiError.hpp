#pragma once

#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"

#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// Several errors that led to one failure: why each schema of a one-of did not fit, for example.
///
/// `what()` and `prettyDescription()` give the same line: "MultiError (contains 2 errors): Error 1: [...], Error 2:
/// [...]", where the text of each error is the one that `platform::localizedDescription` tells.
///
/// Copying shares the contents and never throws; `what()` never allocates.
///
/// Thread safety: distinct objects: safe; shared objects: safe, they are immutable.
class QUILLBEAM_EXPORT MultiError final : public std::exception, public platform::PrettyStringConvertible {
public:
    explicit MultiError(std::vector<std::exception_ptr> errors);

    [[nodiscard]] const std::vector<std::exception_ptr>& errors() const noexcept;

    [[nodiscard]] const char* what() const noexcept override;
    [[nodiscard]] std::string prettyDescription() const override;

private:
    struct Contents;
    std::shared_ptr<const Contents> contents_;
};

} // namespace OpenAPIRuntime::inline v1

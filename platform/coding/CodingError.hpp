#pragma once

#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"
#include "platform/coding/CodingPath.hpp"

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace platform::inline v1 {

/// Where and why coding failed.
struct QUILLBEAM_EXPORT CodingErrorContext {
    CodingPath codingPath{};              ///< the way to the value that failed
    std::string debugDescription{};       ///< what is wrong with it, one sentence for people
    std::exception_ptr underlyingError{}; ///< what made it fail, where that was an error itself

    CodingErrorContext() = default;

    explicit CodingErrorContext(
        CodingPath codingPath_, std::string debugDescription_, std::exception_ptr underlyingError_ = nullptr
    )
        : codingPath(std::move(codingPath_))
        , debugDescription(std::move(debugDescription_))
        , underlyingError(std::move(underlyingError_)) {}

    /// "at a/0/b: what is wrong (underlying error: <nil>)".
    [[nodiscard]] std::string description() const;
};

/// A value could not be read from its coded form.
///
/// Copies share their contents and never throw. `what()` and `prettyDescription()` give the same line, such as
/// "DecodingError: keyNotFound name - at domain: No value associated with key 'name'. (underlying error: <nil>)".
///
/// Thread safety: distinct objects: safe.
class QUILLBEAM_EXPORT DecodingError final : public std::exception, public PrettyStringConvertible {
public:
    enum class Kind {
        typeMismatch,  ///< the coded value is of another kind than the type
        valueNotFound, ///< a value is needed and there is null, or nothing more
        keyNotFound,   ///< a required member is missing
        dataCorrupted, ///< the text is malformed, or the value is none that the type can hold
    };

    [[nodiscard]] static DecodingError typeMismatch(std::string typeName, CodingErrorContext context);
    [[nodiscard]] static DecodingError valueNotFound(std::string typeName, CodingErrorContext context);
    [[nodiscard]] static DecodingError keyNotFound(CodingKey key, CodingErrorContext context);
    [[nodiscard]] static DecodingError dataCorrupted(CodingErrorContext context);

    [[nodiscard]] Kind kind() const noexcept;
    [[nodiscard]] const CodingErrorContext& context() const noexcept;

    /// The name of the type that was asked for; empty unless the kind is `typeMismatch` or `valueNotFound`.
    [[nodiscard]] const std::string& typeName() const noexcept;

    /// The missing key; none unless the kind is `keyNotFound`.
    [[nodiscard]] const std::optional<CodingKey>& key() const noexcept;

    [[nodiscard]] const char* what() const noexcept override;
    [[nodiscard]] std::string prettyDescription() const override;

private:
    struct Contents;
    explicit DecodingError(std::shared_ptr<const Contents> contents) noexcept;

    std::shared_ptr<const Contents> contents_;
};

/// A value has no coded form.
///
/// Copies share their contents and never throw. `what()` and `prettyDescription()` give the same line.
///
/// Thread safety: distinct objects: safe.
class QUILLBEAM_EXPORT EncodingError final : public std::exception, public PrettyStringConvertible {
public:
    enum class Kind {
        invalidValue, ///< the value itself cannot be coded
    };

    [[nodiscard]] static EncodingError invalidValue(AnyValue value, CodingErrorContext context);

    [[nodiscard]] Kind kind() const noexcept { return Kind::invalidValue; }

    [[nodiscard]] const CodingErrorContext& context() const noexcept;

    /// The value that has no coded form.
    [[nodiscard]] const AnyValue& value() const noexcept;

    [[nodiscard]] const char* what() const noexcept override;
    [[nodiscard]] std::string prettyDescription() const override;

private:
    struct Contents;
    explicit EncodingError(std::shared_ptr<const Contents> contents) noexcept;

    std::shared_ptr<const Contents> contents_;
};

} // namespace platform::inline v1

#pragma once

#include "http_types/HTTPField.hpp"
#include "http_types/HTTPFields.hpp"
#include "http_types/detail/SharedText.hpp"
#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <array>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace HTTPTypes::inline v1 {

/// The head of a response: its status and its header fields. The body travels beside it.
///
/// Thread safety: distinct objects may be used from different threads; a shared one may be read by several at once.
class QUILLBEAM_EXPORT HTTPResponse {
public:
    /// A status: a code of at most three digits, and a reason phrase that is for people only. Equality and hash go by
    /// the code alone.
    class QUILLBEAM_EXPORT Status {
    public:
        /// The class of a status by its code (RFC 9110, section 15): 100 to 199, and so on to 599; all others are
        /// `invalid`.
        enum class Kind { invalid, informational, successful, redirection, clientError, serverError };

        /// The status with this code and an empty phrase. `code` must be within 0 to 999; anything else stops the
        /// program.
        Status(int code); // NOLINT(google-explicit-constructor): a status can be written as its number

        /// The same with a phrase. One with control characters is repaired: they become spaces, as does then every
        /// character above U+00FF.
        Status(int code, std::string_view reasonPhrase);

        [[nodiscard]] constexpr int code() const noexcept { return code_; }

        /// Valid as long as this object or a copy of it lives.
        [[nodiscard]] constexpr std::string_view reasonPhrase() const noexcept { return reasonPhrase_.record().text; }

        [[nodiscard]] constexpr Kind kind() const noexcept {
            return code_ >= 100 && code_ < 600 ? static_cast<Kind>(code_ / 100) : Kind::invalid;
        }

        /// The code in decimal, a blank and the phrase.
        [[nodiscard]] std::string description() const;

        /// The code as exactly three digits.
        [[nodiscard]] std::string fieldValue() const;

        friend constexpr bool operator==(const Status& left, const Status& right) noexcept {
            return left.code_ == right.code_;
        }

        // The well-known statuses, as constants: `ok`, `notFound`, ... 49 in all; 100 is `_continue`.
#define QUILLBEAM_STATUS(constant, code, reasonPhrase) static const Status constant;
#include "http_types/detail/StatusCodes.inc"

    private:
        friend class HTTPResponse;

        constexpr Status(int code, const detail::TextRecord& reasonPhrase) noexcept
            : code_(code)
            , reasonPhrase_(reasonPhrase) {}

        int code_;
        detail::SharedText reasonPhrase_{};
    };

    /// The control data of the response as a field, which keeps its indexing strategy.
    class QUILLBEAM_EXPORT PseudoHeaderFields {
    public:
        [[nodiscard]] const HTTPField& status() const noexcept { return status_; }

        /// `field` must carry the name ":status" and a value of three digits; anything else stops the program.
        void setStatus(HTTPField field);

        friend bool operator==(const PseudoHeaderFields&, const PseudoHeaderFields&) = default;

    private:
        friend class HTTPResponse;

        explicit PseudoHeaderFields(const Status& status);

        HTTPField status_;
    };

    /// What is wrong with a response in coded form that only responses can have.
    class QUILLBEAM_EXPORT DecodingError final : public std::runtime_error, public platform::PrettyStringConvertible {
    public:
        /// The reason phrase holds control characters.
        [[nodiscard]] static DecodingError invalidReasonPhrase(std::string_view reasonPhrase);

        /// The phrase as it came; valid as long as this object or a copy of it lives.
        [[nodiscard]] std::string_view reasonPhrase() const noexcept { return reasonPhrase_.record().text; }

        [[nodiscard]] std::string prettyDescription() const override { return what(); }

    private:
        explicit DecodingError(std::string_view reasonPhrase);

        detail::SharedText reasonPhrase_;
    };

    /// The response 200 without header fields.
    HTTPResponse();

    explicit HTTPResponse(const Status& status, HTTPFields headerFields = HTTPFields());

    /// A response with this code, an empty phrase and no header fields. `soar_statusCode` must be within 0 to 999.
    explicit HTTPResponse(int soar_statusCode);

    PseudoHeaderFields pseudoHeaderFields;
    HTTPFields headerFields{};

    [[nodiscard]] Status status() const;

    /// Replaces code and phrase; the indexing strategy of the ":status" field stays.
    void setStatus(const Status& status);

    /// Valid until this object is changed or destroyed.
    [[nodiscard]] std::string_view reasonPhrase() const noexcept { return reasonPhrase_.record().text; }

    /// The code, a blank and the reason phrase.
    [[nodiscard]] std::string debugDescription() const;

    /// The code and the fields' diagnostic text in " [" and "]".
    [[nodiscard]] std::string prettyDescription() const;

    /// Same status field and same header fields; the reason phrase does not count.
    friend bool operator==(const HTTPResponse& left, const HTTPResponse& right) {
        return left.pseudoHeaderFields == right.pseudoHeaderFields && left.headerFields == right.headerFields;
    }

private:
    detail::SharedText reasonPhrase_{};
};

namespace detail {

enum class StatusIndex : std::size_t {
#define QUILLBEAM_STATUS(constant, code, reasonPhrase) constant,
#include "http_types/detail/StatusCodes.inc"
    count
};

// A phrase has no canonical form: nothing ever compares it.
inline constexpr std::array<TextRecord, static_cast<std::size_t>(StatusIndex::count)> reasonPhrases{{
#define QUILLBEAM_STATUS(constant, code, reasonPhrase) {reasonPhrase, ""},
#include "http_types/detail/StatusCodes.inc"
}};

} // namespace detail

#define QUILLBEAM_STATUS(constant, code, reasonPhrase)                                                                 \
    inline constexpr HTTPResponse::Status HTTPResponse::Status::constant{                                              \
        code, detail::reasonPhrases[static_cast<std::size_t>(detail::StatusIndex::constant)]                           \
    };
#include "http_types/detail/StatusCodes.inc"

} // namespace HTTPTypes::inline v1

template <>
struct std::hash<HTTPTypes::HTTPResponse::Status> {
    std::size_t operator()(const HTTPTypes::HTTPResponse::Status& status) const noexcept {
        return std::hash<int>()(status.code());
    }
};

template <>
struct QUILLBEAM_EXPORT std::hash<HTTPTypes::HTTPResponse> {
    std::size_t operator()(const HTTPTypes::HTTPResponse& response) const noexcept;
};

/// The control data is coded as the list of its one field.
///
/// A list without status or with two, a status that is not three digits and a field that is no pseudo-field fail as
/// corrupted data. Other pseudo-fields are passed over.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPResponse::PseudoHeaderFields> {
    static constexpr std::string_view typeName = "HTTPResponse.PseudoHeaderFields";
    static constexpr CodedShape shape = CodedShape::unkeyed;

    [[nodiscard]] static HTTPTypes::HTTPResponse::PseudoHeaderFields blank();
    static void decode(Decoder& decoder, HTTPTypes::HTTPResponse::PseudoHeaderFields& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPResponse::PseudoHeaderFields& value);
};

/// A response is coded as an object: "pseudoHeaderFields", "reasonPhrase" and "headerFields". Decoded, it equals the
/// one encoded, and so does its reason phrase. A phrase with control characters fails as
/// `HTTPResponse::DecodingError::invalidReasonPhrase`.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPResponse> {
    static constexpr std::string_view typeName = "HTTPResponse";
    static constexpr CodedShape shape = CodedShape::keyed;

    static void decode(Decoder& decoder, HTTPTypes::HTTPResponse& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPResponse& value);
};

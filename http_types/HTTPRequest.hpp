#pragma once

#include "http_types/HTTPField.hpp"
#include "http_types/HTTPFields.hpp"
#include "http_types/detail/SharedText.hpp"
#include "platform/Export.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace HTTPTypes::inline v1 {

/// The head of a request: its control data as pseudo-fields, and its header fields. The body travels beside it.
///
/// Thread safety: distinct objects may be used from different threads; a shared one may be read by several at once.
class QUILLBEAM_EXPORT HTTPRequest {
public:
    /// The method: a token of RFC 9110, compared with regard to case ("get" is a method different from `get`).
    class QUILLBEAM_EXPORT Method {
    public:
        /// The method named `rawValue`; nothing unless that is one or more token characters.
        [[nodiscard]] static std::optional<Method> make(std::string_view rawValue);

        /// The text of the method; valid as long as this object or a copy of it lives.
        [[nodiscard]] constexpr std::string_view rawValue() const noexcept { return text_.record().text; }

        /// `rawValue`.
        [[nodiscard]] std::string description() const { return std::string(rawValue()); }

        friend constexpr bool operator==(const Method& left, const Method& right) noexcept {
            return left.rawValue() == right.rawValue();
        }

        static const Method get;
        static const Method head;
        static const Method post;
        static const Method put;
        static const Method _delete;
        static const Method connect;
        static const Method options;
        static const Method trace;
        static const Method patch;

    private:
        constexpr explicit Method(const detail::TextRecord& record) noexcept
            : text_(record) {}

        explicit Method(detail::SharedText text) noexcept
            : text_(std::move(text)) {}

        detail::SharedText text_{};
    };

    /// The control data of the request as fields, which keeps each one's indexing strategy. A field that is set must
    /// carry the matching pseudo-name; anything else stops the program.
    class QUILLBEAM_EXPORT PseudoHeaderFields {
    public:
        [[nodiscard]] const HTTPField& method() const noexcept { return method_; }

        [[nodiscard]] const std::optional<HTTPField>& scheme() const noexcept { return scheme_; }

        [[nodiscard]] const std::optional<HTTPField>& authority() const noexcept { return authority_; }

        [[nodiscard]] const std::optional<HTTPField>& path() const noexcept { return path_; }

        [[nodiscard]] const std::optional<HTTPField>& extendedConnectProtocol() const noexcept { return protocol_; }

        /// The value must be a token, too.
        void setMethod(HTTPField field);
        void setScheme(std::optional<HTTPField> field);
        void setAuthority(std::optional<HTTPField> field);
        void setPath(std::optional<HTTPField> field);
        void setExtendedConnectProtocol(std::optional<HTTPField> field);

        friend bool operator==(const PseudoHeaderFields&, const PseudoHeaderFields&) = default;

    private:
        friend class HTTPRequest;

        explicit PseudoHeaderFields(const Method& method);

        HTTPField method_;
        std::optional<HTTPField> scheme_{};
        std::optional<HTTPField> authority_{};
        std::optional<HTTPField> path_{};
        std::optional<HTTPField> protocol_{};
    };

    /// A GET request without scheme, authority and path.
    HTTPRequest();

    /// A request with the control data given. Each text becomes the value of a field and is repaired as such (see
    /// `HTTPField::setValue`).
    HTTPRequest(
        const Method& method,
        std::optional<std::string_view> scheme,
        std::optional<std::string_view> authority,
        std::optional<std::string_view> path,
        HTTPFields headerFields = HTTPFields()
    );

    /// A request for a path, without scheme and authority: those come from the base address it is sent to.
    HTTPRequest(std::string_view soar_path, const Method& method, HTTPFields headerFields = HTTPFields());

    PseudoHeaderFields pseudoHeaderFields;
    HTTPFields headerFields{};

    /// @name The control data as text
    /// Setting a text on a present field replaces its value only and keeps its indexing strategy; setting no text drops
    /// the field.
    /// @{
    [[nodiscard]] Method method() const;
    void setMethod(const Method& method);
    [[nodiscard]] std::optional<std::string> scheme() const;
    void setScheme(std::optional<std::string_view> scheme);
    [[nodiscard]] std::optional<std::string> authority() const;
    void setAuthority(std::optional<std::string_view> authority);
    [[nodiscard]] std::optional<std::string> path() const;
    void setPath(std::optional<std::string_view> path);
    /// The protocol of an extended CONNECT (RFC 8441).
    [[nodiscard]] std::optional<std::string> extendedConnectProtocol() const;
    void setExtendedConnectProtocol(std::optional<std::string_view> protocol);
    /// @}

    /// The path without its query: up to the first "?", else up to the first "#", else all of it. Empty without a path.
    [[nodiscard]] std::string soar_pathOnly() const;

    /// The query of the path: what stands between the first "?" and the "#" behind it or the end; nothing without "?",
    /// and nothing where a "#" comes before it.
    [[nodiscard]] std::optional<std::string> soar_query() const;

    /// "(", the method, ") ", then scheme and "://", authority and path as far as present.
    [[nodiscard]] std::string debugDescription() const;

    /// Method, blank, path ("<nil>" without one), and the fields' diagnostic text in " [" and "]".
    [[nodiscard]] std::string prettyDescription() const;

    friend bool operator==(const HTTPRequest&, const HTTPRequest&) = default;
};

namespace detail {

// A method has no canonical form: case counts.
inline constexpr std::array<TextRecord, 9> methodTexts{
    {{"GET", ""},
     {"HEAD", ""},
     {"POST", ""},
     {"PUT", ""},
     {"DELETE", ""},
     {"CONNECT", ""},
     {"OPTIONS", ""},
     {"TRACE", ""},
     {"PATCH", ""}}
};

} // namespace detail

inline constexpr HTTPRequest::Method HTTPRequest::Method::get{detail::methodTexts[0]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::head{detail::methodTexts[1]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::post{detail::methodTexts[2]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::put{detail::methodTexts[3]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::_delete{detail::methodTexts[4]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::connect{detail::methodTexts[5]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::options{detail::methodTexts[6]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::trace{detail::methodTexts[7]};
inline constexpr HTTPRequest::Method HTTPRequest::Method::patch{detail::methodTexts[8]};

} // namespace HTTPTypes::inline v1

template <>
struct std::hash<HTTPTypes::HTTPRequest::Method> {
    std::size_t operator()(const HTTPTypes::HTTPRequest::Method& method) const noexcept {
        return std::hash<std::string_view>()(method.rawValue());
    }
};

template <>
struct QUILLBEAM_EXPORT std::hash<HTTPTypes::HTTPRequest> {
    std::size_t operator()(const HTTPTypes::HTTPRequest& request) const noexcept;
};

/// The control data is coded as the list of its fields that are present, in the order in which they are declared.
///
/// A list without method or with a field twice, a method that is no token and a field that is no pseudo-field fail as
/// corrupted data. Other pseudo-fields are passed over.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPRequest::PseudoHeaderFields> {
    static constexpr std::string_view typeName = "HTTPRequest.PseudoHeaderFields";
    static constexpr CodedShape shape = CodedShape::unkeyed;

    [[nodiscard]] static HTTPTypes::HTTPRequest::PseudoHeaderFields blank();
    static void decode(Decoder& decoder, HTTPTypes::HTTPRequest::PseudoHeaderFields& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPRequest::PseudoHeaderFields& value);
};

/// A request is coded as an object: "pseudoHeaderFields" and "headerFields". Decoded, it equals the one encoded.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPRequest> {
    static constexpr std::string_view typeName = "HTTPRequest";
    static constexpr CodedShape shape = CodedShape::keyed;

    static void decode(Decoder& decoder, HTTPTypes::HTTPRequest& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPRequest& value);
};

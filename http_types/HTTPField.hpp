#pragma once

#include "http_types/ISOLatin1String.hpp"
#include "http_types/detail/SharedText.hpp"
#include "platform/Export.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace HTTPTypes::inline v1 {

/// One header field: a name, a value of bytes and a hint for header compression.
///
/// The value is always one that HTTP allows: whatever would not be is repaired as it is set (see `value`). Names
/// compare without regard to case, values byte for byte.
///
/// Thread safety: distinct objects may be used from different threads; a shared one may be read by several at once.
struct QUILLBEAM_EXPORT HTTPField {
    /// The name of a field: a token of RFC 9110 in the spelling it was given.
    ///
    /// Equality, order of lookup and hash go by `canonicalName` alone, so "Content-Type" and "content-type" are one
    /// name. Copying a name never allocates. A well-known name, be it a constant or made from
    /// text in its usual or its lowercase spelling, owns no memory.
    class QUILLBEAM_EXPORT Name {
    public:
        /// The name spelled `text`; nothing unless `text` is one or more token characters.
        [[nodiscard]] static std::optional<Name> make(std::string_view text);

        /// The spelling that goes on the wire; valid as long as this name or a copy of it lives.
        [[nodiscard]] constexpr std::string_view rawName() const noexcept { return text_.record().text; }

        /// The lowercased spelling; valid as long as this name or a copy of it lives.
        [[nodiscard]] constexpr std::string_view canonicalName() const noexcept { return text_.record().canonical; }

        /// True for the name of a pseudo-field such as ":path", which only decoding makes and no `HTTPFields` holds.
        [[nodiscard]] constexpr bool isPseudo() const noexcept { return rawName().starts_with(':'); }

        /// `rawName`.
        [[nodiscard]] std::string description() const { return std::string(rawName()); }

        /// A hash of `canonicalName`, known without computation; the same in every process.
        [[nodiscard]] constexpr std::uint32_t hash() const noexcept { return hash_; }

        friend constexpr bool operator==(const Name& left, const Name& right) noexcept {
            if (left.hash_ != right.hash_) return false;
            const detail::TextRecord& l = left.text_.record();
            const detail::TextRecord& r = right.text_.record();
            return &l == &r || l.canonical == r.canonical;
        }

        // The well-known names, as constants: `accept` for "Accept", `contentType` for "Content-Type", `eTag`, `te`,
        // `wwwAuthenticate`, ... 70 in all.
#define QUILLBEAM_FIELD_NAME(constant, raw, canonical) static const Name constant;
#include "http_types/detail/FieldNames.inc"

    private:
        friend class HTTPRequest;
        friend class HTTPResponse;
        friend struct platform::Coding<Name>;

        static const Name pseudoMethod;
        static const Name pseudoScheme;
        static const Name pseudoAuthority;
        static const Name pseudoPath;
        static const Name pseudoProtocol;
        static const Name pseudoStatus;

        /// The name spelled `text`; nothing unless that is ":" and a token without uppercase letters.
        [[nodiscard]] static std::optional<Name> makePseudo(std::string_view text);

        constexpr explicit Name(const detail::TextRecord& record) noexcept
            : text_(record)
            , hash_(record.hash) {}

        explicit Name(detail::SharedText text) noexcept
            : text_(std::move(text))
            , hash_(text_.record().hash) {}

        detail::SharedText text_{};
        std::uint32_t hash_ = 0; // the record's: here it spares a scan over names the way to each record
    };

    /// A hint to an HPACK or QPACK encoder. Nothing sets it but the caller, sensitive names included.
    enum class DynamicTableIndexingStrategy : std::uint8_t { automatic = 0, prefer = 1, avoid = 2, disallow = 3 };

    /// A field with a value made from text in UTF-8, repaired where needed (see `setValue`).
    HTTPField(Name fieldName, std::string&& value);
    HTTPField(Name fieldName, std::string_view value);
    HTTPField(Name fieldName, const char* value);

    /// A field with a value made from bytes, repaired where needed (see `setValue`).
    HTTPField(Name fieldName, std::span<const std::uint8_t> value);

    [[no_unique_address]] Name name; // its padding takes the strategy
    DynamicTableIndexingStrategy indexingStrategy = DynamicTableIndexingStrategy::automatic;

    /// The value as text: its bytes read as UTF-8, with U+FFFD for each malformed subpart.
    [[nodiscard]] std::string value() const { return rawValue_.string(); }

    /// Sets the value to the UTF-8 bytes of `text`. In a text that is no valid value each control character but the
    /// tab becomes a space, then spaces and tabs go from both ends; every other byte is kept. Never fails.
    void setValue(std::string text);

    /// The bytes of the value.
    [[nodiscard]] const ISOLatin1String& rawValue() const noexcept { return rawValue_; }

    /// Calls `body` with the bytes of the value (`std::span<const std::uint8_t>`), valid during the call, and returns
    /// what it returns.
    template <typename Body>
    decltype(auto) withUnsafeBytesOfValue(Body&& body) const {
        return std::forward<Body>(body)(rawValue_.bytes());
    }

    /// Whether the bytes are a field value as HTTP allows it: no control characters but the tab, no space or tab at
    /// either end. Empty is valid, bytes of 0x80 and above are.
    [[nodiscard]] static bool isValidValue(std::string_view value) noexcept;
    [[nodiscard]] static bool isValidValue(std::span<const std::uint8_t> value) noexcept;

    /// The raw name, ": " and the value as text.
    [[nodiscard]] std::string description() const;

    /// Same canonical name, indexing strategy and value bytes; the spelling of the name does not count.
    friend bool operator==(const HTTPField&, const HTTPField&) = default;

private:
    friend struct platform::Coding<HTTPField>;

    ISOLatin1String rawValue_{};
};

namespace detail {

enum class FieldNameIndex : std::size_t {
#define QUILLBEAM_FIELD_NAME(constant, raw, canonical) constant,
#include "http_types/detail/FieldNames.inc"
    count
};

inline constexpr std::array<TextRecord, static_cast<std::size_t>(FieldNameIndex::count)> wellKnownNames{{
#define QUILLBEAM_FIELD_NAME(constant, raw, canonical) {raw, canonical},
#include "http_types/detail/FieldNames.inc"
}};

inline constexpr TextRecord pseudoMethodText{":method", ":method"};
inline constexpr TextRecord pseudoSchemeText{":scheme", ":scheme"};
inline constexpr TextRecord pseudoAuthorityText{":authority", ":authority"};
inline constexpr TextRecord pseudoPathText{":path", ":path"};
inline constexpr TextRecord pseudoProtocolText{":protocol", ":protocol"};
inline constexpr TextRecord pseudoStatusText{":status", ":status"};

} // namespace detail

#define QUILLBEAM_FIELD_NAME(constant, raw, canonical)                                                                 \
    inline constexpr HTTPField::Name HTTPField::Name::constant{                                                        \
        detail::wellKnownNames[static_cast<std::size_t>(detail::FieldNameIndex::constant)]                             \
    };
#include "http_types/detail/FieldNames.inc"

inline constexpr HTTPField::Name HTTPField::Name::pseudoMethod{detail::pseudoMethodText};
inline constexpr HTTPField::Name HTTPField::Name::pseudoScheme{detail::pseudoSchemeText};
inline constexpr HTTPField::Name HTTPField::Name::pseudoAuthority{detail::pseudoAuthorityText};
inline constexpr HTTPField::Name HTTPField::Name::pseudoPath{detail::pseudoPathText};
inline constexpr HTTPField::Name HTTPField::Name::pseudoProtocol{detail::pseudoProtocolText};
inline constexpr HTTPField::Name HTTPField::Name::pseudoStatus{detail::pseudoStatusText};

} // namespace HTTPTypes::inline v1

template <>
struct std::hash<HTTPTypes::HTTPField::Name> {
    std::size_t operator()(const HTTPTypes::HTTPField::Name& name) const noexcept { return name.hash(); }
};

template <>
struct QUILLBEAM_EXPORT std::hash<HTTPTypes::HTTPField> {
    std::size_t operator()(const HTTPTypes::HTTPField& field) const noexcept;
};

/// A name is coded as its spelling, as a text; text that is none fails as corrupted data. Unlike `Name::make` this
/// takes pseudo-names, which are ":" and a token without uppercase letters.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPField::Name> {
    static constexpr std::string_view typeName = "HTTPField.Name";
    static constexpr CodedShape shape = CodedShape::single;

    [[nodiscard]] static HTTPTypes::HTTPField::Name blank();
    static void decode(Decoder& decoder, HTTPTypes::HTTPField::Name& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPField::Name& value);
};

/// A field is coded as an object: "name", "value" with one character for each byte (`ISOLatin1String::latin1Text`), and
/// "indexingStrategy" as its number unless it is `automatic`.
///
/// Nothing is repaired here: a value that HTTP does not allow fails as corrupted data. The number of an unknown
/// strategy reads as `automatic`.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPField> {
    static constexpr std::string_view typeName = "HTTPField";
    static constexpr CodedShape shape = CodedShape::keyed;

    [[nodiscard]] static HTTPTypes::HTTPField blank();
    static void decode(Decoder& decoder, HTTPTypes::HTTPField& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPField& value);
};

#pragma once

#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"
#include "platform/Ranges.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// Free-form values: what a schema leaves open.
///
/// `OpenAPIValueContainer` is any value that JSON can tell, `OpenAPIObjectContainer` one that is an object and
/// `OpenAPIArrayContainer` one that is a list. The three contain one another and hence stand in one header.
///
///     OpenAPIObjectContainer object{{"name", "x"}, {"count", 1}, {"tags", OpenAPIArrayContainer{"a", "b"}}};
///     object["note"] = nullptr;
///     for (const auto& [key, value] : object) print(key, value.description());
///     if (const auto* tag = object["tags"][0].getIf<std::string>()) use(*tag);
///
/// They can be coded like any type: a body, a header field or a record's field may be one. JSON's null is a value that
/// is absent and keeps its place. A number that is whole (1, and 1.0) reads as an integer, any other as a double.
///
/// They are plain values: copying copies everything inside. Values may be nested as deep as memory allows and are
/// destroyed without recursion in depth; copying, comparing, hashing, coding and describing recurse, so keep what you
/// build within some thousand levels. What is decoded from JSON has at most 512.
namespace OpenAPIRuntime::inline v1 {

class OpenAPIValueContainer;
class OpenAPIArrayContainer;
class OpenAPIObjectContainer;

namespace detail {

struct FreeFormAccess;

/// The integer types whose every value is a 64-bit signed integer.
template <class T>
concept OpenAPIInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                         !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> && !std::same_as<T, char16_t> &&
                         !std::same_as<T, char32_t> && (std::signed_integral<T> || sizeof(T) < sizeof(std::int64_t));

template <class T>
concept OpenAPIContainer = std::same_as<T, OpenAPIArrayContainer> || std::same_as<T, OpenAPIObjectContainer>;

/// What a value is kept as.
template <class T>
concept OpenAPIAlternative = std::same_as<T, bool> || std::same_as<T, std::int64_t> || std::same_as<T, double> ||
                             std::same_as<T, std::string> || OpenAPIContainer<T>;

template <class T>
concept OpenAPIPresentValue =
    std::same_as<T, bool> || OpenAPIInteger<T> || std::same_as<T, double> || OpenAPIContainer<T> ||
    (std::convertible_to<const T&, std::string_view> && !std::same_as<T, std::nullptr_t>);

template <class T>
concept OpenAPIOptionalValue = platform::detail::isOptional<T> && OpenAPIPresentValue<typename T::value_type>;

/// What converts to an `OpenAPIValueContainer`, itself left out.
template <class T>
concept OpenAPIValue =
    !std::same_as<T, OpenAPIValueContainer> && (std::same_as<T, std::nullptr_t> || std::same_as<T, std::nullopt_t> ||
                                                OpenAPIPresentValue<T> || OpenAPIOptionalValue<T>);

template <class T>
concept OpenAPIElement = OpenAPIValue<T> || std::same_as<T, OpenAPIValueContainer>;

/// A range whose elements convert to values. What is a value itself is asked for first: only then may ranges be looked
/// at.
template <class Range>
concept OpenAPIElements = !OpenAPIElement<std::remove_cvref_t<Range>> && !OpenAPIElement<std::decay_t<Range>> &&
                          platform::InputRange<Range> && OpenAPIElement<platform::RangeValue<Range>>;

/// A range of pairs of text and what converts to a value.
template <class Range>
concept OpenAPIEntries = !OpenAPIElement<std::remove_cvref_t<Range>> && platform::InputRange<Range> &&
                         requires(platform::RangeReference<Range> entry) {
                             requires std::constructible_from<std::string, decltype((entry.first))>;
                             requires OpenAPIElement<std::remove_cvref_t<decltype(entry.second)>>;
                         };

} // namespace detail

/// A list of free-form values.
///
///     OpenAPIArrayContainer list{1, "two", nullptr, OpenAPIArrayContainer{3.5, true}};
///     list.value().push_back("more");
///
/// Thread safety: distinct objects: safe.
class QUILLBEAM_EXPORT OpenAPIArrayContainer {
public:
    using value_type = OpenAPIValueContainer;
    using const_iterator = std::vector<OpenAPIValueContainer>::const_iterator;

    OpenAPIArrayContainer() noexcept;

    /// Takes over the elements.
    explicit OpenAPIArrayContainer(std::vector<OpenAPIValueContainer> elements) noexcept;

    /// A list of the given elements, each of a type that converts to an `OpenAPIValueContainer`. A single list in the
    /// braces is copied, not wrapped.
    template <class... Elements>
        requires(
            sizeof...(Elements) > 0 && (detail::OpenAPIElement<std::decay_t<Elements>> && ...) &&
            !(sizeof...(Elements) == 1 && (std::same_as<std::decay_t<Elements>, OpenAPIArrayContainer> && ...))
        )
    explicit(sizeof...(Elements) == 1) OpenAPIArrayContainer(Elements&&... elements);

    /// A list of the elements of a range.
    template <detail::OpenAPIElements Range>
    explicit OpenAPIArrayContainer(Range&& elements);

    OpenAPIArrayContainer(const OpenAPIArrayContainer& other);
    OpenAPIArrayContainer(OpenAPIArrayContainer&& other) noexcept;
    OpenAPIArrayContainer& operator=(const OpenAPIArrayContainer& other);
    OpenAPIArrayContainer& operator=(OpenAPIArrayContainer&& other) noexcept;
    ~OpenAPIArrayContainer();

    /// A list of the values that `unvalidatedValues` stand for.
    /// @throws platform::EncodingError like `OpenAPIValueContainer::validating`
    [[nodiscard]] static OpenAPIArrayContainer validating(const std::vector<platform::AnyValue>& unvalidatedValues);

    /// The elements, to be read and changed at will.
    [[nodiscard]] const std::vector<OpenAPIValueContainer>& value() const noexcept { return elements_; }

    [[nodiscard]] std::vector<OpenAPIValueContainer>& value() noexcept { return elements_; }

    [[nodiscard]] std::size_t size() const noexcept;

    [[nodiscard]] bool empty() const noexcept;

    [[nodiscard]] const_iterator begin() const noexcept { return elements_.begin(); }

    [[nodiscard]] const_iterator end() const noexcept { return elements_.end(); }

    /// An element, or an absent value for a position behind the last; valid until the list changes.
    [[nodiscard]] const OpenAPIValueContainer& operator[](std::size_t position) const noexcept;

    /// The text for diagnosis: `[1, "two", nil]`.
    [[nodiscard]] std::string description() const;

    /// By length, then element by element.
    friend QUILLBEAM_EXPORT bool
    operator==(const OpenAPIArrayContainer& left, const OpenAPIArrayContainer& right) noexcept;

private:
    friend struct detail::FreeFormAccess;

    std::vector<OpenAPIValueContainer> elements_;
};

/// An object of free-form values: a map from text.
///
///     OpenAPIObjectContainer object{{"a", 1}, {"b", nullptr}};
///     object["c"] = OpenAPIObjectContainer{{"deep", true}};
///
/// The members stand in ascending order of their keys' bytes, in one block. Looking one up is a binary search; adding
/// one in front of n others moves these, so build a large object from a list or a vector of members at once, or in
/// order.
///
/// Thread safety: distinct objects: safe.
class QUILLBEAM_EXPORT OpenAPIObjectContainer {
public:
    using Member = std::pair<std::string, OpenAPIValueContainer>;
    using value_type = Member;
    using const_iterator = std::vector<Member>::const_iterator;

    OpenAPIObjectContainer() noexcept;

    /// An object of the given members. Of a key that comes twice the first counts.
    OpenAPIObjectContainer(std::initializer_list<Member> members);

    /// Takes over the members, in any order. Of a key that comes twice the first counts. O(n log n).
    explicit OpenAPIObjectContainer(std::vector<Member> members);

    /// An object of the entries of a map, or of another range of pairs.
    template <detail::OpenAPIEntries Range>
        requires(!std::same_as<std::remove_cvref_t<Range>, std::vector<std::pair<std::string, OpenAPIValueContainer>>>)
    explicit OpenAPIObjectContainer(Range&& entries);

    OpenAPIObjectContainer(const OpenAPIObjectContainer& other);
    OpenAPIObjectContainer(OpenAPIObjectContainer&& other) noexcept;
    OpenAPIObjectContainer& operator=(const OpenAPIObjectContainer& other);
    OpenAPIObjectContainer& operator=(OpenAPIObjectContainer&& other) noexcept;
    ~OpenAPIObjectContainer();

    /// An object of the values that `unvalidatedValues` stand for.
    /// @throws platform::EncodingError like `OpenAPIValueContainer::validating`
    [[nodiscard]] static OpenAPIObjectContainer
    validating(const std::map<std::string, platform::AnyValue>& unvalidatedValues);

    /// The members, in ascending order of their keys.
    [[nodiscard]] const std::vector<Member>& value() const noexcept { return members_; }

    [[nodiscard]] std::size_t size() const noexcept;

    [[nodiscard]] bool empty() const noexcept;

    [[nodiscard]] const_iterator begin() const noexcept { return members_.begin(); }

    [[nodiscard]] const_iterator end() const noexcept { return members_.end(); }

    [[nodiscard]] bool contains(std::string_view key) const noexcept { return find(key) != nullptr; }

    /// The value of a key, or a null pointer where there is none; valid until a member is added or removed.
    [[nodiscard]] const OpenAPIValueContainer* find(std::string_view key) const noexcept;
    [[nodiscard]] OpenAPIValueContainer* find(std::string_view key) noexcept;

    /// The value of a key, or an absent value where there is none; valid until a member is added or removed.
    [[nodiscard]] const OpenAPIValueContainer& operator[](std::string_view key) const noexcept;

    /// The value of a key, which is added as absent where there is none; valid until a member is added or removed.
    [[nodiscard]] OpenAPIValueContainer& operator[](std::string_view key);

    /// Removes a member; false where there is none of that key.
    bool erase(std::string_view key);

    void clear() noexcept;

    /// The text for diagnosis: `["a": 1, "b": nil]`.
    [[nodiscard]] std::string description() const;

    /// By count, then key by key.
    friend QUILLBEAM_EXPORT bool
    operator==(const OpenAPIObjectContainer& left, const OpenAPIObjectContainer& right) noexcept;

private:
    friend struct detail::FreeFormAccess;

    std::vector<Member> members_;
};

/// One free-form value: absent, a boolean, an integer, a double, a string, a list or an object.
///
/// It converts from each of these, from `std::optional` of them and from `nullptr`. Types that would lose something do
/// not convert: an unsigned 64-bit integer, a float, a character. A pointer to text must not be null.
///
///     OpenAPIValueContainer value = 1;
///     if (const auto* integer = value.getIf<std::int64_t>()) use(*integer);
///     value.visit([](const auto& content) { ... }); // nullptr for absent
///
/// Values of different kinds are never equal: 1 and 1.0 are not.
///
/// Thread safety: distinct objects: safe.
class QUILLBEAM_EXPORT OpenAPIValueContainer {
public:
    enum class Kind : std::uint8_t { absent, boolean, integer, number, string, list, object };

    /// Absent.
    OpenAPIValueContainer() noexcept {}

    template <class T>
        requires detail::OpenAPIValue<std::decay_t<T>>
    OpenAPIValueContainer(T&& value) {
        using Plain = std::decay_t<T>;
        if constexpr (platform::detail::isOptional<Plain>) {
            if (value) *this = OpenAPIValueContainer(*std::forward<T>(value));
        } else if constexpr (detail::OpenAPIInteger<Plain>) {
            construct<std::int64_t>(value);
        } else if constexpr (detail::OpenAPIAlternative<Plain>) {
            construct<Plain>(std::forward<T>(value));
        } else if constexpr (detail::OpenAPIPresentValue<Plain>) {
            construct<std::string>(std::string_view(value));
        }
    }

    OpenAPIValueContainer(const OpenAPIValueContainer& other);

    OpenAPIValueContainer(OpenAPIValueContainer&& other) noexcept { takeOver(other); }

    /// What is assigned may be a part of this value.
    OpenAPIValueContainer& operator=(const OpenAPIValueContainer& other) {
        return *this = OpenAPIValueContainer(other);
    }

    OpenAPIValueContainer& operator=(OpenAPIValueContainer&& other) noexcept {
        OpenAPIValueContainer taken(std::move(other));
        destroy();
        takeOver(taken);
        return *this;
    }

    ~OpenAPIValueContainer() { destroy(); }

    /// The value that an unknown one stands for: absent for no value; a boolean, an integer, a double or a string; a
    /// list or map of such, as `std::vector<AnyValue>` and `std::map<std::string, AnyValue>` (or its unordered sister);
    /// or one of the containers of this header.
    ///
    /// @throws platform::EncodingError of the invalid-value kind where it, or a value inside it, is anything else
    [[nodiscard]] static OpenAPIValueContainer validating(const platform::AnyValue& unvalidatedValue);

    [[nodiscard]] Kind kind() const noexcept { return kind_; }

    /// False for an absent value.
    [[nodiscard]] bool hasValue() const noexcept { return kind_ != Kind::absent; }

    /// Whether this is a `T`: a bool, std::int64_t, double, std::string, OpenAPIArrayContainer or
    /// OpenAPIObjectContainer.
    template <detail::OpenAPIAlternative T>
    [[nodiscard]] bool is() const noexcept {
        return kind_ == kindOf<T>();
    }

    /// The value, where it is a `T`; else a null pointer. Valid until another value is assigned.
    template <detail::OpenAPIAlternative T>
    [[nodiscard]] const T* getIf() const noexcept {
        return is<T>() ? &const_cast<OpenAPIValueContainer*>(this)->content<T>() : nullptr;
    }

    template <detail::OpenAPIAlternative T>
    [[nodiscard]] T* getIf() noexcept {
        return is<T>() ? &content<T>() : nullptr;
    }

    /// The number, be it an integer or a double; large integers round. Nothing for any other kind.
    [[nodiscard]] std::optional<double> number() const noexcept;

    /// Makes this a `T`, constructed in place from the arguments, which must not be a part of this value; absent if
    /// that throws.
    template <detail::OpenAPIAlternative T, class... Arguments>
        requires std::constructible_from<T, Arguments...>
    T& emplace(Arguments&&... arguments) {
        destroy();
        return construct<T>(std::forward<Arguments>(arguments)...);
    }

    /// Calls `visitor` with what is inside, as one of the types of `is`, or with `nullptr`.
    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        switch (kind_) {
        case Kind::boolean:
            return std::forward<Visitor>(visitor)(*getIf<bool>());
        case Kind::integer:
            return std::forward<Visitor>(visitor)(*getIf<std::int64_t>());
        case Kind::number:
            return std::forward<Visitor>(visitor)(*getIf<double>());
        case Kind::string:
            return std::forward<Visitor>(visitor)(*getIf<std::string>());
        case Kind::list:
            return std::forward<Visitor>(visitor)(*getIf<OpenAPIArrayContainer>());
        case Kind::object:
            return std::forward<Visitor>(visitor)(*getIf<OpenAPIObjectContainer>());
        case Kind::absent:
            break;
        }
        return std::forward<Visitor>(visitor)(nullptr);
    }

    /// A member of an object; an absent value where this is none or has no such member.
    [[nodiscard]] const OpenAPIValueContainer& operator[](std::string_view key) const noexcept;

    /// An element of a list; an absent value where this is none or is shorter.
    [[nodiscard]] const OpenAPIValueContainer& operator[](std::size_t position) const noexcept;

    /// The text for diagnosis: `nil`, `true`, `1`, `1.5`, `"x"`, `[1, "x"]`, `["a": 1]`.
    [[nodiscard]] std::string description() const;

    friend QUILLBEAM_EXPORT bool
    operator==(const OpenAPIValueContainer& left, const OpenAPIValueContainer& right) noexcept;

private:
    friend struct detail::FreeFormAccess;

    template <class T>
    [[nodiscard]] static constexpr Kind kindOf() noexcept {
        if constexpr (std::same_as<T, bool>) return Kind::boolean;
        if constexpr (std::same_as<T, std::int64_t>) return Kind::integer;
        if constexpr (std::same_as<T, double>) return Kind::number;
        if constexpr (std::same_as<T, std::string>) return Kind::string;
        if constexpr (std::same_as<T, OpenAPIArrayContainer>) return Kind::list;
        return Kind::object;
    }

    template <class T>
    [[nodiscard]] T& content() noexcept {
        if constexpr (std::same_as<T, bool>) {
            return boolean_;
        } else if constexpr (std::same_as<T, std::int64_t>) {
            return integer_;
        } else if constexpr (std::same_as<T, double>) {
            return number_;
        } else if constexpr (std::same_as<T, std::string>) {
            return string_;
        } else if constexpr (std::same_as<T, OpenAPIArrayContainer>) {
            return list_;
        } else {
            return object_;
        }
    }

    /// Needs that nothing is inside.
    template <class T, class... Arguments>
    T& construct(Arguments&&... arguments) {
        T& constructed = *std::construct_at(&content<T>(), std::forward<Arguments>(arguments)...);
        kind_ = kindOf<T>();
        return constructed;
    }

    /// Needs that nothing is inside.
    void takeOver(OpenAPIValueContainer& other) noexcept {
        kind_ = other.kind_;
        switch (kind_) {
        case Kind::absent:
            break;
        case Kind::boolean:
            boolean_ = other.boolean_;
            break;
        case Kind::integer:
            integer_ = other.integer_;
            break;
        case Kind::number:
            number_ = other.number_;
            break;
        case Kind::string:
            std::construct_at(&string_, std::move(other.string_));
            break;
        case Kind::list:
            std::construct_at(&list_, std::move(other.list_));
            break;
        case Kind::object:
            std::construct_at(&object_, std::move(other.object_));
            break;
        }
    }

    /// Leaves nothing inside.
    void destroy() noexcept {
        const Kind kind = kind_;
        kind_ = Kind::absent;
        if (kind == Kind::string) std::destroy_at(&string_);
        if (kind == Kind::list) std::destroy_at(&list_);
        if (kind == Kind::object) std::destroy_at(&object_);
    }

    union {
        std::int64_t integer_ = 0;
        bool boolean_;
        double number_;
        std::string string_;
        OpenAPIArrayContainer list_;
        OpenAPIObjectContainer object_;
    };

    Kind kind_ = Kind::absent;
};

// What needs the values to be complete.

inline OpenAPIArrayContainer::OpenAPIArrayContainer() noexcept = default;
inline OpenAPIArrayContainer::OpenAPIArrayContainer(const OpenAPIArrayContainer& other) = default;
inline OpenAPIArrayContainer::OpenAPIArrayContainer(OpenAPIArrayContainer&& other) noexcept = default;

inline OpenAPIObjectContainer::OpenAPIObjectContainer() noexcept = default;
inline OpenAPIObjectContainer::OpenAPIObjectContainer(const OpenAPIObjectContainer& other) = default;
inline OpenAPIObjectContainer::OpenAPIObjectContainer(OpenAPIObjectContainer&& other) noexcept = default;

inline std::size_t OpenAPIArrayContainer::size() const noexcept {
    return elements_.size();
}

inline bool OpenAPIArrayContainer::empty() const noexcept {
    return elements_.empty();
}

inline OpenAPIArrayContainer::OpenAPIArrayContainer(std::vector<OpenAPIValueContainer> elements) noexcept
    : elements_(std::move(elements)) {}

template <class... Elements>
    requires(
        sizeof...(Elements) > 0 && (detail::OpenAPIElement<std::decay_t<Elements>> && ...) &&
        !(sizeof...(Elements) == 1 && (std::same_as<std::decay_t<Elements>, OpenAPIArrayContainer> && ...))
    )
OpenAPIArrayContainer::OpenAPIArrayContainer(Elements&&... elements) {
    elements_.reserve(sizeof...(Elements));
    (elements_.emplace_back(std::forward<Elements>(elements)), ...);
}

template <detail::OpenAPIElements Range>
OpenAPIArrayContainer::OpenAPIArrayContainer(Range&& elements) {
    if constexpr (requires { std::ranges::size(elements); }) elements_.reserve(std::ranges::size(elements));
    for (auto&& element : elements)
        elements_.emplace_back(platform::RangeValue<Range>(std::forward<decltype(element)>(element)));
}

inline std::size_t OpenAPIObjectContainer::size() const noexcept {
    return members_.size();
}

inline bool OpenAPIObjectContainer::empty() const noexcept {
    return members_.empty();
}

template <detail::OpenAPIEntries Range>
    requires(!std::same_as<std::remove_cvref_t<Range>, std::vector<std::pair<std::string, OpenAPIValueContainer>>>)
OpenAPIObjectContainer::OpenAPIObjectContainer(Range&& entries)
    : OpenAPIObjectContainer([&entries] {
        std::vector<Member> members;
        for (auto&& entry : entries)
            members.emplace_back(entry.first, entry.second);
        return members;
    }()) {}

/// @name Diagnostic text, see platform/DiagnosticText.hpp
/// @{
QUILLBEAM_EXPORT void describe(std::string& out, const OpenAPIValueContainer& value);
QUILLBEAM_EXPORT void describe(std::string& out, const OpenAPIArrayContainer& value);
QUILLBEAM_EXPORT void describe(std::string& out, const OpenAPIObjectContainer& value);
/// @}

} // namespace OpenAPIRuntime::inline v1

/// @name Hashes; what is absent adds nothing to the hash of what it stands in
/// @{
template <>
struct std::hash<OpenAPIRuntime::OpenAPIValueContainer> {
    [[nodiscard]] QUILLBEAM_EXPORT std::size_t operator()(const OpenAPIRuntime::OpenAPIValueContainer& value
    ) const noexcept;
};

template <>
struct std::hash<OpenAPIRuntime::OpenAPIArrayContainer> {
    [[nodiscard]] QUILLBEAM_EXPORT std::size_t operator()(const OpenAPIRuntime::OpenAPIArrayContainer& value
    ) const noexcept;
};

template <>
struct std::hash<OpenAPIRuntime::OpenAPIObjectContainer> {
    [[nodiscard]] QUILLBEAM_EXPORT std::size_t operator()(const OpenAPIRuntime::OpenAPIObjectContainer& value
    ) const noexcept;
};

/// @}

/// @name Coding
/// @{
template <>
struct platform::Coding<OpenAPIRuntime::OpenAPIValueContainer> {
    static constexpr std::string_view typeName = "OpenAPIValueContainer";

    /// @throws DecodingError of the data-corrupted kind where there is none of the kinds of value
    QUILLBEAM_EXPORT static void decode(Decoder& decoder, OpenAPIRuntime::OpenAPIValueContainer& out);
    QUILLBEAM_EXPORT static void encode(Encoder& encoder, const OpenAPIRuntime::OpenAPIValueContainer& value);
};

template <>
struct platform::Coding<OpenAPIRuntime::OpenAPIArrayContainer> {
    static constexpr std::string_view typeName = "OpenAPIArrayContainer";
    static constexpr CodedShape shape = CodedShape::unkeyed;

    QUILLBEAM_EXPORT static void decode(Decoder& decoder, OpenAPIRuntime::OpenAPIArrayContainer& out);
    QUILLBEAM_EXPORT static void encode(Encoder& encoder, const OpenAPIRuntime::OpenAPIArrayContainer& value);
};

template <>
struct platform::Coding<OpenAPIRuntime::OpenAPIObjectContainer> {
    static constexpr std::string_view typeName = "OpenAPIObjectContainer";
    static constexpr CodedShape shape = CodedShape::keyed;

    QUILLBEAM_EXPORT static void decode(Decoder& decoder, OpenAPIRuntime::OpenAPIObjectContainer& out);
    QUILLBEAM_EXPORT static void encode(Encoder& encoder, const OpenAPIRuntime::OpenAPIObjectContainer& value);
};

/// @}

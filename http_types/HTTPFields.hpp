#pragma once

#include "http_types/HTTPField.hpp"
#include "platform/Export.hpp"
#include "platform/Ranges.hpp"
#include "platform/coding/TypeDescription.hpp"

#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace HTTPTypes::inline v1 {

/// The header fields of a message: an ordered multimap from name to value, and at the same time a random-access
/// collection of `HTTPField` in the order of insertion.
///
///     HTTPFields fields{{HTTPField::Name::accept, "application/json"}};
///     fields[HTTPField::Name::contentType] = "text/plain";
///     if (std::optional<std::string> type = fields[HTTPField::Name::contentType]) { ... }
///     for (const HTTPField& field : fields) { ... }
///
/// It is a value: copies are independent. Copying costs a reference count; the first change to one of two copies copies
/// the fields. Reading never copies them. An empty collection owns no memory.
///
/// Lookups by name take constant time on average, through an index that is built by the first lookup which gains from
/// it and kept up by `append`; only changes in the middle drop it.
///
/// Limits, which stop the program (`platform::stopOnProgrammingError`) when broken: at most 65,534 fields; no
/// pseudo-field names; positions within the collection.
///
/// Iterators are pointers to constant fields. Those of an object stay valid until that object is changed, assigned to
/// or destroyed; reading and copying it leaves them valid.
///
/// Thread safety: distinct objects may be used from different threads, also when they are copies of one another; a
/// shared one may be read by several at once.
class QUILLBEAM_EXPORT HTTPFields {
public:
    using value_type = HTTPField;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = const HTTPField&;
    using const_reference = const HTTPField&;
    using const_iterator = const HTTPField*;
    using iterator = const_iterator;

    class ValueReference;

    /// The most fields that a collection holds. Positions have 16 bits, and the highest one marks the end of a chain.
    static constexpr size_type maximumCount = 65534;

    HTTPFields() noexcept = default;

    /// The fields in their order; a pair of name and text makes a field.
    HTTPFields(std::initializer_list<HTTPField> fields);

    /// `count` copies of `repeating`.
    HTTPFields(size_type count, const HTTPField& repeating);

    HTTPFields(const HTTPFields& other) noexcept;
    HTTPFields(HTTPFields&& other) noexcept;
    HTTPFields& operator=(const HTTPFields& other) noexcept;
    HTTPFields& operator=(HTTPFields&& other) noexcept;
    ~HTTPFields();

    /// @name By name; only its canonical form selects
    /// @{

    /// All values of `name` as text, joined in order by "; " for the name `cookie` and by ", " for every other; nothing
    /// when there is no such field.
    [[nodiscard]] std::optional<std::string> value(const HTTPField::Name& name) const;

    [[nodiscard]] std::optional<std::string> operator[](const HTTPField::Name& name) const { return value(name); }

    /// The same to be read or assigned to; assigning is `setValue`.
    [[nodiscard]] ValueReference operator[](const HTTPField::Name& name);

    /// Makes `value` the one value of `name`: it takes the place of the first field of that name, any others go;
    /// without one it is appended. For the name `cookie` the text is split at every "; " into a list for `setValues`.
    /// No value removes all fields of the name.
    void setValue(const HTTPField::Name& name, std::optional<std::string_view> value);

    /// The values of `name` as text in their order; empty when there is none.
    [[nodiscard]] std::vector<std::string> values(const HTTPField::Name& name) const;

    /// Replaces the fields of `name` by fields of these values: existing fields are overwritten in their places, those
    /// left over are removed, values left over are appended. Fields of other names keep their order.
    void setValues(const HTTPField::Name& name, const std::vector<std::string>& values);

    /// The fields of `name` in their order; empty when there is none.
    [[nodiscard]] std::vector<HTTPField> fields(const HTTPField::Name& name) const;

    /// Replaces the fields of `name` by these, which all carry that name, in the manner of `setValues`.
    void setFields(const HTTPField::Name& name, std::vector<HTTPField> fields);

    [[nodiscard]] bool contains(const HTTPField::Name& name) const noexcept;

    /// The first field of `name`, or `end()`; copies nothing.
    [[nodiscard]] const_iterator find(const HTTPField::Name& name) const noexcept;

    /// @}
    /// @name By position
    /// @{

    [[nodiscard]] size_type size() const noexcept;

    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    [[nodiscard]] const_iterator begin() const noexcept;
    [[nodiscard]] const_iterator end() const noexcept;

    /// The field at `position`, which must be below `size()`.
    [[nodiscard]] const HTTPField& operator[](size_type position) const;

    /// Replaces the field at `position`, which must be below `size()`.
    void set(size_type position, HTTPField field);

    /// Replaces the fields from position `first` up to, not including, `last` by `fields`; `first <= last <= size()`.
    void replaceSubrange(size_type first, size_type last, std::vector<HTTPField> fields);

    /// Adds a field at the end. Amortised constant time.
    void append(HTTPField field);

    void push_back(HTTPField field) { append(std::move(field)); }

    /// Adds all fields of a range at the end, in its order. The range may be this collection.
    template <platform::InputRange Fields>
        requires std::convertible_to<platform::RangeReference<Fields>, HTTPField>
    void append(Fields&& fields) {
        std::vector<HTTPField> added;
        for (auto&& field : fields) {
            added.emplace_back(std::forward<decltype(field)>(field));
        }
        replaceSubrange(size(), size(), std::move(added));
    }

    /// Puts a field before the one at `position`, or at the end when that is `size()`.
    void insert(size_type position, HTTPField field);

    /// Removes the field at `position`, which must be below `size()`, and returns it.
    HTTPField remove(size_type position);

    /// Removes the fields for which `predicate` holds, keeping the order of the others; returns how many went.
    template <std::predicate<const HTTPField&> Predicate>
    size_type removeAll(Predicate&& predicate) {
        // The predicate is asked about every field before any moves, so that one which throws changes nothing.
        std::vector<bool> goes;
        for (const HTTPField& field : *this) {
            goes.push_back(predicate(field));
        }
        return removeMarked(goes);
    }

    /// Removes all fields.
    void clear() noexcept;

    /// Makes room for `count` fields in all.
    void reserveCapacity(size_type count);

    /// @}

    /// Whether both hold the same fields, where the order counts within one name only: [A: 1, B: 2] equals
    /// [B: 2, A: 1], and [A: 1, A: 2] differs from [A: 2, A: 1]. Linear time on average.
    [[nodiscard]] bool operator==(const HTTPFields& other) const;

    /// The descriptions of the fields in their order, as a list in brackets.
    [[nodiscard]] std::string debugDescription() const;

    /// The fields in ascending order of their canonical names, each as canonical name, ": " and value, joined by "; ".
    [[nodiscard]] std::string prettyDescription() const;

private:
    struct Storage;

    /// Removes the fields at the positions that are marked; one mark a field. Returns how many went.
    size_type removeMarked(const std::vector<bool>& goes);

    /// The storage, made this object's own first.
    Storage& uniqueStorage();

    Storage* storage_ = nullptr; // none stands for no fields
};

/// What `fields[name]` gives on a collection that may be changed: it reads and writes the joined value of the name.
/// It refers to the collection and to the name; use it within the expression that made it.
class HTTPFields::ValueReference {
public:
    ValueReference(const ValueReference&) = delete;

    ValueReference& operator=(const ValueReference& other) {
        return *this = static_cast<std::optional<std::string>>(other);
    }

    template <std::convertible_to<std::string_view> Text>
    ValueReference& operator=(const Text& value) {
        fields_.setValue(name_, std::string_view(value));
        return *this;
    }

    ValueReference& operator=(const std::optional<std::string>& value) {
        fields_.setValue(name_, value);
        return *this;
    }

    ValueReference& operator=(std::nullopt_t) {
        fields_.setValue(name_, std::nullopt);
        return *this;
    }

    operator std::optional<std::string>() const { return fields_.value(name_); }

    [[nodiscard]] bool has_value() const { return fields_.contains(name_); }

    explicit operator bool() const { return has_value(); }

    /// The value; throws `std::bad_optional_access` where there is none.
    // NOLINTNEXTLINE(bugprone-unchecked-optional-access): documented
    [[nodiscard]] std::string value() const { return fields_.value(name_).value(); }

    [[nodiscard]] std::string operator*() const { return value(); }

    [[nodiscard]] std::string value_or(std::string alternative) const {
        return fields_.value(name_).value_or(std::move(alternative));
    }

    template <std::convertible_to<std::string_view> Text>
    friend bool operator==(const ValueReference& left, const Text& right) {
        return left.fields_.value(left.name_) == std::string_view(right);
    }

    friend bool operator==(const ValueReference& left, const std::optional<std::string>& right) {
        return left.fields_.value(left.name_) == right;
    }

    friend bool operator==(const ValueReference& left, std::nullopt_t) { return !left.has_value(); }

private:
    friend class HTTPFields;

    ValueReference(HTTPFields& fields, const HTTPField::Name& name) noexcept
        : fields_(fields)
        , name_(name) {}

    HTTPFields& fields_;
    const HTTPField::Name& name_;
};

inline HTTPFields::ValueReference HTTPFields::operator[](const HTTPField::Name& name) {
    return {*this, name};
}

} // namespace HTTPTypes::inline v1

template <>
struct QUILLBEAM_EXPORT std::hash<HTTPTypes::HTTPFields> {
    std::size_t operator()(const HTTPTypes::HTTPFields& fields) const noexcept;
};

/// The fields are coded as a list in their order. A pseudo-field, or more than `maximumCount` fields, fails as
/// corrupted data.
template <>
struct QUILLBEAM_EXPORT platform::Coding<HTTPTypes::HTTPFields> {
    static constexpr std::string_view typeName = "HTTPFields";
    static constexpr CodedShape shape = CodedShape::unkeyed;

    static void decode(Decoder& decoder, HTTPTypes::HTTPFields& out);
    static void encode(Encoder& encoder, const HTTPTypes::HTTPFields& value);
};

#pragma once

#include "platform/DiagnosticText.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/coding/HashValue.hpp"
#include "platform/coding/KeyHash.hpp"
#include "platform/coding/Record.hpp"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

/// For the source file of a record: the one table of its fields.
///
///     const platform::RecordFields& TagDTO::recordFields() {
///         using platform::field;
///         static const platform::RecordTable table("TagDTO", field("id", &TagDTO::id), field("name", &TagDTO::name));
///         return table;
///     }
///
/// Fields are encoded and described in the table's order. A `std::optional` member may be missing or null and is left
/// out where it has no value; any other member is required. Members that the table does not name are ignored on
/// decoding.
namespace platform::inline v1 {

namespace detail {

/// What can be done to a field, by its type.
struct FieldOperations {
    void (*decode)(KeyedReader& reader, std::string_view key, void* member);
    void (*encode)(KeyedEncodingContainer& container, std::string_view key, const void* member);
    std::size_t (*hash)(const void* member);
    void (*describe)(std::string& out, const void* member);
    bool (*hasValue)(const void* member);
    void (*encodeAlone)(Encoder& encoder, const void* member); ///< without the key
    CodedKind kind;                                            ///< of every coded value; `unknown` where that varies
    bool isRequired;
};

/// What every coded value of a type is, as far as the type tells.
template <class M>
consteval CodedKind codedKindOf() {
    if constexpr (isOptional<M>) {
        return codedKindOf<typename M::value_type>();
    } else if constexpr (std::same_as<M, bool>) {
        return CodedKind::boolean;
    } else if constexpr (CodedScalar<M> && !std::same_as<M, Date>) {
        return std::is_arithmetic_v<M> ? CodedKind::number : CodedKind::string;
    } else if constexpr (codedShapeOf<M>() == CodedShape::unkeyed) {
        return CodedKind::list;
    } else if constexpr (codedShapeOf<M>() == CodedShape::keyed) {
        return CodedKind::object;
    } else {
        return CodedKind::unknown;
    }
}

template <class M>
inline constexpr FieldOperations fieldOperations{
    [](KeyedReader& reader, std::string_view key, void* member) {
        if constexpr (isOptional<M>) {
            readMemberIfPresent(reader, key, *static_cast<M*>(member));
        } else {
            readMember(reader, key, *static_cast<M*>(member));
        }
    },
    [](KeyedEncodingContainer& container, std::string_view key, const void* member) {
        if constexpr (isOptional<M>) {
            container.encodeIfPresent(key, *static_cast<const M*>(member));
        } else {
            container.encode(key, *static_cast<const M*>(member));
        }
    },
    [](const void* member) { return hashValue(*static_cast<const M*>(member)); },
    [](std::string& out, const void* member) { appendDiagnosticText(out, *static_cast<const M*>(member)); },
    [](const void* member) {
        if constexpr (isOptional<M>) return static_cast<const M*>(member)->has_value();
        static_cast<void>(member);
        return true;
    },
    [](Encoder& encoder, const void* member) { Coding<M>::encode(encoder, *static_cast<const M*>(member)); },
    codedKindOf<M>(),
    !isOptional<M>,
};

/// One row of a record's table, without types.
struct FieldSlot {
    std::string_view key;
    std::string_view label;
    const FieldOperations* operations = nullptr;
    std::size_t offset = 0;             ///< of the member in the record, in bytes
    std::uint32_t hash = 0;             ///< of the key
    std::uint16_t nextInClass = 0xFFFF; ///< the next field whose hash is of the same class

    [[nodiscard]] void* memberOf(void* record) const noexcept { return static_cast<std::byte*>(record) + offset; }

    [[nodiscard]] const void* memberOf(const void* record) const noexcept {
        return static_cast<const std::byte*>(record) + offset;
    }
};

} // namespace detail

/// One field: the key it has when coded, the member, and the name it has in diagnostic text.
template <class T, class M>
struct Field {
    std::string_view key;
    M T::* member;
    std::string_view label;
};

/// @param key must live as long as the process: a literal
/// @param label the member's name where it is not the key
template <class T, class M>
[[nodiscard]] constexpr Field<T, M> field(std::string_view key, M T::* member, std::string_view label = {}) {
    return {key, member, label.empty() ? key : label};
}

/// The fields of a record without its type: what coding, hashing and diagnostic text share.
class QUILLBEAM_EXPORT RecordFields {
public:
    RecordFields(const RecordFields&) = delete;
    RecordFields& operator=(const RecordFields&) = delete;

    [[nodiscard]] std::string_view typeName() const noexcept { return typeName_; }

    /// The fields in the order of declaration.
    [[nodiscard]] std::span<const detail::FieldSlot> slots() const noexcept { return slots_; }

    /// The positions of the fields in ascending order of their keys.
    [[nodiscard]] std::span<const std::uint16_t> sorted() const noexcept { return sorted_; }

    /// The position of the field with a key; the number of fields where there is none.
    [[nodiscard]] std::size_t find(std::string_view key) const noexcept {
        const std::uint32_t hash = detail::keyHash(key);
        for (std::size_t at = firstInClass_[hash % detail::keyHashClasses]; at < slots_.size();) {
            const detail::FieldSlot& slot = slots_[at];
            if (slot.hash == hash && slot.key == key) return at;
            at = slot.nextInClass;
        }
        return slots_.size();
    }

protected:
    RecordFields(
        std::string_view typeName, std::span<detail::FieldSlot> slots, std::span<std::uint16_t> sorted
    ) noexcept
        : typeName_(typeName)
        , slots_(slots)
        , sorted_(sorted) {
        firstInClass_.fill(0xFFFF);
    }

    ~RecordFields() = default;

    /// To be called once the slots are filled.
    void index(std::span<detail::FieldSlot> slots, std::span<std::uint16_t> sorted) noexcept;

private:
    std::string_view typeName_;
    std::span<const detail::FieldSlot> slots_;
    std::span<const std::uint16_t> sorted_;
    std::array<std::uint16_t, detail::keyHashClasses> firstInClass_{}; ///< where the search of a class begins
};

/// The fields of the record `T`. To be made once, as a static object, in place.
template <class T, std::size_t N>
class RecordTable final : public RecordFields {
public:
    /// @param typeName the record's name in texts; must live as long as the process
    template <class... M>
    explicit RecordTable(std::string_view typeName, Field<T, M>... fields)
        : RecordFields(typeName, slots_, sorted_) {
        const T probe{}; // offsets are measured on a live object: a pointer to member does not tell them portably
        const auto offsetOf = [&probe](const auto& member) {
            return static_cast<std::size_t>(
                reinterpret_cast<const std::byte*>(std::addressof(member)) -
                reinterpret_cast<const std::byte*>(std::addressof(probe))
            );
        };
        slots_ = {detail::FieldSlot{
            fields.key, fields.label, &detail::fieldOperations<M>, offsetOf(probe.*(fields.member))
        }...};
        index(slots_, sorted_);
    }

private:
    std::array<detail::FieldSlot, N> slots_{};
    std::array<std::uint16_t, N> sorted_{};
};

template <class T, class... M>
RecordTable(std::string_view, Field<T, M>...) -> RecordTable<T, sizeof...(M)>;

/// One field of one record, without their types: for code that treats the fields of any record one by one.
///
/// It can be encoded, as the field's value without its key. It refers to the record, which must outlive it.
class FieldValue {
public:
    FieldValue(const detail::FieldSlot& slot, const void* record) noexcept
        : slot_(&slot)
        , member_(slot.memberOf(record)) {}

    /// The key that the field has when coded.
    [[nodiscard]] std::string_view key() const noexcept { return slot_->key; }

    /// False for an optional field without a value.
    [[nodiscard]] bool hasValue() const { return slot_->operations->hasValue(member_); }

    void encode(Encoder& encoder) const { slot_->operations->encodeAlone(encoder, member_); }

private:
    const detail::FieldSlot* slot_;
    const void* member_;
};

template <>
struct Coding<FieldValue> {
    static void encode(Encoder& encoder, const FieldValue& value) { value.encode(encoder); }
};

} // namespace platform::inline v1

#pragma once

#include "platform/Export.hpp"
#include "platform/coding/CodingPath.hpp"
#include "platform/coding/Here.hpp"
#include "platform/coding/InPlace.hpp"
#include "platform/coding/TypeDescription.hpp"
#include "platform/date/Date.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The reading half of value coding: what a type is written against to be decoded from any coded form.
///
/// An application meets `Decoder` and its three containers; the classes named `...Reader` are what a coder implements.
/// A type reads itself in `Coding<T>::decode(Decoder&, T&)` (platform/coding/Coding.hpp), through one of
///
///     auto container = decoder.container();               // an object with keys
///     container.decode("name", value.name);               // throws where it is missing, null or of another kind
///     container.decodeIfPresent("title", value.title);    // an optional; missing and null read as no value
///
///     auto container = decoder.unkeyedContainer();        // a list
///     while (!container.isAtEnd()) container.decode(value.emplace_back());
///
///     auto container = decoder.singleValueContainer();    // anything, as one value
///     container.decode(text);
///
/// Lifetimes: a container is used while its decoder lives, and a nested container while the one it came from and the
/// key it was asked for live. Failures are `DecodingError`s, or what a coder documents beyond. Decoders are used by one
/// thread at a time.
namespace platform::inline v1 {

class Decoder;
class KeyedDecodingContainer;
class UnkeyedDecodingContainer;
class SingleValueDecodingContainer;
class RecordFields;
class ValueEvents;
struct UserInfo;

/// How an attempt to read one value ended. Only the outermost step turns what is not `ok` into an error, so that
/// trying one type after another is cheap.
enum class Read : std::uint8_t {
    ok,
    absent,          ///< no such member, or no more elements
    null,            ///< there is a null
    mismatch,        ///< the value is of another kind
    unrepresentable, ///< of the right kind, but no value of the type
};

/// What a value is, as far as a coder can tell without reading it.
enum class CodedKind : std::uint8_t {
    unknown, ///< the coder's form does not tell, or there is no value
    null,
    boolean,
    number,
    string,
    list,
    object,
};

/// Which integer type is asked for.
struct IntegerKind {
    std::uint8_t bits;
    bool isSigned;
};

/// A type that decodes itself, without its type.
struct DecodeOperations {
    std::string (*typeName)();
    CodedShape shape;
    void (*decode)(Decoder&, void* out);
};

/// What a coder implements to give the values at one kind of place: by key, at the cursor of a list, or right here.
///
/// Each reader sets its result only when it returns `Read::ok`, but `value`, which may leave a partly decoded value
/// behind when it throws.
template <class Place>
class QUILLBEAM_EXPORT ValueReader {
public:
    [[nodiscard]] virtual CodingPath codingPath() const = 0;

    /// What the value is, where the coder can tell.
    [[nodiscard]] virtual CodedKind kind(Place /*place*/) const { return CodedKind::unknown; }

    /// Tells the whole value piece by piece and consumes it, for one who takes any kind. A key that comes twice is told
    /// twice; its first value counts.
    /// @return `ok`; `mismatch`, before any event, where the coder's form does not tell kinds; `absent` where there is
    /// no value; `unrepresentable`, after some events, where a number is none that an event can hold
    [[nodiscard]] virtual Read events(Place /*place*/, ValueEvents& /*events*/) { return Read::mismatch; }

    /// True, and the value is consumed, where there is a null.
    [[nodiscard]] virtual bool nil(Place place) = 0;
    [[nodiscard]] virtual Read boolean(Place place, bool& out) = 0;
    [[nodiscard]] virtual Read string(Place place, std::string& out) = 0;
    [[nodiscard]] virtual Read number(Place place, double& out) = 0;
    [[nodiscard]] virtual Read number(Place place, float& out) = 0;
    /// @param out the value as 64 bits in two's complement, in range of `kind`
    [[nodiscard]] virtual Read integer(Place place, IntegerKind kind, std::uint64_t& out) = 0;
    /// A failure of the coder's date strategy passes out as it is.
    [[nodiscard]] virtual Read date(Place place, Date& out) = 0;
    /// Lets a value decode itself; its failures pass out as they are.
    [[nodiscard]] virtual Read value(Place place, const DecodeOperations& operations, void* out) = 0;
    /// Throws the error that `read` (not `ok`) at `place` stands for.
    virtual void fail(Read read, Place place, std::string typeName) const = 0;
    /// Throws a `DecodingError` of the data-corrupted kind for the value at `place`.
    virtual void corrupted(Place place, std::string debugDescription) const = 0;

protected:
    ~ValueReader() = default;
};

class QUILLBEAM_EXPORT KeyedReader : public ValueReader<std::string_view> {
public:
    [[nodiscard]] virtual bool contains(std::string_view key) const = 0;
    [[nodiscard]] virtual std::vector<std::string> allKeys() const = 0;
    [[nodiscard]] virtual KeyedDecodingContainer nestedContainer(std::string_view key) = 0;
    [[nodiscard]] virtual UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view key) = 0;
    [[nodiscard]] virtual std::unique_ptr<Decoder> superDecoder(std::string_view key) = 0;
    /// Goes to the next member in coded order and tells its key, for one who reads all members: the value is then read
    /// under that key. Each key comes once. False at the end.
    /// @param cursor 0 at the start; whatever the coder stores there in between
    [[nodiscard]] virtual bool nextKey(std::size_t& cursor, std::string& key) const = 0;
    /// Reads all fields of a record, and fails, in the order of declaration. A coder that can find the members of an
    /// object better together than one by one does so here.
    /// @param record of the type that `fields` describes
    virtual void fields(const RecordFields& fields, void* record);

protected:
    ~KeyedReader() = default;
};

class QUILLBEAM_EXPORT UnkeyedReader : public ValueReader<Here> {
public:
    [[nodiscard]] virtual std::optional<std::size_t> count() const = 0;
    [[nodiscard]] virtual bool isAtEnd() const = 0;
    [[nodiscard]] virtual std::size_t currentIndex() const = 0;
    [[nodiscard]] virtual KeyedDecodingContainer nestedContainer() = 0;
    [[nodiscard]] virtual UnkeyedDecodingContainer nestedUnkeyedContainer() = 0;
    [[nodiscard]] virtual std::unique_ptr<Decoder> superDecoder() = 0;

protected:
    ~UnkeyedReader() = default;
};

using SingleValueReader = ValueReader<Here>;

namespace detail {
/// Reads a value of any type at a place; see Coding.hpp.
template <class Place, class T>
[[nodiscard]] Read readValue(ValueReader<Place>& reader, Place place, T& out);
template <class T>
[[nodiscard]] bool tryRead(SingleValueReader& reader, T& out);

/// Reads a member of any type; throws where it is missing, null, of another kind or out of range.
template <class T>
void readMember(KeyedReader& reader, std::string_view key, T& out) {
    const Read read = readValue(static_cast<ValueReader<std::string_view>&>(reader), key, out);
    if (read != Read::ok) reader.fail(read, key, typeNameOf<T>());
}

/// Reads a member that may be missing or null; throws where it is of another kind or out of range.
template <class T>
void readMemberIfPresent(KeyedReader& reader, std::string_view key, std::optional<T>& out) {
    const Read read = readValue(static_cast<ValueReader<std::string_view>&>(reader), key, emplaceBlank(out));
    if (read == Read::ok) return;
    out.reset();
    if (read != Read::absent && read != Read::null) reader.fail(read, key, typeNameOf<T>());
}
} // namespace detail

/// The members of an object, read by key in any order; reading them in coded order is cheapest. Of a key that comes
/// twice the first counts.
class KeyedDecodingContainer : public detail::InPlace<KeyedReader> {
public:
    using InPlace::InPlace;

    [[nodiscard]] CodingPath codingPath() const { return implementation().codingPath(); }

    /// Every key, once each, in coded order.
    [[nodiscard]] std::vector<std::string> allKeys() const { return implementation().allKeys(); }

    /// Whether there is such a member, null or not.
    [[nodiscard]] bool contains(std::string_view key) const { return implementation().contains(key); }

    /// Whether the member is null.
    /// @throws DecodingError of the key-not-found kind where a coder tells null from missing and it is missing
    [[nodiscard]] bool decodeNil(std::string_view key) { return implementation().nil(key); }

    /// Reads a member.
    /// @throws DecodingError where it is missing, null, of another kind or out of range
    template <class T>
    void decode(std::string_view key, T& out) {
        detail::readMember(implementation(), key, out);
    }

    template <class T>
    [[nodiscard]] T decode(std::string_view key) {
        T value = detail::blankFor<T>();
        decode(key, value);
        return value;
    }

    /// Reads a member that may be missing or null: then `out` is left without a value.
    /// @throws DecodingError where it is of another kind or out of range
    template <class T>
    void decodeIfPresent(std::string_view key, std::optional<T>& out) {
        detail::readMemberIfPresent(implementation(), key, out);
    }

    template <class T>
    [[nodiscard]] std::optional<T> decodeIfPresent(std::string_view key) {
        std::optional<T> value;
        decodeIfPresent(key, value);
        return value;
    }

    /// The member as an object. `key` must stay valid as long as the result.
    [[nodiscard]] KeyedDecodingContainer nestedContainer(std::string_view key) {
        return implementation().nestedContainer(key);
    }

    /// The member as a list. `key` must stay valid as long as the result.
    [[nodiscard]] UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view key);

    /// A decoder on the member "super", where a value that is made of two keeps its inner half.
    [[nodiscard]] std::unique_ptr<Decoder> superDecoder() { return implementation().superDecoder("super"); }

    /// A decoder on a member; a missing one reads as null. `key` must stay valid as long as the result.
    [[nodiscard]] std::unique_ptr<Decoder> superDecoder(std::string_view key) {
        return implementation().superDecoder(key);
    }

    /// Throws a `DecodingError` of the data-corrupted kind for the value of `key`.
    void throwDataCorrupted(std::string_view key, std::string debugDescription) const {
        implementation().corrupted(key, std::move(debugDescription));
    }
};

/// The elements of a list, read one after the other.
class UnkeyedDecodingContainer : public detail::InPlace<UnkeyedReader> {
public:
    using InPlace::InPlace;

    [[nodiscard]] CodingPath codingPath() const { return implementation().codingPath(); }

    /// The number of all elements, where the coder knows it.
    [[nodiscard]] std::optional<std::size_t> count() const { return implementation().count(); }

    [[nodiscard]] bool isAtEnd() const { return implementation().isAtEnd(); }

    /// The position of the next element, counted from 0.
    [[nodiscard]] std::size_t currentIndex() const { return implementation().currentIndex(); }

    /// Whether the next element is null; only then it is passed.
    [[nodiscard]] bool decodeNil() { return implementation().nil(Here{}); }

    /// Reads the next element and passes it.
    /// @throws DecodingError where there is none, or it is null, of another kind or out of range; it is not passed then
    template <class T>
    void decode(T& out) {
        const Read read = detail::readValue(static_cast<ValueReader<Here>&>(implementation()), Here{}, out);
        if (read != Read::ok) implementation().fail(read, Here{}, typeNameOf<T>());
    }

    template <class T>
    [[nodiscard]] T decode() {
        T value = detail::blankFor<T>();
        decode(value);
        return value;
    }

    /// Reads the next element and passes it; a null, or the end of the list, gives no value.
    template <class T>
    void decodeIfPresent(std::optional<T>& out) {
        out.reset();
        if (!isAtEnd() && !decodeNil()) decode(detail::emplaceBlank(out));
    }

    template <class T>
    [[nodiscard]] std::optional<T> decodeIfPresent() {
        std::optional<T> value;
        decodeIfPresent(value);
        return value;
    }

    /// The next element as an object; passes it.
    [[nodiscard]] KeyedDecodingContainer nestedContainer() { return implementation().nestedContainer(); }

    /// The next element as a list; passes it.
    [[nodiscard]] UnkeyedDecodingContainer nestedUnkeyedContainer() {
        return implementation().nestedUnkeyedContainer();
    }

    /// A decoder on the next element; passes it.
    [[nodiscard]] std::unique_ptr<Decoder> superDecoder() { return implementation().superDecoder(); }

    /// Throws a `DecodingError` of the data-corrupted kind for the list as a whole.
    [[noreturn]] QUILLBEAM_EXPORT void throwDataCorrupted(std::string debugDescription) const;
};

/// One value.
class SingleValueDecodingContainer : public detail::InPlace<SingleValueReader> {
public:
    using InPlace::InPlace;

    [[nodiscard]] CodingPath codingPath() const { return implementation().codingPath(); }

    [[nodiscard]] bool decodeNil() { return implementation().nil(Here{}); }

    /// @throws DecodingError where the value is null, of another kind or out of range
    template <class T>
    void decode(T& out) {
        const Read read = detail::readValue(implementation(), Here{}, out);
        if (read != Read::ok) implementation().fail(read, Here{}, typeNameOf<T>());
    }

    template <class T>
    [[nodiscard]] T decode() {
        T value = detail::blankFor<T>();
        decode(value);
        return value;
    }

    /// Tries to read the value as a `T`: false instead of a `DecodingError`. Costs no exception where the kind of the
    /// value alone tells that it is none.
    template <class T>
    [[nodiscard]] bool tryDecode(T& out) {
        return detail::tryRead(implementation(), out);
    }

    /// Throws a `DecodingError` of the data-corrupted kind for this value.
    void throwDataCorrupted(std::string debugDescription) const {
        implementation().corrupted(Here{}, std::move(debugDescription));
    }
};

/// A place in something coded, from which a value reads itself.
class QUILLBEAM_EXPORT Decoder {
public:
    virtual ~Decoder();

    /// The way here from the top.
    [[nodiscard]] virtual CodingPath codingPath() const = 0;

    /// What the application handed to the coder.
    [[nodiscard]] virtual const UserInfo& userInfo() const;

    /// The value here as an object with keys.
    /// @throws DecodingError of the type-mismatch kind where it is none, of the value-not-found kind where it is null
    [[nodiscard]] virtual KeyedDecodingContainer container() = 0;

    /// The value here as a list; throws like `container()`.
    [[nodiscard]] virtual UnkeyedDecodingContainer unkeyedContainer() = 0;

    /// The value here, whatever it is.
    [[nodiscard]] virtual SingleValueDecodingContainer singleValueContainer() = 0;
};

inline UnkeyedDecodingContainer KeyedDecodingContainer::nestedUnkeyedContainer(std::string_view key) {
    return implementation().nestedUnkeyedContainer(key);
}

} // namespace platform::inline v1

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
#include <string_view>
#include <utility>

/// The writing half of value coding: what a type is written against to be encoded into any coded form.
///
/// An application meets `Encoder` and its three containers; the classes named `...Writer` are what a coder implements.
/// A type writes itself in `Coding<T>::encode(Encoder&, const T&)` (platform/coding/Coding.hpp), through one of
///
///     auto container = encoder.container();                 // an object with keys
///     container.encode("name", value.name);
///     container.encodeIfPresent("title", value.title);      // leaves the member out where there is no value
///
///     auto container = encoder.unkeyedContainer();          // a list
///     for (const auto& element : value) container.encode(element);
///
///     auto container = encoder.singleValueContainer();      // one value
///     container.encode(text);
///
/// Lifetimes: a container is used while its encoder lives, and a nested container or encoder while the one it came
/// from, and the key it was asked for, live. Failures are `EncodingError`s, or what a coder documents beyond. Encoders
/// are used by one thread at a time.
namespace platform::inline v1 {

class Encoder;
class KeyedEncodingContainer;
class UnkeyedEncodingContainer;
class SingleValueEncodingContainer;
class ValueEvents;
struct UserInfo;

/// A type that encodes itself, without its type.
struct EncodeOperations {
    void (*encode)(Encoder&, const void* value);
};

/// What a coder implements to take the values at one kind of place: by key, at the end of a list, or right here.
template <class Place>
class QUILLBEAM_EXPORT ValueWriter {
public:
    [[nodiscard]] virtual CodingPath codingPath() const = 0;

    virtual void nil(Place place) = 0;
    virtual void boolean(Place place, bool value) = 0;
    virtual void string(Place place, std::string_view value) = 0;
    virtual void number(Place place, double value) = 0;
    /// Of its own, since a coder may write the shortest text of the narrower type.
    virtual void number(Place place, float value) = 0;
    virtual void integer(Place place, std::int64_t value) = 0;
    virtual void unsignedInteger(Place place, std::uint64_t value) = 0;
    /// A failure of the coder's date strategy passes out as it is.
    virtual void date(Place place, Date value) = 0;

    /// Lets a value tell itself piece by piece, the members of each object once each and in ascending order of their
    /// keys. False, and nothing is written, where the coder does not take values that way, or not this one: it is then
    /// to be encoded in another way, which tells what is wrong with it.
    [[nodiscard]] virtual bool
    events(Place /*place*/, void (* /*tell*/)(ValueEvents& events, const void* value), const void* /*value*/) {
        return false;
    }

    /// Lets a value encode itself; its failures pass out as they are.
    virtual void value(Place place, const EncodeOperations& operations, const void* value) = 0;

protected:
    ~ValueWriter() = default;
};

class QUILLBEAM_EXPORT KeyedWriter : public ValueWriter<std::string_view> {
public:
    /// Whether members should come in ascending order of their keys: the coder is then faster.
    [[nodiscard]] virtual bool prefersSortedKeys() const { return false; }

    [[nodiscard]] virtual KeyedEncodingContainer nestedContainer(std::string_view key) = 0;
    [[nodiscard]] virtual UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view key) = 0;
    [[nodiscard]] virtual std::unique_ptr<Encoder> superEncoder(std::string_view key) = 0;

protected:
    ~KeyedWriter() = default;
};

class QUILLBEAM_EXPORT UnkeyedWriter : public ValueWriter<Here> {
public:
    [[nodiscard]] virtual std::size_t count() const = 0;
    [[nodiscard]] virtual KeyedEncodingContainer nestedContainer() = 0;
    [[nodiscard]] virtual UnkeyedEncodingContainer nestedUnkeyedContainer() = 0;
    [[nodiscard]] virtual std::unique_ptr<Encoder> superEncoder() = 0;

protected:
    ~UnkeyedWriter() = default;
};

using SingleValueWriter = ValueWriter<Here>;

namespace detail {
/// Writes a value of any type at a place; see Coding.hpp.
template <class Place, class T>
void writeValue(ValueWriter<Place>& writer, Place place, const T& value);
} // namespace detail

/// Members of an object. A key that is encoded twice keeps its last value.
class KeyedEncodingContainer : public detail::InPlace<KeyedWriter> {
public:
    using InPlace::InPlace;

    [[nodiscard]] CodingPath codingPath() const { return implementation().codingPath(); }

    void encodeNil(std::string_view key) { implementation().nil(key); }

    template <class T>
    void encode(std::string_view key, const T& value) {
        detail::writeValue(static_cast<ValueWriter<std::string_view>&>(implementation()), key, value);
    }

    /// Leaves the member out where there is no value.
    template <class T>
    void encodeIfPresent(std::string_view key, const std::optional<T>& value) {
        if (value) encode(key, *value);
    }

    [[nodiscard]] KeyedEncodingContainer nestedContainer(std::string_view key) {
        return implementation().nestedContainer(key);
    }

    [[nodiscard]] UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view key);

    /// An encoder for the member "super", where a value that is made of two puts its inner half.
    [[nodiscard]] std::unique_ptr<Encoder> superEncoder() { return implementation().superEncoder("super"); }

    [[nodiscard]] std::unique_ptr<Encoder> superEncoder(std::string_view key) {
        return implementation().superEncoder(key);
    }
};

/// Elements of a list.
class UnkeyedEncodingContainer : public detail::InPlace<UnkeyedWriter> {
public:
    using InPlace::InPlace;

    [[nodiscard]] CodingPath codingPath() const { return implementation().codingPath(); }

    /// The number of elements so far.
    [[nodiscard]] std::size_t count() const { return implementation().count(); }

    void encodeNil() { implementation().nil(Here{}); }

    template <class T>
    void encode(const T& value) {
        detail::writeValue(static_cast<ValueWriter<Here>&>(implementation()), Here{}, value);
    }

    [[nodiscard]] KeyedEncodingContainer nestedContainer() { return implementation().nestedContainer(); }

    [[nodiscard]] UnkeyedEncodingContainer nestedUnkeyedContainer() {
        return implementation().nestedUnkeyedContainer();
    }

    [[nodiscard]] std::unique_ptr<Encoder> superEncoder() { return implementation().superEncoder(); }
};

/// One value; it is encoded once.
class SingleValueEncodingContainer : public detail::InPlace<SingleValueWriter> {
public:
    using InPlace::InPlace;

    [[nodiscard]] CodingPath codingPath() const { return implementation().codingPath(); }

    void encodeNil() { implementation().nil(Here{}); }

    template <class T>
    void encode(const T& value) {
        detail::writeValue(implementation(), Here{}, value);
    }
};

/// A place in something that is being coded, to which a value writes itself.
class QUILLBEAM_EXPORT Encoder {
public:
    virtual ~Encoder();

    /// The way here from the top.
    [[nodiscard]] virtual CodingPath codingPath() const = 0;

    /// What the application handed to the coder.
    [[nodiscard]] virtual const UserInfo& userInfo() const;

    /// Makes the value here an object with keys. Asking twice gives two containers on the same object.
    [[nodiscard]] virtual KeyedEncodingContainer container() = 0;

    /// Makes the value here a list. Asking twice gives two containers on the same list.
    [[nodiscard]] virtual UnkeyedEncodingContainer unkeyedContainer() = 0;

    /// Makes the value here one value.
    [[nodiscard]] virtual SingleValueEncodingContainer singleValueContainer() = 0;
};

inline UnkeyedEncodingContainer KeyedEncodingContainer::nestedUnkeyedContainer(std::string_view key) {
    return implementation().nestedUnkeyedContainer(key);
}

} // namespace platform::inline v1

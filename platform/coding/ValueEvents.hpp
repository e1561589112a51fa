#pragma once

#include "platform/Export.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform::inline v1 {

/// A value of any kind with everything in it, told piece by piece in coded order: how free-form values come out of a
/// coder and go into one in a single pass, without a container and a question for each of them.
///
/// The members of an object come as `key` and value in turn, the elements of a list one behind the other.
class QUILLBEAM_EXPORT ValueEvents {
public:
    virtual void null() = 0;
    virtual void boolean(bool value) = 0;
    /// A number that is integral and in range.
    virtual void integer(std::int64_t value) = 0;
    /// Any other number.
    virtual void number(double value) = 0;
    virtual void string(std::string_view value) = 0;
    /// @param count of the elements that follow
    virtual void beginList(std::size_t count) = 0;
    virtual void endList() = 0;
    /// @param count of the members that follow
    virtual void beginObject(std::size_t count) = 0;
    virtual void key(std::string_view key) = 0;
    virtual void endObject() = 0;

protected:
    ~ValueEvents() = default;
};

} // namespace platform::inline v1

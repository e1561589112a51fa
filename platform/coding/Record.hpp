#pragma once

#include "platform/Export.hpp"

#include <concepts>
#include <cstddef>
#include <string> // and with it the declaration of std::hash

namespace platform::inline v1 {

class RecordFields;

/// A struct that declares its fields once, in its source file, and gets coding, hashing and diagnostic text from that.
///
/// Its header shows one line, and needs nothing but this header:
///
///     struct QUILLBEAM_EXPORT TagDTO {
///         std::optional<std::string> id{};
///         std::string name{};
///         ...
///         static const platform::RecordFields& recordFields();
///     };
///
/// Its source file includes platform/coding/Fields.hpp and defines that function. `std::hash<TagDTO>`,
/// `platform::Coding<TagDTO>` and `platform::diagnosticText(tag)` then work.
template <class T>
concept Record = requires {
    { T::recordFields() } -> std::same_as<const RecordFields&>;
};

/// A hash of all fields of a record.
[[nodiscard]] QUILLBEAM_EXPORT std::size_t hashRecord(const RecordFields& fields, const void* record) noexcept;

/// Appends the text of a record: `TagDTO(id: "1", name: "x")`; a field without a value stands as nil.
QUILLBEAM_EXPORT void describeRecord(std::string& out, const RecordFields& fields, const void* record);

} // namespace platform::inline v1

template <platform::Record T>
struct std::hash<T> {
    [[nodiscard]] std::size_t operator()(const T& record) const noexcept {
        return platform::hashRecord(T::recordFields(), &record);
    }
};

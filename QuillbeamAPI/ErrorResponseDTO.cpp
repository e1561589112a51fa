#include "QuillbeamAPI/ErrorResponseDTO.hpp"

#include "platform/coding/Fields.hpp"

namespace QuillbeamAPI::inline v1::Components::Schemas {

const platform::RecordFields& ErrorResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "ErrorResponseDTO",
        field("code", &ErrorResponseDTO::code),
        field("errorDescription", &ErrorResponseDTO::errorDescription)
    );
    return table;
}

} // namespace QuillbeamAPI::inline v1::Components::Schemas

#include "QuillbeamAPI/AcceptableContentType.hpp"

#include "platform/coding/Fields.hpp"
#include "platform/text/ASCII.hpp"

namespace QuillbeamAPI::inline v1 {

namespace {

constexpr std::string_view jsonText = "application/json";

} // namespace

AcceptableContentType::AcceptableContentType(std::string_view rawValue) {
    if (platform::lowercased(rawValue) != jsonText) other_.emplace(rawValue);
}

std::string AcceptableContentType::rawValue() const {
    return other_ ? *other_ : std::string(jsonText);
}

const platform::RecordFields& AcceptHeaders::recordFields() {
    static const platform::RecordTable table("Headers", platform::field("accept", &AcceptHeaders::accept));
    return table;
}

} // namespace QuillbeamAPI::inline v1

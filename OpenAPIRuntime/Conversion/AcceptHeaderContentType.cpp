#include "OpenAPIRuntime/Conversion/AcceptHeaderContentType.hpp"

#include "OpenAPIRuntime/Conversion/OpenAPIMIMEType.hpp"
#include "platform/text/ASCII.hpp"

namespace OpenAPIRuntime::inline v1::detail {

std::optional<AcceptHeaderEntry> parseAcceptHeaderEntry(std::string_view text) {
    const std::optional<OpenAPIMIMEType> type = OpenAPIMIMEType::make(text);
    if (!type) return std::nullopt;
    std::optional<QualityValue> quality = QualityValue();
    if (const auto q = type->parameters.find("q"); q != type->parameters.end()) {
        quality = QualityValue::fromRawValue(q->second);
    }
    if (!quality) return std::nullopt;
    return AcceptHeaderEntry{platform::lowercased(type->kind.description()), *quality};
}

} // namespace OpenAPIRuntime::inline v1::detail

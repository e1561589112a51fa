#include "QuillbeamAPI/detail/Call.hpp"

namespace QuillbeamAPI::inline v1::detail {

namespace {

/// The one member of a headers record that is no parameter of its own but the list behind the field Accept.
constexpr std::string_view acceptKey = "accept";

template <class Use>
void forEachPresent(const Parameters& parameters, Use use) {
    if (!parameters.fields) return;
    for (const auto& slot : parameters.fields->slots()) {
        const platform::FieldValue value(slot, parameters.record);
        if (value.hasValue()) use(value);
    }
}

} // namespace

HTTPTypes::HTTPRequest makeRequest(
    const OpenAPIRuntime::Converter& converter,
    const OperationDescription& operation,
    Parameters path,
    Parameters query,
    Parameters headers
) {
    std::string rendered(operation.pathTemplate);
    forEachPresent(path, [&](const platform::FieldValue& value) {
        rendered = converter.renderedPath(rendered, value);
    });
    HTTPTypes::HTTPRequest request(rendered, operation.method);
    forEachPresent(query, [&](const platform::FieldValue& value) {
        converter.setQueryItemAsURI(request, OpenAPIRuntime::ParameterStyle::form, true, value.key(), value);
    });
    forEachPresent(headers, [&](const platform::FieldValue& value) {
        if (value.key() != acceptKey) converter.setHeaderFieldAsURI(request.headerFields, value.key(), value);
    });
    return request;
}

void requireJSON(const OpenAPIRuntime::Converter& converter, const HTTPTypes::HTTPFields& headerFields) {
    const auto received = converter.extractContentTypeIfPresent(headerFields);
    static_cast<void>(converter.bestContentType(received, {"application/json"}));
}

} // namespace QuillbeamAPI::inline v1::detail

#include "OpenAPIRuntime/Values/Alternatives.hpp"

#include "OpenAPIRuntime/Values/MultiError.hpp"

#include <algorithm>

namespace OpenAPIRuntime::inline v1 {

namespace {

platform::DecodingError noSchemaFits(
    const std::string& noun, std::string type, platform::CodingPath codingPath, std::vector<std::exception_ptr> errors
) {
    return platform::DecodingError::valueNotFound(
        std::move(type),
        platform::CodingErrorContext(
            std::move(codingPath),
            "The " + noun + " structure did not decode into any child schema.",
            std::make_exception_ptr(MultiError(std::move(errors)))
        )
    );
}

} // namespace

platform::DecodingError
failedToDecodeOneOfSchema(std::string type, platform::CodingPath codingPath, std::vector<std::exception_ptr> errors) {
    return noSchemaFits("oneOf", std::move(type), std::move(codingPath), std::move(errors));
}

platform::DecodingError unknownOneOfDiscriminator(
    platform::CodingKey discriminatorKey, const std::string& discriminatorValue, platform::CodingPath codingPath
) {
    return platform::DecodingError::keyNotFound(
        std::move(discriminatorKey),
        platform::CodingErrorContext(
            std::move(codingPath),
            "The oneOf structure does not contain the provided discriminator value '" + discriminatorValue + "'."
        )
    );
}

void verifyAtLeastOneSchemaIsNotNil(
    std::initializer_list<IsPresent> values,
    std::string type,
    platform::CodingPath codingPath,
    std::vector<std::exception_ptr> errors
) {
    if (std::any_of(values.begin(), values.end(), [](const IsPresent& value) { return static_cast<bool>(value); }))
        return;
    throw noSchemaFits("anyOf", std::move(type), std::move(codingPath), std::move(errors));
}

} // namespace OpenAPIRuntime::inline v1

#include "http_types/HTTPResponse.hpp"

#include "http_types/detail/Characters.hpp"
#include "platform/DiagnosticText.hpp"
#include "platform/ProgrammingError.hpp"
#include "platform/text/UTF8.hpp"

#include <algorithm>

namespace HTTPTypes::inline v1 {

namespace {

constexpr std::array<int, detail::reasonPhrases.size()> codes{
#define QUILLBEAM_STATUS(constant, code, reasonPhrase) code,
#include "http_types/detail/StatusCodes.inc"
};

int checkedCode(int code) {
    if (code < 0 || code > 999) {
        platform::stopOnProgrammingError("Not a status code of at most three digits: " + std::to_string(code));
    }
    return code;
}

/// The phrase with a space for each control character and each character above U+00FF. `phrase` is valid UTF-8.
std::string rebuilt(std::string_view phrase) {
    std::string text;
    for (std::size_t i = 0; i < phrase.size();) {
        const auto lead = static_cast<unsigned char>(phrase[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        // U+0080 to U+00FF are the two-byte sequences led by C2 and C3.
        const bool isKept = length == 1 ? !detail::isBarred(phrase[i]) : lead <= 0xC3;
        text += isKept ? phrase.substr(i, length) : " ";
        i += length;
    }
    return text;
}

detail::SharedText makeReasonPhrase(int code, std::string_view phrase) {
    if (phrase.empty()) return {};
    const auto known = std::ranges::lower_bound(codes, code);
    if (known != codes.end() && *known == code) {
        const detail::TextRecord& record = detail::reasonPhrases[static_cast<std::size_t>(known - codes.begin())];
        if (record.text == phrase) return detail::SharedText(record);
    }
    const std::string text = platform::repairedUTF8(phrase);
    return detail::SharedText::owning(detail::holdsBarred(text) ? rebuilt(text) : text);
}

std::string descriptionOfInvalid(std::string_view reasonPhrase) {
    std::string text = "HTTPResponse.DecodingError: invalidReasonPhrase ";
    platform::appendDiagnosticText(text, reasonPhrase);
    return text;
}

} // namespace

HTTPResponse::Status::Status(int code)
    : code_(checkedCode(code)) {}

HTTPResponse::Status::Status(int code, std::string_view reasonPhrase)
    : code_(checkedCode(code))
    , reasonPhrase_(makeReasonPhrase(code, reasonPhrase)) {}

std::string HTTPResponse::Status::description() const {
    return std::to_string(code_).append(" ").append(reasonPhrase());
}

std::string HTTPResponse::Status::fieldValue() const {
    const auto digit = [](int value) { return static_cast<char>('0' + value % 10); };
    return {digit(code_ / 100), digit(code_ / 10), digit(code_)};
}

HTTPResponse::PseudoHeaderFields::PseudoHeaderFields(const Status& status)
    : status_(HTTPField::Name::pseudoStatus, status.fieldValue()) {}

void HTTPResponse::PseudoHeaderFields::setStatus(HTTPField field) {
    if (field.name != HTTPField::Name::pseudoStatus) {
        platform::stopOnProgrammingError("Expected the pseudo header field :status, got " + field.name.description());
    }
    if (!detail::isThreeDigits(field.rawValue().view())) {
        platform::stopOnProgrammingError("Not a valid status code: " + field.value());
    }
    status_ = std::move(field);
}

HTTPResponse::DecodingError::DecodingError(std::string_view reasonPhrase)
    : std::runtime_error(descriptionOfInvalid(reasonPhrase))
    , reasonPhrase_(detail::SharedText::owning(reasonPhrase)) {}

HTTPResponse::DecodingError HTTPResponse::DecodingError::invalidReasonPhrase(std::string_view reasonPhrase) {
    return DecodingError(reasonPhrase);
}

HTTPResponse::HTTPResponse()
    : HTTPResponse(Status::ok) {}

HTTPResponse::HTTPResponse(const Status& status, HTTPFields fields)
    : pseudoHeaderFields(status)
    , headerFields(std::move(fields))
    , reasonPhrase_(status.reasonPhrase_) {}

HTTPResponse::HTTPResponse(int soar_statusCode)
    : HTTPResponse(Status(soar_statusCode)) {}

HTTPResponse::Status HTTPResponse::status() const {
    const std::string_view digits = pseudoHeaderFields.status_.rawValue().view();
    if (digits.empty()) return Status(0); // of a response that was moved from
    Status status((digits[0] - '0') * 100 + (digits[1] - '0') * 10 + (digits[2] - '0'));
    status.reasonPhrase_ = reasonPhrase_;
    return status;
}

void HTTPResponse::setStatus(const Status& status) {
    pseudoHeaderFields.status_.setValue(status.fieldValue());
    reasonPhrase_ = status.reasonPhrase_;
}

std::string HTTPResponse::debugDescription() const {
    return status().description();
}

std::string HTTPResponse::prettyDescription() const {
    return std::to_string(status().code()) + " [" + headerFields.prettyDescription() + "]";
}

} // namespace HTTPTypes::inline v1

std::size_t std::hash<HTTPTypes::HTTPResponse>::operator()(const HTTPTypes::HTTPResponse& response) const noexcept {
    return std::hash<HTTPTypes::HTTPField>()(response.pseudoHeaderFields.status()) +
           std::hash<HTTPTypes::HTTPFields>()(response.headerFields);
}

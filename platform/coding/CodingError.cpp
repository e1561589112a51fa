#include "platform/coding/CodingError.hpp"

namespace platform::inline v1 {

std::string CodingErrorContext::description() const {
    return "at " + codingPath.description() + ": " + debugDescription +
           " (underlying error: " + localizedDescription(underlyingError) + ")";
}

struct DecodingError::Contents {
    Kind kind;
    std::string typeName;
    std::optional<CodingKey> key;
    CodingErrorContext context;
    std::string text;

    Contents(Kind kind_, std::string typeName_, std::optional<CodingKey> key_, CodingErrorContext context_)
        : kind(kind_)
        , typeName(std::move(typeName_))
        , key(std::move(key_))
        , context(std::move(context_))
        , text("DecodingError: ") {
        switch (kind) {
        case Kind::typeMismatch:
            text += "typeMismatch " + typeName;
            break;
        case Kind::valueNotFound:
            text += "valueNotFound " + typeName;
            break;
        case Kind::keyNotFound:
            text += "keyNotFound " + key->stringValue();
            break;
        case Kind::dataCorrupted:
            text += "dataCorrupted";
            break;
        }
        text += " - " + context.description();
    }
};

DecodingError::DecodingError(std::shared_ptr<const Contents> contents) noexcept
    : contents_(std::move(contents)) {}

DecodingError DecodingError::typeMismatch(std::string typeName, CodingErrorContext context) {
    return DecodingError(
        std::make_shared<const Contents>(Kind::typeMismatch, std::move(typeName), std::nullopt, std::move(context))
    );
}

DecodingError DecodingError::valueNotFound(std::string typeName, CodingErrorContext context) {
    return DecodingError(
        std::make_shared<const Contents>(Kind::valueNotFound, std::move(typeName), std::nullopt, std::move(context))
    );
}

DecodingError DecodingError::keyNotFound(CodingKey key, CodingErrorContext context) {
    return DecodingError(
        std::make_shared<const Contents>(Kind::keyNotFound, std::string(), std::move(key), std::move(context))
    );
}

DecodingError DecodingError::dataCorrupted(CodingErrorContext context) {
    return DecodingError(
        std::make_shared<const Contents>(Kind::dataCorrupted, std::string(), std::nullopt, std::move(context))
    );
}

DecodingError::Kind DecodingError::kind() const noexcept {
    return contents_->kind;
}

const CodingErrorContext& DecodingError::context() const noexcept {
    return contents_->context;
}

const std::string& DecodingError::typeName() const noexcept {
    return contents_->typeName;
}

const std::optional<CodingKey>& DecodingError::key() const noexcept {
    return contents_->key;
}

const char* DecodingError::what() const noexcept {
    return contents_->text.c_str();
}

std::string DecodingError::prettyDescription() const {
    return contents_->text;
}

struct EncodingError::Contents {
    AnyValue value;
    CodingErrorContext context;
    std::string text;

    Contents(AnyValue value_, CodingErrorContext context_)
        : value(std::move(value_))
        , context(std::move(context_))
        , text("EncodingError: invalidValue " + value.description() + " - " + context.description()) {}
};

EncodingError::EncodingError(std::shared_ptr<const Contents> contents) noexcept
    : contents_(std::move(contents)) {}

EncodingError EncodingError::invalidValue(AnyValue value, CodingErrorContext context) {
    return EncodingError(std::make_shared<const Contents>(std::move(value), std::move(context)));
}

const CodingErrorContext& EncodingError::context() const noexcept {
    return contents_->context;
}

const AnyValue& EncodingError::value() const noexcept {
    return contents_->value;
}

const char* EncodingError::what() const noexcept {
    return contents_->text.c_str();
}

std::string EncodingError::prettyDescription() const {
    return contents_->text;
}

} // namespace platform::inline v1

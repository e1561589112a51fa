#include "platform/coding/Decoder.hpp"

#include "platform/coding/CodingError.hpp"
#include "platform/coding/UserInfo.hpp"

namespace platform::inline v1 {

Decoder::~Decoder() = default;

const UserInfo& Decoder::userInfo() const {
    return UserInfo::none();
}

void UnkeyedDecodingContainer::throwDataCorrupted(std::string debugDescription) const {
    throw DecodingError::dataCorrupted(CodingErrorContext(codingPath(), std::move(debugDescription)));
}

} // namespace platform::inline v1

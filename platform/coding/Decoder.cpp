#include "platform/coding/Decoder.hpp"

#include "platform/coding/UserInfo.hpp"

namespace platform::inline v1 {

Decoder::~Decoder() = default;

const UserInfo& Decoder::userInfo() const {
    return UserInfo::none();
}

} // namespace platform::inline v1

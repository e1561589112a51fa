#include "platform/coding/Encoder.hpp"

#include "platform/coding/UserInfo.hpp"

namespace platform::inline v1 {

Encoder::~Encoder() = default;

const UserInfo& Encoder::userInfo() const {
    return UserInfo::none();
}

} // namespace platform::inline v1

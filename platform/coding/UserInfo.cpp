#include "platform/coding/UserInfo.hpp"

namespace platform::inline v1 {

const UserInfo& UserInfo::none() {
    static const UserInfo& empty = *new UserInfo; // never destroyed: coders may run during the process's end
    return empty;
}

} // namespace platform::inline v1

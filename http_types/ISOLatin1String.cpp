#include "http_types/ISOLatin1String.hpp"

#include "platform/text/UTF8.hpp"

namespace HTTPTypes::inline v1 {

std::string ISOLatin1String::string() const {
    return platform::isASCII(bytes_) ? bytes_ : platform::repairedUTF8(bytes_);
}

} // namespace HTTPTypes::inline v1

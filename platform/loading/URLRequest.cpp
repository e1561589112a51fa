#include "platform/loading/URLRequest.hpp"

#include "platform/loading/detail/FieldText.hpp"

#include <algorithm>

namespace platform::inline v1 {

bool FieldNameLess::operator()(std::string_view left, std::string_view right) const noexcept {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return detail::foldedASCII(a) < detail::foldedASCII(b);
    });
}

} // namespace platform::inline v1

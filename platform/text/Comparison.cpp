#include "platform/text/Comparison.hpp"

#include <unicode/coll.h>
#include <unicode/stringpiece.h>

#include <memory>

namespace platform::inline v1 {

namespace {

/// The collator of the default locale; none where the locale data lacks one. Made at first use and never destroyed, so
/// that it serves to the program's end. Comparing does not change it.
const icu::Collator* collator() {
    static const icu::Collator* const shared = []() -> const icu::Collator* {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> made(icu::Collator::createInstance(status));
        if (U_FAILURE(status)) return nullptr;
        made->setStrength(icu::Collator::SECONDARY); // accents count, case does not
        return made.release();
    }();
    return shared;
}

} // namespace

std::weak_ordering localizedCaseInsensitiveCompare(std::string_view left, std::string_view right) {
    const icu::Collator* const shared = collator();
    if (shared == nullptr) return left <=> right;
    UErrorCode status = U_ZERO_ERROR;
    const auto piece = [](std::string_view text) {
        return icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size()));
    };
    const UCollationResult order = shared->compareUTF8(piece(left), piece(right), status);
    if (U_FAILURE(status)) return left <=> right;
    if (order == UCOL_LESS) return std::weak_ordering::less;
    return order == UCOL_GREATER ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}

} // namespace platform::inline v1

#include "platform/text/Comparison.hpp"

#include "platform/text/ASCII.hpp"

#include <unicode/stringpiece.h>
#include <unicode/tblcoll.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace platform::inline v1 {

namespace {

/// What compares in the default locale of the process's start.
struct Comparer {
    std::unique_ptr<const icu::Collator> collator; // none where the locale data lacks one
    bool ordersASCIIAlphanumericsPlainly = false;
};

/// True when digits and ASCII letters compare one by one, digits first: in a locale without rules of its own, such as
/// English or German, but not in Czech, where "ch" is a letter.
bool ordersPlainly(const icu::Collator& collator) {
    const auto* const rules = dynamic_cast<const icu::RuleBasedCollator*>(&collator);
    UErrorCode status = U_ZERO_ERROR;
    return rules != nullptr && rules->getRules().isEmpty() &&
           collator.getAttribute(UCOL_NUMERIC_COLLATION, status) == UCOL_OFF &&
           collator.getReorderCodes(nullptr, 0, status) == 0 && U_SUCCESS(status);
}

/// The locale of the process's environment. The "C" locale stands for no language and would order by code point, case
/// and all; Unicode's own order takes its place.
icu::Locale readersLocale() {
    const icu::Locale& locale = icu::Locale::getDefault();
    return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

/// Made at first use and never destroyed, so that it serves to the program's end. Comparing does not change it.
const Comparer& comparer() {
    static const Comparer& shared = *[] {
        auto made = std::make_unique<Comparer>();
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(readersLocale(), status));
        if (U_FAILURE(status)) return made.release();
        collator->setStrength(icu::Collator::SECONDARY); // accents count, case does not
        made->ordersASCIIAlphanumericsPlainly = ordersPlainly(*collator);
        made->collator = std::move(collator);
        return made.release();
    }();
    return shared;
}

bool isASCIIAlphanumeric(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char c) { return isASCIILetter(c) || isASCIIDigit(c); });
}

std::weak_ordering compareASCIIAlphanumerics(std::string_view left, std::string_view right) noexcept {
    for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
        const auto order = asciiLowercased(left[i]) <=> asciiLowercased(right[i]);
        if (order != 0) return order;
    }
    return left.size() <=> right.size();
}

} // namespace

std::weak_ordering localizedCaseInsensitiveCompare(std::string_view left, std::string_view right) {
    const Comparer& shared = comparer();
    if (shared.collator == nullptr) return left <=> right;
    if (shared.ordersASCIIAlphanumericsPlainly && isASCIIAlphanumeric(left) && isASCIIAlphanumeric(right)) {
        return compareASCIIAlphanumerics(left, right);
    }
    UErrorCode status = U_ZERO_ERROR;
    const auto piece = [](std::string_view text) {
        return icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size()));
    };
    const UCollationResult order = shared.collator->compareUTF8(piece(left), piece(right), status);
    if (U_FAILURE(status)) return left <=> right;
    if (order == UCOL_LESS) return std::weak_ordering::less;
    return order == UCOL_GREATER ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}

} // namespace platform::inline v1

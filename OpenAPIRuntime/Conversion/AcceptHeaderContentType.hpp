#pragma once

#include "OpenAPIRuntime/Conversion/AcceptableProtocol.hpp"
#include "OpenAPIRuntime/Conversion/QualityValue.hpp"
#include "platform/Export.hpp"

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

namespace detail {

struct AcceptHeaderEntry {
    std::string contentType; ///< in lower case, without parameters
    QualityValue quality;
};

/// The entry that `text` tells; nothing for a text that is no media type, or a bad quality.
[[nodiscard]] QUILLBEAM_EXPORT std::optional<AcceptHeaderEntry> parseAcceptHeaderEntry(std::string_view text);

} // namespace detail

/// One entry of an Accept header: a content type and its quality.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
template <AcceptableProtocol ContentType>
struct AcceptHeaderContentType {
    ContentType contentType{};
    QualityValue quality{};

    AcceptHeaderContentType()
        requires std::default_initializable<ContentType>
    = default;

    explicit AcceptHeaderContentType(ContentType contentType_, QualityValue quality_ = QualityValue())
        : contentType(std::move(contentType_))
        , quality(quality_) {}

    /// The entry that a text such as "text/plain; q=0.5" tells; nothing for a text that is no media type, a content
    /// type that `ContentType` does not know, or a bad quality.
    [[nodiscard]] static std::optional<AcceptHeaderContentType> fromRawValue(std::string_view rawValue) {
        const std::optional<detail::AcceptHeaderEntry> entry = detail::parseAcceptHeaderEntry(rawValue);
        if (!entry) return std::nullopt;
        std::optional<ContentType> contentType = ContentType::fromRawValue(entry->contentType);
        if (!contentType) return std::nullopt;
        return AcceptHeaderContentType(std::move(*contentType), entry->quality);
    }

    /// The entry as it goes into the header: the content type, and the quality unless it is 1.0.
    [[nodiscard]] std::string rawValue() const {
        std::string text(contentType.rawValue());
        if (!quality.isDefault()) text.append("; q=").append(quality.rawValue());
        return text;
    }

    /// All cases of `ContentType` in their order, each at quality 1.0.
    [[nodiscard]] static std::vector<AcceptHeaderContentType> defaultValues() {
        std::vector<AcceptHeaderContentType> values;
        for (auto&& contentType : ContentType::allCases()) {
            values.emplace_back(std::forward<decltype(contentType)>(contentType));
        }
        return values;
    }

    friend bool operator==(const AcceptHeaderContentType&, const AcceptHeaderContentType&) = default;
};

/// The entries in descending order of quality; those of equal quality keep their order.
template <AcceptableProtocol ContentType>
[[nodiscard]] std::vector<AcceptHeaderContentType<ContentType>>
sortedByQuality(std::vector<AcceptHeaderContentType<ContentType>> contentTypes) {
    // A stable sort by insertion: an Accept header has a handful of entries.
    const auto isBetter = [&](std::size_t left, std::size_t right) {
        return contentTypes[left].quality.doubleValue() > contentTypes[right].quality.doubleValue();
    };
    for (std::size_t sorted = 1; sorted < contentTypes.size(); ++sorted) {
        for (std::size_t at = sorted; at > 0 && isBetter(at, at - 1); --at) {
            std::swap(contentTypes[at - 1], contentTypes[at]);
        }
    }
    return contentTypes;
}

} // namespace OpenAPIRuntime::inline v1

template <class ContentType>
struct std::hash<OpenAPIRuntime::AcceptHeaderContentType<ContentType>> {
    std::size_t operator()(const OpenAPIRuntime::AcceptHeaderContentType<ContentType>& value) const {
        return std::hash<ContentType>()(value.contentType) * 31 +
               std::hash<OpenAPIRuntime::QualityValue>()(value.quality);
    }
};

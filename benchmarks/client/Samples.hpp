#pragma once

#include "QuillbeamAPI/Analytics.hpp"
#include "QuillbeamAPI/Links.hpp"

#include <cstddef>
#include <string>

/// Values of the size that an application meets.
namespace samples {

namespace Schemas = QuillbeamAPI::Components::Schemas;

/// @param number tells links apart
/// @param domain the name of a domain
[[nodiscard]] Schemas::CreateLinkDTO newLink(std::size_t number, std::string domain);

[[nodiscard]] Schemas::LinkHistoryDTO history(std::size_t links);

/// Clicks by the hour, and the breakdowns of a link that the world visits.
[[nodiscard]] Schemas::LinkAnalyticsDTO analytics(std::size_t hours);

} // namespace samples

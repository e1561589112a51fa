#pragma once

#include "QuillbeamAPI/Analytics.hpp"
#include "QuillbeamAPI/Links.hpp"

#include <string>
#include <string_view>

/// The JSON work of an application without this library: nlohmann-json and a page of assignments for each record.
namespace byHand {

namespace Schemas = QuillbeamAPI::Components::Schemas;

[[nodiscard]] Schemas::LinkDTO link(std::string_view text);
[[nodiscard]] Schemas::LinkHistoryDTO history(std::string_view text);
[[nodiscard]] Schemas::LinkAnalyticsDTO analytics(std::string_view text);

[[nodiscard]] std::string text(const Schemas::CreateLinkDTO& link);
[[nodiscard]] std::string text(const Schemas::BulkCreateLinksDTO& links);

/// What a server answers: not part of the compared work.
[[nodiscard]] std::string text(const Schemas::LinkHistoryDTO& history);
[[nodiscard]] std::string text(const Schemas::LinkAnalyticsDTO& analytics);

} // namespace byHand

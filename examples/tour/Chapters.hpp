#pragma once

#include "examples/tour/Guide.hpp"
#include "platform/concurrency/Task.hpp"

#include <memory>

namespace examples {

/// The chapters of the tour, in their order. Each fails with `OpenAPIRuntime::RuntimeError` where an answer is another
/// than the one that the story goes on from.
Task<void> meetTheAccount(std::shared_ptr<Guide> guide);
Task<void> addADomain(std::shared_ptr<Guide> guide);
Task<void> uploadASocialCard(std::shared_ptr<Guide> guide);
Task<void> makeLinks(std::shared_ptr<Guide> guide);
Task<void> followTheLink(std::shared_ptr<Guide> guide);
Task<void> readTheAnalytics(std::shared_ptr<Guide> guide);
Task<void> sortByTags(std::shared_ptr<Guide> guide);
Task<void> replaceAKey(std::shared_ptr<Guide> guide);
Task<void> changeThePlan(std::shared_ptr<Guide> guide);
Task<void> removeTheLinks(std::shared_ptr<Guide> guide);
Task<void> removeTheDomain(std::shared_ptr<Guide> guide);
Task<void> meetFailures(std::shared_ptr<Guide> guide);

} // namespace examples

#pragma once

#include "QuillbeamAPI/Client.hpp"
#include "examples/tour/Middlewares.hpp"
#include "examples/tour/Report.hpp"
#include "platform/concurrency/Task.hpp"

#include <memory>

namespace examples {

/// What the tour works with: one client for each way of calling, all of them with the same trace.
struct Guide {
    QuillbeamAPI::Client client;       ///< sends the key
    QuillbeamAPI::Client keyless;      ///< sends none
    QuillbeamAPI::Client undocumented; ///< gets a status that no operation documents
    QuillbeamAPI::Client unreachable;  ///< talks to an address where nobody listens
    std::shared_ptr<Trace> trace;
    Report report{};
};

/// Walks through the operations on domains.
/// @throws OpenAPIRuntime::RuntimeError where an answer is another than the one that the walk goes on from.
platform::Task<void> walkDomains(std::shared_ptr<Guide> guide);

} // namespace examples

#pragma once

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Links.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "examples/tour/Browser.hpp"
#include "examples/tour/Middlewares.hpp"
#include "examples/tour/Report.hpp"
#include "platform/date/Date.hpp"
#include "platform/url/URL.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace examples {

namespace Operations = QuillbeamAPI::Operations;
using namespace QuillbeamAPI::Components::Schemas;

/// Where the tour's main link leads.
struct Campaign {
    static constexpr const char* destination = "https://www.tour.example/spring";
    static constexpr const char* forFrance = "https://www.tour.example/fr/printemps";
    static constexpr const char* forIOS = "https://apps.tour.example/ios";
    static constexpr const char* forAndroid = "https://apps.tour.example/android";
};

/// What one chapter leaves for the next ones.
struct Story {
    platform::Date now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    DomainListDTO domainsBefore{};
    LinkHistoryDTO historyBefore{};
    DomainDTO domain{};                 ///< the one that the tour adds
    std::string cardUrl{};              ///< of the social card
    LinkDTO campaign{};                 ///< the link that people follow
    std::vector<std::string> linkIds{}; ///< of all links that were made, the campaign's first
    int clicks = 0;                     ///< on the campaign's link
};

/// What the tour works with: one client for each way of calling, all of them with the same trace.
struct Guide {
    platform::URL server;
    std::shared_ptr<OpenAPIRuntime::ClientTransport> transport;
    std::shared_ptr<Trace> trace;
    QuillbeamAPI::Client client;       ///< sends the key
    QuillbeamAPI::Client keyless;      ///< sends none
    QuillbeamAPI::Client undocumented; ///< gets a status that no operation documents
    QuillbeamAPI::Client unreachable;  ///< talks to an address where nobody listens
    Browser browser{};
    Report report{};
    Story story{};

    Guide(const platform::URL& server, const std::string& key);

    /// A client that authenticates in another way.
    QuillbeamAPI::Client clientWith(std::shared_ptr<ClientMiddleware> authentication) const;

    /// Reports a call.
    template <class Output>
    void show(std::string_view operation, const Output& output, int expectedStatus) {
        showStatus(operation, output.statusCode(), !output.template is<QuillbeamAPI::Undocumented>(), expectedStatus);
    }

    void showStatus(std::string_view operation, int status, bool isDocumented, int expectedStatus);
    void showError(const ErrorResponseDTO& error);
};

} // namespace examples

#pragma once

#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "platform/Export.hpp"
#include "platform/loading/URLSession.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace OpenAPIURLSession::inline v1 {

/// Sends requests through a `platform::URLSession`.
///
///     auto transport = std::make_shared<URLSessionTransport>(
///         URLSessionTransport::Configuration(platform::URLSession()));
///     Client client(serverURL, transport);
///
/// Errors of a call are `URLSessionTransportError`, `platform::URLError`, `platform::CancellationError`, or whatever
/// the request body fails with.
///
/// Thread safety: `send` may be called from any number of threads at once, as long as nobody writes `configuration`.
class QUILLBEAM_EXPORT URLSessionTransport final : public OpenAPIRuntime::ClientTransport {
public:
    /// How the transport works.
    struct QUILLBEAM_EXPORT Configuration {
        /// A tagged union: `streaming` or `buffering`.
        class QUILLBEAM_EXPORT Implementation {
        public:
            /// Between how many bytes waiting to be read the transfer is let go on and held back.
            struct ResponseBodyStreamWatermarks {
                std::int64_t low = 16'384;
                std::int64_t high = 32'768;

                friend bool
                operator==(const ResponseBodyStreamWatermarks&, const ResponseBodyStreamWatermarks&) = default;
            };

            struct Streaming {
                std::int64_t requestBodyStreamBufferSize = 16'384;
                ResponseBodyStreamWatermarks responseBodyStreamWatermarks{};

                friend bool operator==(const Streaming&, const Streaming&) = default;
            };

            struct Buffering {
                friend bool operator==(const Buffering&, const Buffering&) = default;
            };

            /// Both bodies flow while they are produced and read, and little of them is held in memory.
            [[nodiscard]] static Implementation streaming(
                std::int64_t requestBodyStreamBufferSize, ResponseBodyStreamWatermarks responseBodyStreamWatermarks
            ) {
                return Implementation(Streaming{requestBodyStreamBufferSize, responseBodyStreamWatermarks});
            }

            /// Both bodies are held whole in memory; there is no limit to their size.
            [[nodiscard]] static Implementation buffering() { return Implementation(Buffering{}); }

            /// Whether this is the case, as in `implementation.is<Implementation::Buffering>()`.
            template <class Case>
            [[nodiscard]] bool is() const noexcept {
                return std::holds_alternative<Case>(payload_);
            }

            /// The payload of the case, or null where this is the other one.
            template <class Case>
            [[nodiscard]] const Case* getIf() const noexcept {
                return std::get_if<Case>(&payload_);
            }

            friend bool operator==(const Implementation&, const Implementation&) = default;

        private:
            using Payload = std::variant<Streaming, Buffering>;

            explicit Implementation(Payload payload) noexcept
                : payload_(payload) {}

            Payload payload_;
        };

        /// Shared with whoever else holds it; the transport neither makes nor ends it.
        platform::URLSession session;
        Implementation implementation;

        /// Works by the best way this build has: `buffering`.
        explicit Configuration(platform::URLSession urlSession);
        Configuration(platform::URLSession urlSession, Implementation chosen);

        friend bool operator==(const Configuration&, const Configuration&) = default;
    };

    explicit URLSessionTransport(Configuration configuration_);

    Configuration configuration;

    /// Also fails with `URLSessionTransportError` (`streamingNotSupported`) where `configuration` asks for streaming.
    [[nodiscard]] platform::Task<OpenAPIRuntime::HTTPResponseAndBody> send(
        HTTPTypes::HTTPRequest request,
        std::optional<OpenAPIRuntime::HTTPBody> body,
        platform::URL baseURL,
        std::string operationID
    ) override;
};

} // namespace OpenAPIURLSession::inline v1

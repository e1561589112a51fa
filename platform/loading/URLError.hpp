#pragma once

#include "platform/Export.hpp"
#include "platform/PrettyStringConvertible.hpp"

#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// Why a task ended without a response, or in the middle of one.
///
/// `what()` is the kind's own sentence, followed by the cause in the words of the layer below where there is one. It
/// never holds the URL, whose query may carry secrets; `failingURL()` does.
///
/// Copies share their texts, so copying never throws.
class QUILLBEAM_EXPORT URLError final : public std::exception, public PrettyStringConvertible {
public:
    enum class Kind {
        cancelled,        ///< the task was cancelled, or its session was invalidated
        timedOut,         ///< no byte moved for the request's time-out
        cannotConnect,    ///< nobody accepts connections at the address
        dns,              ///< the host's name, or the proxy's, could not be resolved
        connectionLost,   ///< the connection ended before the response was complete
        badResponse,      ///< what came back is not a sound HTTP response
        tls,              ///< no secure connection: untrusted certificate, wrong name, failed handshake
        tooManyRedirects, ///< more redirects than the session allows
        bodyLength,       ///< the request body is longer or shorter than declared
        unsupportedURL,   ///< the URL, or one redirected to, is not http or https with a host
        invalidRequest,   ///< the method or a field cannot be put on the wire, or the whole head is too long
        other             ///< anything else, such as a lack of memory or of file descriptors
    };

    /// @param detail the cause in the words of the layer below; may be empty
    /// @param failingURL the URL that was being loaded, after redirects
    URLError(Kind kind, std::string_view detail, std::string_view failingURL);

    [[nodiscard]] Kind kind() const noexcept { return kind_; }

    [[nodiscard]] const std::string& failingURL() const noexcept;

    [[nodiscard]] const char* what() const noexcept override;

    [[nodiscard]] std::string prettyDescription() const override;

private:
    struct Texts;

    Kind kind_;
    std::shared_ptr<const Texts> texts_;
};

} // namespace platform::inline v1

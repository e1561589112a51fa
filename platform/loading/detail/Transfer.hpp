#pragma once

#include "platform/loading/URLError.hpp"
#include "platform/loading/URLRequest.hpp"
#include "platform/loading/URLSessionConfiguration.hpp"
#include "platform/loading/detail/ResponseHead.hpp"

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::inline v1::detail {

/// Throws `std::runtime_error` unless the engine took the option: every option used here is one that it must know.
void requireSuccess(CURLcode code);

class Transfer;

/// Who gets what a transfer receives, on the loop's thread, from within the engine.
class TransferEvents {
public:
    /// The engine opens a connection for it.
    virtual void willConnect(Transfer& transfer) = 0;

    /// The final head is complete. False ends the transfer.
    virtual bool didCompleteHead(Transfer& transfer) = 0;

    enum class Body { taken, pause, stop };

    /// A block of the body; a paused block comes again after the pause.
    virtual Body didReceiveBody(Transfer& transfer, std::string_view bytes) = 0;

    /// Any byte arrived or left.
    virtual void didProgress(Transfer& transfer) = 0;

protected:
    ~TransferEvents() = default;
};

/// One easy handle and the request on it. Lives on the loop's thread; made once and used for many requests, since
/// making a handle costs a tenth of a small request. Options that never change are set when it is made; those that
/// depend on the request are all set by `prepare`.
class Transfer {
public:
    /// @param share what handles of a session have in common; must outlive the transfer
    Transfer(const URLSessionConfiguration& configuration, CURLSH* share);

    ~Transfer();

    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    struct Options {
        bool collectsBody = true;         ///< false: the body is streamed, undecoded, on a connection of its own
        bool usesFreshConnection = false; ///< not one from the pool
        bool waitsForSharing = false;     ///< rather wait for a connection to be shared than open another
    };

    /// What changes on the way through redirects.
    struct Target {
        std::string url{};
        std::string method{};
        bool dropsBody = false;
        bool dropsCredentials = false;
    };

    /// Sets the handle up for a request. `request` must outlive the transfer's run, since its body is not copied.
    /// Returns what is wrong with the request where it cannot be put on the wire.
    [[nodiscard]] std::optional<std::string_view>
    prepare(const URLRequest& request, const Target& target, const Options& options, TransferEvents& events);

    [[nodiscard]] CURL* easy() const noexcept { return easy_.get(); }

    [[nodiscard]] ResponseHead& head() noexcept { return head_; }

    /// The words of the engine for what happened; the code's general text where it has none.
    [[nodiscard]] std::string_view errorText(CURLcode code) const noexcept;

    /// The kind of error that a result is; absent for success with a complete head.
    [[nodiscard]] std::optional<URLError> error(CURLcode code) const;

    /// True where the request may be sent once more on a new connection: it went out on a connection of the pool that
    /// turned out to be dead, no byte came back, and sending it twice does no harm (RFC 9110 section 9.2.2).
    [[nodiscard]] bool mayRetry(CURLcode code) const noexcept;

    /// The bytes of the request body that have left so far.
    [[nodiscard]] std::int64_t uploadedBytes() const noexcept;

    /// The absolute URL that the response redirects to, by its Location; empty where that is no URL reference.
    [[nodiscard]] std::string redirectURL() const;

    [[nodiscard]] const std::string& method() const noexcept { return method_; }

    [[nodiscard]] bool isPaused() const noexcept { return paused_; }

    /// Goes on after `Body::pause`. May call `didReceiveBody` before it returns.
    void unpause() noexcept;

private:
    struct CleanUp {
        void operator()(CURL* easy) const noexcept { curl_easy_cleanup(easy); }
    };

    template <class Value>
    void set(CURLoption option, Value value) {
        requireSuccess(curl_easy_setopt(easy_.get(), option, value));
    }

    void addHeaderLine(std::string_view name, std::string_view value);
    [[nodiscard]] std::optional<std::string_view>
    encodeFields(const URLRequest& request, const Target& target, bool hasBody, bool asksForIdentity);
    void linkHeaderLines() noexcept;

    static std::size_t headerCallback(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static std::size_t bodyCallback(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static int connectCallback(void* self, curl_socket_t, curlsocktype) noexcept;
    static int requestCallback(void* self, char*, char*, int, int) noexcept;

    std::unique_ptr<CURL, CleanUp> easy_;
    TransferEvents* events_ = nullptr;
    std::array<char, CURL_ERROR_SIZE> errorBuffer_{};

    std::string url_;
    std::string method_;
    std::string headerText_; ///< the lines, each ended by a zero
    std::vector<std::size_t> headerOffsets_;
    std::vector<curl_slist> headerLines_; ///< the engine's list over `headerText_`, without an allocation each

    ResponseHead head_;
    bool decodes_ = false; ///< as last set on the handle
    unsigned timesSent_ = 0;
    bool received_ = false;
    bool paused_ = false;
    bool replayRefused_ = false;
    bool outOfMemory_ = false;
};

} // namespace platform::inline v1::detail

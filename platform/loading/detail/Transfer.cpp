#include "platform/loading/detail/Transfer.hpp"

#include "platform/loading/detail/FieldText.hpp"

#include <algorithm>
#include <new>
#include <stdexcept>

namespace platform::inline v1::detail {

namespace {

// The engine builds no head of more than 1 MiB and says "out of memory" then; the rest is for fields of its own.
constexpr std::size_t maximumHeadSize = 1'000'000;

bool isIdempotent(std::string_view method) noexcept {
    constexpr std::array<std::string_view, 6> methods{"GET", "HEAD", "PUT", "DELETE", "OPTIONS", "TRACE"};
    return std::find(methods.begin(), methods.end(), method) != methods.end();
}

bool anticipatesBody(std::string_view method) noexcept {
    return method == "POST" || method == "PUT" || method == "PATCH";
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) noexcept {
    return std::any_of(names.begin(), names.end(), [&](std::string_view other) {
        return equalFieldNames(name, other);
    });
}

URLError::Kind kindOf(CURLcode code) noexcept {
    using Kind = URLError::Kind;
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return Kind::timedOut;
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY:
        return Kind::cannotConnect;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return Kind::dns;
    case CURLE_OK: // the connection ended in mid-head, which the engine lets pass
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
    case CURLE_ABORTED_BY_CALLBACK:
        return Kind::connectionLost;
    case CURLE_UNSUPPORTED_PROTOCOL: // the scheme is checked before: this is HTTP/0.9, or no HTTP at all
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_OUT_OF_MEMORY: // how the engine reports a header line beyond its limit of 100 KB
        return Kind::badResponse;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_SSL_CLIENTCERT:
        return Kind::tls;
    case CURLE_URL_MALFORMAT:
        return Kind::unsupportedURL;
    default:
        return Kind::other;
    }
}

} // namespace

void requireSuccess(CURLcode code) {
    if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
}

Transfer::Transfer(const URLSessionConfiguration& configuration, CURLSH* share)
    : easy_(curl_easy_init()) {
    if (!easy_) throw std::bad_alloc();
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_SHARE, share);
    set(CURLOPT_ERRORBUFFER, errorBuffer_.data());
    set(CURLOPT_NOSIGNAL, 1L);
    // Otherwise ending a transfer waits for its name look-up, and all others wait with it.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_HTTP09_ALLOWED, 0L);
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (configuration.certificateAuthorityFile) {
        set(CURLOPT_CAINFO, configuration.certificateAuthorityFile->c_str());
        set(CURLOPT_PROXY_CAINFO, configuration.certificateAuthorityFile->c_str());
    }
    // Where there is a file of certificates, reading the folder of the same ones costs 28 ms for each connection.
    if (configuration.certificateAuthorityFile || curl_version_info(CURLVERSION_NOW)->cainfo != nullptr) {
        set(CURLOPT_CAPATH, static_cast<char*>(nullptr));
        set(CURLOPT_PROXY_CAPATH, static_cast<char*>(nullptr));
    }
    if (configuration.proxy) set(CURLOPT_PROXY, configuration.proxy->c_str());
    set(CURLOPT_HEADERFUNCTION, &Transfer::headerCallback);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::bodyCallback);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_SOCKOPTFUNCTION, &Transfer::connectCallback);
    set(CURLOPT_SOCKOPTDATA, this);
    set(CURLOPT_PREREQFUNCTION, &Transfer::requestCallback);
    set(CURLOPT_PREREQDATA, this);
}

Transfer::~Transfer() = default;

std::optional<std::string_view>
Transfer::prepare(const URLRequest& request, const Target& target, const Options& options, TransferEvents& events) {
    events_ = &events;
    errorBuffer_[0] = '\0';
    head_.reset();
    timesSent_ = 0;
    received_ = paused_ = replayRefused_ = outOfMemory_ = false;
    url_ = target.url;
    method_ = target.method;

    const bool hasGivenBody = request.httpBody && !target.dropsBody;
    const bool hasBody = hasGivenBody || anticipatesBody(method_);
    if (const auto defect = encodeFields(request, target, hasBody, !options.collectsBody)) return defect;

    set(CURLOPT_URL, url_.c_str());
    set(CURLOPT_HTTPGET, 1L); // also takes back what the request before needed
    if (method_ == "HEAD") set(CURLOPT_NOBODY, 1L);
    if (hasBody) {
        const bool hasBytes = hasGivenBody && !request.httpBody->empty();
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(hasBytes ? request.httpBody->size() : 0));
        set(CURLOPT_POSTFIELDS, hasBytes ? request.httpBody->view().data() : "");
    }
    const bool isPlain = !hasBody && (method_ == "GET" || method_ == "HEAD");
    set(CURLOPT_CUSTOMREQUEST, isPlain ? nullptr : method_.c_str());
    set(CURLOPT_HTTPHEADER, headerLines_.empty() ? nullptr : headerLines_.data());
    const bool decodes = options.collectsBody && !request.allHTTPHeaderFields.contains("Accept-Encoding");
    if (decodes != decodes_) set(CURLOPT_ACCEPT_ENCODING, decodes ? "" : nullptr); // making the list of all is dear
    decodes_ = decodes;
    set(CURLOPT_HTTP_VERSION, options.collectsBody ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1);
    set(CURLOPT_FRESH_CONNECT, options.usesFreshConnection ? 1L : 0L);
    set(CURLOPT_PIPEWAIT, options.waitsForSharing ? 1L : 0L);
    return std::nullopt;
}

void Transfer::addHeaderLine(std::string_view name, std::string_view value) {
    headerOffsets_.push_back(headerText_.size());
    headerText_.append(name);
    if (value.empty()) {
        headerText_.push_back(';'); // the engine's spelling of an empty value; "Name:" would remove the field
    } else {
        headerText_.append(": ");
        appendWireBytes(headerText_, value);
    }
    headerText_.push_back('\0');
}

std::optional<std::string_view>
Transfer::encodeFields(const URLRequest& request, const Target& target, bool hasBody, bool asksForIdentity) {
    headerText_.clear();
    headerOffsets_.clear();
    headerLines_.clear();
    if (!isToken(method_)) return "the method is not a token";
    constexpr std::string_view forbidden("\r\n\0", 3);
    for (const auto& [name, value] : request.allHTTPHeaderFields) {
        if (!isToken(name)) return "a field name is not a token";
        if (value.find_first_of(forbidden) != std::string::npos) return "a field value has a line break or a zero byte";
        if (isOneOf(name, {"Content-Length", "Transfer-Encoding", "Connection"})) continue;
        if (target.dropsCredentials && isOneOf(name, {"Authorization", "Cookie", "Proxy-Authorization", "Host"}))
            continue;
        if (target.dropsBody &&
            isOneOf(name, {"Content-Type", "Content-Encoding", "Content-Language", "Content-Location", "Expect"})) {
            continue;
        }
        addHeaderLine(name, trimmingFieldWhitespace(value));
    }
    const auto removeUnlessGiven = [&](std::string_view name) {
        if (request.allHTTPHeaderFields.contains(name)) return;
        headerOffsets_.push_back(headerText_.size());
        headerText_.append(name).push_back(':');
        headerText_.push_back('\0');
    };
    removeUnlessGiven("Accept");
    if (hasBody) {
        removeUnlessGiven("Content-Type");
        removeUnlessGiven("Expect");
    }
    if (asksForIdentity && !request.allHTTPHeaderFields.contains("Accept-Encoding")) {
        addHeaderLine("Accept-Encoding", "identity");
    }
    if (url_.size() + method_.size() + headerText_.size() > maximumHeadSize) return "the head is longer than 1 MB";
    linkHeaderLines();
    return std::nullopt;
}

void Transfer::linkHeaderLines() noexcept {
    headerLines_.resize(headerOffsets_.size());
    for (std::size_t i = 0; i < headerLines_.size(); ++i) {
        headerLines_[i].data = headerText_.data() + headerOffsets_[i];
        headerLines_[i].next = i + 1 < headerLines_.size() ? &headerLines_[i + 1] : nullptr;
    }
}

std::string_view Transfer::errorText(CURLcode code) const noexcept {
    if (!head_.defect().empty()) return head_.defect();
    if (outOfMemory_) return "out of memory";
    if (replayRefused_) return "a connection from the pool was closed after the request had been sent";
    if (code == CURLE_OK) return "the connection was closed within the head";
    return errorBuffer_[0] != '\0' ? errorBuffer_.data() : curl_easy_strerror(code);
}

std::optional<URLError> Transfer::error(CURLcode code) const {
    if (code == CURLE_OK && head_.isComplete()) return std::nullopt;
    auto kind = kindOf(code);
    if (!head_.defect().empty()) {
        kind = URLError::Kind::badResponse;
    } else if (code == CURLE_RECV_ERROR && received_) {
        // The engine has one code for a lost connection and for chunks or heads that it cannot read. Only the former
        // comes with a system error; over TLS a lost connection may come without.
        long systemError = 0;
        curl_easy_getinfo(easy_.get(), CURLINFO_OS_ERRNO, &systemError);
        if (systemError == 0 && foldedASCII(url_[4]) != 's') kind = URLError::Kind::badResponse;
    }
    return URLError(kind, errorText(code), url_);
}

bool Transfer::mayRetry(CURLcode code) const noexcept {
    const bool connectionDied = code == CURLE_GOT_NOTHING || code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR ||
                                code == CURLE_HTTP2 || code == CURLE_HTTP2_STREAM;
    if (!connectionDied || received_ || timesSent_ > 1 || !isIdempotent(method_)) return false;
    long newConnections = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_NUM_CONNECTS, &newConnections);
    return newConnections == 0;
}

std::int64_t Transfer::uploadedBytes() const noexcept {
    curl_off_t bytes = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &bytes);
    return bytes;
}

std::string Transfer::redirectURL() const {
    const auto location = head_.field("Location");
    // The bytes as the server wrote them, which mostly are UTF-8: escaped, they are what it meant.
    std::string locationBytes;
    appendWireBytes(locationBytes, location.value_or(""));
    const std::unique_ptr<CURLU, void (*)(CURLU*)> url(curl_url(), curl_url_cleanup);
    constexpr unsigned flags = CURLU_URLENCODE | CURLU_PATH_AS_IS | CURLU_NON_SUPPORT_SCHEME;
    if (!location || !url || curl_url_set(url.get(), CURLUPART_URL, url_.c_str(), flags) != CURLUE_OK ||
        curl_url_set(url.get(), CURLUPART_URL, locationBytes.c_str(), flags) != CURLUE_OK) {
        return {};
    }
    char* text = nullptr;
    if (curl_url_get(url.get(), CURLUPART_URL, &text, 0) != CURLUE_OK) return {};
    const std::unique_ptr<char, void (*)(void*)> owner(text, curl_free);
    return text;
}

void Transfer::unpause() noexcept {
    paused_ = false;
    // It fails where there is no connection any more, and then the transfer's result tells.
    curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
}

std::size_t Transfer::headerCallback(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    auto& transfer = *static_cast<Transfer*>(self);
    transfer.received_ = true;
    transfer.events_->didProgress(transfer);
    try {
        switch (transfer.head_.consume({bytes, size * count})) {
        case ResponseHead::Progress::invalid:
            return 0;
        case ResponseHead::Progress::complete:
            return transfer.events_->didCompleteHead(transfer) ? size * count : 0;
        default:
            return size * count;
        }
    } catch (const std::bad_alloc&) {
        transfer.outOfMemory_ = true; // ends this transfer; the engine must not be left by an exception
        return 0;
    }
}

std::size_t Transfer::bodyCallback(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    auto& transfer = *static_cast<Transfer*>(self);
    transfer.events_->didProgress(transfer);
    try {
        switch (transfer.events_->didReceiveBody(transfer, {bytes, size * count})) {
        case TransferEvents::Body::stop:
            return 0;
        case TransferEvents::Body::pause:
            transfer.paused_ = true;
            return CURL_WRITEFUNC_PAUSE;
        case TransferEvents::Body::taken:
            break;
        }
    } catch (const std::bad_alloc&) {
        transfer.outOfMemory_ = true;
        return 0;
    }
    return size * count;
}

int Transfer::connectCallback(void* self, curl_socket_t, curlsocktype) noexcept {
    auto& transfer = *static_cast<Transfer*>(self);
    transfer.events_->willConnect(transfer);
    return CURL_SOCKOPT_OK;
}

int Transfer::requestCallback(void* self, char*, char*, int, int) noexcept {
    // The engine repeats a request on a new connection when one from the pool died under it, whatever the method. A
    // request that may not be repeated ends here instead, before its second copy leaves.
    auto& transfer = *static_cast<Transfer*>(self);
    ++transfer.timesSent_;
    if (transfer.timesSent_ == 1 || transfer.received_) return CURL_PREREQFUNC_OK;
    if (transfer.timesSent_ == 2 && isIdempotent(transfer.method_)) return CURL_PREREQFUNC_OK;
    transfer.replayRefused_ = true;
    return CURL_PREREQFUNC_ABORT;
}

} // namespace platform::inline v1::detail

#include "platform/loading/URLError.hpp"

namespace platform::inline v1 {

namespace {

std::string_view sentence(URLError::Kind kind) noexcept {
    switch (kind) {
    case URLError::Kind::cancelled:
        return "The request was cancelled";
    case URLError::Kind::timedOut:
        return "The request timed out";
    case URLError::Kind::cannotConnect:
        return "Could not connect to the server";
    case URLError::Kind::dns:
        return "The host name could not be resolved";
    case URLError::Kind::connectionLost:
        return "The network connection was lost";
    case URLError::Kind::badResponse:
        return "The server sent an invalid response";
    case URLError::Kind::tls:
        return "A secure connection to the server could not be made";
    case URLError::Kind::tooManyRedirects:
        return "Too many redirects";
    case URLError::Kind::bodyLength:
        return "The request body does not have its declared length";
    case URLError::Kind::unsupportedURL:
        return "The URL is not supported";
    case URLError::Kind::invalidRequest:
        return "The request cannot be sent";
    case URLError::Kind::other:
        break;
    }
    return "The request failed";
}

} // namespace

struct URLError::Texts {
    std::string what;
    std::string failingURL;
};

URLError::URLError(Kind kind, std::string_view detail, std::string_view failingURL)
    : kind_(kind) {
    std::string text(sentence(kind));
    if (!detail.empty()) text.append(": ").append(detail);
    texts_ = std::make_shared<const Texts>(Texts{std::move(text), std::string(failingURL)});
}

const std::string& URLError::failingURL() const noexcept {
    return texts_->failingURL;
}

const char* URLError::what() const noexcept {
    return texts_->what.c_str();
}

std::string URLError::prettyDescription() const {
    return texts_->what;
}

} // namespace platform::inline v1

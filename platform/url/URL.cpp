#include "platform/url/URL.hpp"

#include "platform/url/detail/PortNumber.hpp"
#include "platform/url/detail/URLReference.hpp"

#include <utility>

namespace platform::inline v1 {

/// `reference` points into `text`, so a storage stays where it was made.
struct URL::Storage {
    explicit Storage(std::string_view given)
        : text(given)
        , reference(detail::URLReference::parse(text)) {}

    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    std::string text;
    std::optional<detail::URLReference> reference; // there in the storage of every URL
};

URL::URL() {
    // Never destroyed, so that URLs may be made until the program's very end.
    static const auto& shared = *new std::shared_ptr<const Storage>(std::make_shared<const Storage>(""));
    storage_ = shared;
}

URL::URL(std::shared_ptr<const Storage> storage) noexcept
    : storage_(std::move(storage)) {}

std::optional<URL> URL::make(std::string_view text) {
    auto storage = std::make_shared<const Storage>(text);
    if (!storage->reference) return std::nullopt;
    return URL(std::move(storage));
}

const std::string& URL::absoluteString() const noexcept {
    return storage_->text;
}

std::optional<std::string_view> URL::scheme() const noexcept {
    return storage_->reference->scheme;
}

std::optional<std::string_view> URL::percentEncodedUserInfo() const noexcept {
    return storage_->reference->userInfo;
}

std::optional<std::string_view> URL::host() const noexcept {
    return storage_->reference->host;
}

std::optional<std::uint16_t> URL::port() const noexcept {
    return detail::portNumber(portText().value_or(""));
}

std::optional<std::string_view> URL::portText() const noexcept {
    return storage_->reference->port;
}

std::string_view URL::percentEncodedPath() const noexcept {
    return storage_->reference->path;
}

std::optional<std::string_view> URL::percentEncodedQuery() const noexcept {
    return storage_->reference->query;
}

std::optional<std::string_view> URL::fragment() const noexcept {
    return storage_->reference->fragment;
}

} // namespace platform::inline v1

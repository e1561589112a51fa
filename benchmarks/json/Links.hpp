#pragma once

#include "platform/coding/Fields.hpp"
#include "platform/date/DateFormat.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The records that the contenders read and write: a page of links as the service gives it.
namespace links {

using Text = std::optional<std::string>;

struct Domain {
    std::string id{}, name{};
    bool operator==(const Domain&) const = default;
    static const platform::RecordFields& recordFields();
};

struct Tag {
    Text id{};
    std::string name{};
    bool operator==(const Tag&) const = default;
    static const platform::RecordFields& recordFields();
};

struct RegionRedirect {
    std::string countryCode{}, url{};
    bool operator==(const RegionRedirect&) const = default;
    static const platform::RecordFields& recordFields();
};

struct Link {
    std::string id{};
    platform::Date createdAt{};
    std::string destinationUrl{};
    Text title{}, description{}, imageUrl{};
    std::string slug{};
    Domain domain{};
    std::string shortUrl{};
    std::optional<double> clickCount{};
    std::vector<Tag> tags{};
    Text utmSource{}, utmMedium{}, utmCampaign{}, utmTerm{}, utmContent{}, iosRedirectUrl{}, androidRedirectUrl{};
    std::optional<std::vector<RegionRedirect>> regionRedirects{};
    std::optional<platform::Date> expireAt{};
    Text expirationRedirect{};
    bool operator==(const Link&) const = default;
    static const platform::RecordFields& recordFields();
};

struct History {
    std::vector<Link> links{};
    std::vector<Tag> tags{};
    bool operator==(const History&) const = default;
    static const platform::RecordFields& recordFields();
};

struct ErrorBody {
    Text code{};
    std::string errorDescription{};
    bool operator==(const ErrorBody&) const = default;
    static const platform::RecordFields& recordFields();
};

[[nodiscard]] History sample(std::size_t count);

inline platform::Date dateOf(std::string_view text) {
    return *platform::parseDate(text, platform::ISO8601Format::internetDateTime);
}

inline std::string textOf(platform::Date date) {
    return platform::formatDate(date, platform::ISO8601Format::internetDateTime);
}

} // namespace links

#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Record.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// Users: the account's portal, its usage and the user's own data.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// The address of the page on which the account is managed.
struct QUILLBEAM_EXPORT AccountPortalDTO {
    std::string url{};

    AccountPortalDTO() = default;

    explicit AccountPortalDTO(std::string url_)
        : url(std::move(url_)) {}

    friend bool operator==(const AccountPortalDTO&, const AccountPortalDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// What the account used of its plan's limits.
struct QUILLBEAM_EXPORT TierUsageDTO {
    double linksCreated = 0;  ///< in the current period
    double clicksTracked = 0; ///< in the current period
    double linkLimit = 0;
    double clickLimit = 0;

    TierUsageDTO() = default;

    TierUsageDTO(double linksCreated_, double clicksTracked_, double linkLimit_, double clickLimit_)
        : linksCreated(linksCreated_)
        , clicksTracked(clicksTracked_)
        , linkLimit(linkLimit_)
        , clickLimit(clickLimit_) {}

    friend bool operator==(const TierUsageDTO&, const TierUsageDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The user's own data.
struct QUILLBEAM_EXPORT UserInfoDTO {
    std::string email{};
    std::optional<std::string> firstName{};
    std::optional<std::string> lastName{};

    UserInfoDTO() = default;

    explicit UserInfoDTO(
        std::string email_,
        std::optional<std::string> firstName_ = std::nullopt,
        std::optional<std::string> lastName_ = std::nullopt
    )
        : email(std::move(email_))
        , firstName(std::move(firstName_))
        , lastName(std::move(lastName_)) {}

    friend bool operator==(const UserInfoDTO&, const UserInfoDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /users/account-portal`: gives the page on which the account is managed.
///
/// 200 `ok` with its address; 401 `unauthorized` without a valid key.
namespace getAccountPortal {

inline constexpr std::string_view id = "getAccountPortal";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;

    Headers headers{};

    Input() = default;

    explicit Input(Headers headers_)
        : headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::AccountPortalDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getAccountPortal

/// `GET /users/tier`: reads what the account used of its plan's limits.
///
/// 200 `ok` with the usage; 401 `unauthorized` without a valid key.
namespace getTierUsage {

inline constexpr std::string_view id = "getTierUsage";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;

    Headers headers{};

    Input() = default;

    explicit Input(Headers headers_)
        : headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::TierUsageDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getTierUsage

/// `GET /users/me`: reads the user's own data.
///
/// 200 `ok` with the data; 401 `unauthorized` without a valid key.
namespace getUserInfo {

inline constexpr std::string_view id = "getUserInfo";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;

    Headers headers{};

    Input() = default;

    explicit Input(Headers headers_)
        : headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::UserInfoDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getUserInfo

} // namespace QuillbeamAPI::inline v1::Operations

#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Record.hpp"
#include "platform/date/Date.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// API keys: what authenticates calls.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// What it takes to make an API key.
struct QUILLBEAM_EXPORT CreateApiKeyDTO {
    std::optional<std::string> name{};

    CreateApiKeyDTO() = default;

    explicit CreateApiKeyDTO(std::optional<std::string> name_)
        : name(std::move(name_)) {}

    friend bool operator==(const CreateApiKeyDTO&, const CreateApiKeyDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// An API key of the account.
struct QUILLBEAM_EXPORT APIKeyDTO {
    std::string id{};
    std::string key{}; ///< the secret itself
    std::optional<std::string> name{};
    platform::Date createdAt{};
    std::optional<platform::Date> lastUsedAt{}; ///< absent while it was never used

    APIKeyDTO() = default;

    APIKeyDTO(
        std::string id_,
        std::string key_,
        std::optional<std::string> name_,
        platform::Date createdAt_,
        std::optional<platform::Date> lastUsedAt_ = std::nullopt
    )
        : id(std::move(id_))
        , key(std::move(key_))
        , name(std::move(name_))
        , createdAt(createdAt_)
        , lastUsedAt(lastUsedAt_) {}

    friend bool operator==(const APIKeyDTO&, const APIKeyDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /api-keys`: lists the account's API keys.
///
/// 200 `ok` with the keys as a plain list; 401 `unauthorized` without a valid key.
namespace getApiKeys {

inline constexpr std::string_view id = "getApiKeys";

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

class Output : public Responses<Output, Ok<std::vector<Components::Schemas::APIKeyDTO>>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getApiKeys

/// `POST /api-keys`: makes an API key.
///
/// 201 `created` with the key; 401 `unauthorized` without a valid key.
namespace createApiKey {

inline constexpr std::string_view id = "createApiKey";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::CreateApiKeyDTO>;

    Headers headers{};
    Body body{};

    Input() = default;

    explicit Input(Body body_)
        : body(std::move(body_)) {}

    Input(Headers headers_, Body body_)
        : headers(std::move(headers_))
        , body(std::move(body_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Created<Components::Schemas::APIKeyDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace createApiKey

/// `DELETE /api-keys/{id}`: deletes an API key, which stops working at once.
///
/// 200 `ok`, without a body; 401 `unauthorized` without a valid key; 404 `notFound` for an unknown id.
namespace deleteApiKey {

inline constexpr std::string_view id = "deleteApiKey";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Path {
    std::string id{};

    Path() = default;

    explicit Path(std::string id_)
        : id(std::move(id_)) {}

    friend bool operator==(const Path&, const Path&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Input {
    using Path = deleteApiKey::Path;
    using Headers = AcceptHeaders;

    Path path{};
    Headers headers{};

    Input() = default;

    explicit Input(Path path_, Headers headers_ = Headers())
        : path(std::move(path_))
        , headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<>, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace deleteApiKey

} // namespace QuillbeamAPI::inline v1::Operations

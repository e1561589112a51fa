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
#include <vector>

/// Tags: the names that sort an account's links.
///
/// There is no operation to make a tag: `CreateLinkDTO` and `EditLinkDTO` carry tags, and one without an id is made.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// A tag: a name that links of the account share.
struct QUILLBEAM_EXPORT TagDTO {
    std::optional<std::string> id{}; ///< absent in a tag that is yet to be made
    std::string name{};

    TagDTO() = default;

    TagDTO(std::optional<std::string> id_, std::string name_)
        : id(std::move(id_))
        , name(std::move(name_)) {}

    friend bool operator==(const TagDTO&, const TagDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /tags`: lists the account's tags.
///
/// 200 `ok` with the tags as a plain list; 401 `unauthorized` without a valid key.
namespace getTags {

inline constexpr std::string_view id = "getTags";

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

class Output : public Responses<Output, Ok<std::vector<Components::Schemas::TagDTO>>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getTags

/// `PUT /tags/{id}`: renames a tag. The path names the tag to change.
///
/// 200 `ok` with the tag as it is now; 400 `badRequest` for a bad name; 401 `unauthorized` without a valid key; 404
/// `notFound` for an unknown id.
namespace updateTag {

inline constexpr std::string_view id = "updateTag";

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
    using Path = updateTag::Path;
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::TagDTO>;

    Path path{};
    Headers headers{};
    Body body{};

    Input() = default;

    Input(Path path_, Body body_)
        : path(std::move(path_))
        , body(std::move(body_)) {}

    Input(Path path_, Headers headers_, Body body_)
        : path(std::move(path_))
        , headers(std::move(headers_))
        , body(std::move(body_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::TagDTO>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace updateTag

/// `DELETE /tags/{id}`: removes a tag from the account and its links.
///
/// 200 `ok`, without a body; 401 `unauthorized` without a valid key; 404 `notFound` for an unknown id.
namespace removeTag {

inline constexpr std::string_view id = "removeTag";

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
    using Path = removeTag::Path;
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

} // namespace removeTag

} // namespace QuillbeamAPI::inline v1::Operations

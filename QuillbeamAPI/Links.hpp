#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "QuillbeamAPI/Tags.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Record.hpp"
#include "platform/date/Date.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Links: short URLs that lead to a destination, with tags, UTM values, redirects by platform and region, a social
/// preview and an expiry.
///
/// The three link records differ on purpose: a link names its expiry redirect `expirationRedirect` and holds its
/// domain, what makes or edits one names it `expirationRedirectUrl`, and an edit leaves untouched whatever is absent.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// A destination of its own for visitors from one country.
struct QUILLBEAM_EXPORT RegionRedirect {
    std::string countryCode{}; ///< ISO 3166-1 alpha-2
    std::string url{};         ///< where visitors from that country are led

    RegionRedirect() = default;

    RegionRedirect(std::string countryCode_, std::string url_)
        : countryCode(std::move(countryCode_))
        , url(std::move(url_)) {}

    friend bool operator==(const RegionRedirect&, const RegionRedirect&) = default;

    static const platform::RecordFields& recordFields();
};

/// A link of the account.
struct QUILLBEAM_EXPORT LinkDTO {
    std::string id{};
    platform::Date createdAt{};
    std::string destinationUrl{};       ///< where the link leads
    std::optional<std::string> title{}; ///< of the social preview, as are the next two
    std::optional<std::string> description{};
    std::optional<std::string> imageUrl{};
    std::string slug{}; ///< the path of the short URL
    DomainDTO domain{};
    std::string shortUrl{};             ///< the address to hand out
    std::optional<double> clickCount{}; ///< absent where it was not counted, which is not 0
    std::vector<TagDTO> tags{};
    std::optional<std::string> utmSource{};
    std::optional<std::string> utmMedium{};
    std::optional<std::string> utmCampaign{};
    std::optional<std::string> utmTerm{};
    std::optional<std::string> utmContent{};
    std::optional<std::string> iosRedirectUrl{};     ///< for visitors on iOS, in place of the destination
    std::optional<std::string> androidRedirectUrl{}; ///< for visitors on Android
    std::optional<std::vector<RegionRedirect>> regionRedirects{};
    std::optional<platform::Date> expireAt{};        ///< when the link stops leading to its destination
    std::optional<std::string> expirationRedirect{}; ///< where it leads after that

    LinkDTO() = default;

    LinkDTO(
        std::string id_,
        platform::Date createdAt_,
        std::string destinationUrl_,
        std::optional<std::string> title_,
        std::optional<std::string> description_,
        std::optional<std::string> imageUrl_,
        std::string slug_,
        DomainDTO domain_,
        std::string shortUrl_,
        std::optional<double> clickCount_,
        std::vector<TagDTO> tags_,
        std::optional<std::string> utmSource_ = std::nullopt,
        std::optional<std::string> utmMedium_ = std::nullopt,
        std::optional<std::string> utmCampaign_ = std::nullopt,
        std::optional<std::string> utmTerm_ = std::nullopt,
        std::optional<std::string> utmContent_ = std::nullopt,
        std::optional<std::string> iosRedirectUrl_ = std::nullopt,
        std::optional<std::string> androidRedirectUrl_ = std::nullopt,
        std::optional<std::vector<RegionRedirect>> regionRedirects_ = std::nullopt,
        std::optional<platform::Date> expireAt_ = std::nullopt,
        std::optional<std::string> expirationRedirect_ = std::nullopt
    )
        : id(std::move(id_))
        , createdAt(createdAt_)
        , destinationUrl(std::move(destinationUrl_))
        , title(std::move(title_))
        , description(std::move(description_))
        , imageUrl(std::move(imageUrl_))
        , slug(std::move(slug_))
        , domain(std::move(domain_))
        , shortUrl(std::move(shortUrl_))
        , clickCount(clickCount_)
        , tags(std::move(tags_))
        , utmSource(std::move(utmSource_))
        , utmMedium(std::move(utmMedium_))
        , utmCampaign(std::move(utmCampaign_))
        , utmTerm(std::move(utmTerm_))
        , utmContent(std::move(utmContent_))
        , iosRedirectUrl(std::move(iosRedirectUrl_))
        , androidRedirectUrl(std::move(androidRedirectUrl_))
        , regionRedirects(std::move(regionRedirects_))
        , expireAt(expireAt_)
        , expirationRedirect(std::move(expirationRedirect_)) {}

    friend bool operator==(const LinkDTO&, const LinkDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The account's links and tags.
struct QUILLBEAM_EXPORT LinkHistoryDTO {
    std::vector<LinkDTO> links{};
    std::vector<TagDTO> tags{}; ///< all tags of the account, to filter by

    LinkHistoryDTO() = default;

    LinkHistoryDTO(std::vector<LinkDTO> links_, std::vector<TagDTO> tags_)
        : links(std::move(links_))
        , tags(std::move(tags_)) {}

    friend bool operator==(const LinkHistoryDTO&, const LinkHistoryDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// What it takes to make a link.
struct QUILLBEAM_EXPORT CreateLinkDTO {
    std::vector<TagDTO> tags{}; ///< a tag without an id is made
    std::optional<std::vector<RegionRedirect>> regionRedirects{};
    std::optional<platform::Date> expireAt{};
    std::string destinationUrl{};
    std::string domain{};              ///< the domain's host name
    std::optional<std::string> slug{}; ///< made by the service where absent
    std::optional<std::string> utmSource{};
    std::optional<std::string> utmMedium{};
    std::optional<std::string> utmCampaign{};
    std::optional<std::string> utmTerm{};
    std::optional<std::string> utmContent{};
    std::optional<std::string> title{};
    std::optional<std::string> description{};
    std::optional<std::string> imageUrl{};
    std::optional<std::string> iosRedirectUrl{};
    std::optional<std::string> androidRedirectUrl{};
    std::optional<std::string> expirationRedirectUrl{}; ///< where the link leads once it has expired

    CreateLinkDTO() = default;

    CreateLinkDTO(
        std::vector<TagDTO> tags_,
        std::optional<std::vector<RegionRedirect>> regionRedirects_,
        std::optional<platform::Date> expireAt_,
        std::string destinationUrl_,
        std::string domain_,
        std::optional<std::string> slug_ = std::nullopt,
        std::optional<std::string> utmSource_ = std::nullopt,
        std::optional<std::string> utmMedium_ = std::nullopt,
        std::optional<std::string> utmCampaign_ = std::nullopt,
        std::optional<std::string> utmTerm_ = std::nullopt,
        std::optional<std::string> utmContent_ = std::nullopt,
        std::optional<std::string> title_ = std::nullopt,
        std::optional<std::string> description_ = std::nullopt,
        std::optional<std::string> imageUrl_ = std::nullopt,
        std::optional<std::string> iosRedirectUrl_ = std::nullopt,
        std::optional<std::string> androidRedirectUrl_ = std::nullopt,
        std::optional<std::string> expirationRedirectUrl_ = std::nullopt
    )
        : tags(std::move(tags_))
        , regionRedirects(std::move(regionRedirects_))
        , expireAt(expireAt_)
        , destinationUrl(std::move(destinationUrl_))
        , domain(std::move(domain_))
        , slug(std::move(slug_))
        , utmSource(std::move(utmSource_))
        , utmMedium(std::move(utmMedium_))
        , utmCampaign(std::move(utmCampaign_))
        , utmTerm(std::move(utmTerm_))
        , utmContent(std::move(utmContent_))
        , title(std::move(title_))
        , description(std::move(description_))
        , imageUrl(std::move(imageUrl_))
        , iosRedirectUrl(std::move(iosRedirectUrl_))
        , androidRedirectUrl(std::move(androidRedirectUrl_))
        , expirationRedirectUrl(std::move(expirationRedirectUrl_)) {}

    friend bool operator==(const CreateLinkDTO&, const CreateLinkDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The changes to a link; what is absent stays as it is.
struct QUILLBEAM_EXPORT EditLinkDTO {
    std::optional<std::vector<RegionRedirect>> regionRedirects{};
    std::optional<platform::Date> expireAt{};
    std::optional<std::string> destinationUrl{};
    std::optional<std::vector<TagDTO>> tags{}; ///< absent leaves the tags as they are, an empty list removes them
    std::optional<std::string> utmSource{};
    std::optional<std::string> utmMedium{};
    std::optional<std::string> utmCampaign{};
    std::optional<std::string> utmTerm{};
    std::optional<std::string> utmContent{};
    std::optional<std::string> title{};
    std::optional<std::string> description{};
    std::optional<std::string> imageUrl{};
    std::optional<std::string> iosRedirectUrl{};
    std::optional<std::string> androidRedirectUrl{};
    std::optional<std::string> expirationRedirectUrl{};

    EditLinkDTO() = default;

    explicit EditLinkDTO(
        std::optional<std::vector<RegionRedirect>> regionRedirects_,
        std::optional<platform::Date> expireAt_ = std::nullopt,
        std::optional<std::string> destinationUrl_ = std::nullopt,
        std::optional<std::vector<TagDTO>> tags_ = std::nullopt,
        std::optional<std::string> utmSource_ = std::nullopt,
        std::optional<std::string> utmMedium_ = std::nullopt,
        std::optional<std::string> utmCampaign_ = std::nullopt,
        std::optional<std::string> utmTerm_ = std::nullopt,
        std::optional<std::string> utmContent_ = std::nullopt,
        std::optional<std::string> title_ = std::nullopt,
        std::optional<std::string> description_ = std::nullopt,
        std::optional<std::string> imageUrl_ = std::nullopt,
        std::optional<std::string> iosRedirectUrl_ = std::nullopt,
        std::optional<std::string> androidRedirectUrl_ = std::nullopt,
        std::optional<std::string> expirationRedirectUrl_ = std::nullopt
    )
        : regionRedirects(std::move(regionRedirects_))
        , expireAt(expireAt_)
        , destinationUrl(std::move(destinationUrl_))
        , tags(std::move(tags_))
        , utmSource(std::move(utmSource_))
        , utmMedium(std::move(utmMedium_))
        , utmCampaign(std::move(utmCampaign_))
        , utmTerm(std::move(utmTerm_))
        , utmContent(std::move(utmContent_))
        , title(std::move(title_))
        , description(std::move(description_))
        , imageUrl(std::move(imageUrl_))
        , iosRedirectUrl(std::move(iosRedirectUrl_))
        , androidRedirectUrl(std::move(androidRedirectUrl_))
        , expirationRedirectUrl(std::move(expirationRedirectUrl_)) {}

    friend bool operator==(const EditLinkDTO&, const EditLinkDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// A link that was made without an account.
struct QUILLBEAM_EXPORT AnonymousLinkResponseDTO {
    LinkDTO link{};
    std::string claimToken{}; ///< hand it to `claimLegacyLinks` to move the link into an account

    AnonymousLinkResponseDTO() = default;

    AnonymousLinkResponseDTO(LinkDTO link_, std::string claimToken_)
        : link(std::move(link_))
        , claimToken(std::move(claimToken_)) {}

    friend bool operator==(const AnonymousLinkResponseDTO&, const AnonymousLinkResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The links to make in one call: all of them or none.
struct QUILLBEAM_EXPORT BulkCreateLinksDTO {
    std::vector<CreateLinkDTO> links{};

    BulkCreateLinksDTO() = default;

    explicit BulkCreateLinksDTO(std::vector<CreateLinkDTO> links_)
        : links(std::move(links_)) {}

    friend bool operator==(const BulkCreateLinksDTO&, const BulkCreateLinksDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The links that were made.
struct QUILLBEAM_EXPORT BulkCreateLinksResponseDTO {
    std::vector<LinkDTO> links{}; ///< in the order of the request

    BulkCreateLinksResponseDTO() = default;

    explicit BulkCreateLinksResponseDTO(std::vector<LinkDTO> links_)
        : links(std::move(links_)) {}

    friend bool operator==(const BulkCreateLinksResponseDTO&, const BulkCreateLinksResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// Links to claim or to import.
struct QUILLBEAM_EXPORT ClaimLinksDTO {
    std::vector<std::string> links{}; ///< claim tokens, or the addresses of the links to import

    ClaimLinksDTO() = default;

    explicit ClaimLinksDTO(std::vector<std::string> links_)
        : links(std::move(links_)) {}

    friend bool operator==(const ClaimLinksDTO&, const ClaimLinksDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// An imported link: its old address and its new one.
struct QUILLBEAM_EXPORT GoogleImportLinkDTO {
    std::string originalUrl{};
    std::string newUrl{};

    GoogleImportLinkDTO() = default;

    GoogleImportLinkDTO(std::string originalUrl_, std::string newUrl_)
        : originalUrl(std::move(originalUrl_))
        , newUrl(std::move(newUrl_)) {}

    friend bool operator==(const GoogleImportLinkDTO&, const GoogleImportLinkDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// What was imported.
struct QUILLBEAM_EXPORT GoogleImportResponseDTO {
    std::vector<GoogleImportLinkDTO> importedLinks{};

    GoogleImportResponseDTO() = default;

    explicit GoogleImportResponseDTO(std::vector<GoogleImportLinkDTO> importedLinks_)
        : importedLinks(std::move(importedLinks_)) {}

    friend bool operator==(const GoogleImportResponseDTO&, const GoogleImportResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /links`: lists the account's links, filtered by text and tags.
///
/// 200 `ok` with the links; 401 `unauthorized` without a valid key.
namespace getLinkHistory {

inline constexpr std::string_view id = "getLinkHistory";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Query {
    std::optional<std::string> query{};               ///< text to find in the links
    std::optional<std::vector<std::string>> tags{};   ///< names of tags; repeated once per element
    std::optional<std::vector<std::string>> tagIds{}; ///< ids of tags; repeated once per element

    Query() = default;

    explicit Query(
        std::optional<std::string> query_,
        std::optional<std::vector<std::string>> tags_ = std::nullopt,
        std::optional<std::vector<std::string>> tagIds_ = std::nullopt
    )
        : query(std::move(query_))
        , tags(std::move(tags_))
        , tagIds(std::move(tagIds_)) {}

    friend bool operator==(const Query&, const Query&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Input {
    using Query = getLinkHistory::Query;
    using Headers = AcceptHeaders;

    Query query{};
    Headers headers{};

    Input() = default;

    explicit Input(Query query_, Headers headers_ = Headers())
        : query(std::move(query_))
        , headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::LinkHistoryDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getLinkHistory

/// `POST /links`: makes a link.
///
/// 201 `created` with the link; 400 `badRequest` for bad values or beyond a limit; 401 `unauthorized` without a valid
/// key; 404 `notFound` for an unknown domain.
namespace createLink {

inline constexpr std::string_view id = "createLink";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::CreateLinkDTO>;

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

class Output : public Responses<Output, Created<Components::Schemas::LinkDTO>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace createLink

/// `POST /links/public`: makes a link without an account.
///
/// 201 `created` with the link and the token to claim it; 400 `badRequest` for bad values; 404 `notFound` for an
/// unknown domain. It needs no key and documents no 401.
namespace createAnonymousLink {

inline constexpr std::string_view id = "createAnonymousLink";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::CreateLinkDTO>;

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

class Output : public Responses<Output, Created<Components::Schemas::AnonymousLinkResponseDTO>, BadRequest, NotFound> {
    using Responses::Responses;
};

} // namespace createAnonymousLink

/// `POST /links/bulk`: makes several links, all of them or none.
///
/// 201 `created` with the links; 400 `badRequest` for bad values or beyond a limit; 401 `unauthorized` without a valid
/// key; 404 `notFound` for an unknown domain.
namespace createBulkLinks {

inline constexpr std::string_view id = "createBulkLinks";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::BulkCreateLinksDTO>;

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

class Output : public Responses<
                   Output,
                   Created<Components::Schemas::BulkCreateLinksResponseDTO>,
                   BadRequest,
                   Unauthorized,
                   NotFound> {
    using Responses::Responses;
};

} // namespace createBulkLinks

/// `POST /links/google-import`: imports links of another service.
///
/// 201 `created` with the old and new addresses; 400 `badRequest` for an address that cannot be imported; 401
/// `unauthorized` without a valid key; 404 `notFound` for an unknown link.
namespace importGoogleLinks {

inline constexpr std::string_view id = "importGoogleLinks";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::ClaimLinksDTO>;

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

class Output : public Responses<
                   Output,
                   Created<Components::Schemas::GoogleImportResponseDTO>,
                   BadRequest,
                   Unauthorized,
                   NotFound> {
    using Responses::Responses;
};

} // namespace importGoogleLinks

/// `PUT /links/{id}`: changes a link.
///
/// 200 `ok` with the link as it is now; 400 `badRequest` for bad values; 401 `unauthorized` without a valid key; 404
/// `notFound` for an unknown id.
namespace updateLink {

inline constexpr std::string_view id = "updateLink";

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
    using Path = updateLink::Path;
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::EditLinkDTO>;

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

class Output : public Responses<Output, Ok<Components::Schemas::LinkDTO>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace updateLink

/// `DELETE /links/{id}`: deletes a link.
///
/// 200 `ok`, without a body; 401 `unauthorized` without a valid key; 404 `notFound` for an unknown id.
namespace deleteLink {

inline constexpr std::string_view id = "deleteLink";

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
    using Path = deleteLink::Path;
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

} // namespace deleteLink

/// `POST /links/claim`: moves links that were made without an account into the account.
///
/// 201 `created`, without a body; 400 `badRequest` for an unknown token; 401 `unauthorized` without a valid key.
namespace claimLegacyLinks {

inline constexpr std::string_view id = "claimLegacyLinks";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::ClaimLinksDTO>;

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

class Output : public Responses<Output, Created<>, BadRequest, Unauthorized> {
    using Responses::Responses;
};

} // namespace claimLegacyLinks

} // namespace QuillbeamAPI::inline v1::Operations

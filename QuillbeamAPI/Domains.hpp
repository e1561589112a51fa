#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "platform/Export.hpp"
#include "platform/coding/RawValues.hpp"
#include "platform/coding/Record.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Domains: the host names under which the service makes short links.
///
/// For a custom domain the service also reports its status, the DNS records to set and what keeps it from being
/// verified.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// The name of a DNS record.
struct QUILLBEAM_EXPORT DNSRecordName {
    std::string name{};                     ///< the registered domain
    std::optional<std::string> subdomain{}; ///< what stands before it, if anything

    DNSRecordName() = default;

    explicit DNSRecordName(std::string name_, std::optional<std::string> subdomain_ = std::nullopt)
        : name(std::move(name_))
        , subdomain(std::move(subdomain_)) {}

    friend bool operator==(const DNSRecordName&, const DNSRecordName&) = default;

    static const platform::RecordFields& recordFields();
};

/// A DNS record that the owner of a custom domain has to set.
struct QUILLBEAM_EXPORT DNSRecord {
    DNSRecordName name{};
    std::string _type{}; ///< the kind of the record, such as "CNAME"; the JSON key is "type"
    std::string value{};

    DNSRecord() = default;

    DNSRecord(DNSRecordName name_, std::string type_, std::string value_)
        : name(std::move(name_))
        , _type(std::move(type_))
        , value(std::move(value_)) {}

    friend bool operator==(const DNSRecord&, const DNSRecord&) = default;

    static const platform::RecordFields& recordFields();
};

/// What the service knows of a custom domain.
struct QUILLBEAM_EXPORT CustomDomainMetadata {
    enum class statusPayload { ACTIVE, PENDING, BLOCKED };

    std::optional<std::string> redirectUrl{}; ///< where a visit to the bare domain leads
    statusPayload status = statusPayload::ACTIVE;
    std::vector<DNSRecord> dnsRecords{};
    std::vector<std::string> verificationErrors{}; ///< what keeps the domain from being verified, for people

    CustomDomainMetadata() = default;

    CustomDomainMetadata(
        std::optional<std::string> redirectUrl_,
        statusPayload status_,
        std::vector<DNSRecord> dnsRecords_,
        std::vector<std::string> verificationErrors_
    )
        : redirectUrl(std::move(redirectUrl_))
        , status(status_)
        , dnsRecords(std::move(dnsRecords_))
        , verificationErrors(std::move(verificationErrors_)) {}

    friend bool operator==(const CustomDomainMetadata&, const CustomDomainMetadata&) = default;

    static const platform::RecordFields& recordFields();
};

/// A domain of the account.
struct QUILLBEAM_EXPORT DomainDTO {
    std::string id{};
    std::string name{};                                         ///< the host name
    std::optional<CustomDomainMetadata> customDomainMetadata{}; ///< absent for the service's own domains

    DomainDTO() = default;

    DomainDTO(
        std::string id_, std::string name_, std::optional<CustomDomainMetadata> customDomainMetadata_ = std::nullopt
    )
        : id(std::move(id_))
        , name(std::move(name_))
        , customDomainMetadata(std::move(customDomainMetadata_)) {}

    friend bool operator==(const DomainDTO&, const DomainDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// All domains of the account.
struct QUILLBEAM_EXPORT DomainListDTO {
    std::vector<DomainDTO> domains{};

    DomainListDTO() = default;

    explicit DomainListDTO(std::vector<DomainDTO> domains_)
        : domains(std::move(domains_)) {}

    friend bool operator==(const DomainListDTO&, const DomainListDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// One domain and whether it can serve short links already.
struct QUILLBEAM_EXPORT DomainResponseDTO {
    bool ready = false;
    DomainDTO domain{};

    DomainResponseDTO() = default;

    DomainResponseDTO(bool ready_, DomainDTO domain_)
        : ready(ready_)
        , domain(std::move(domain_)) {}

    friend bool operator==(const DomainResponseDTO&, const DomainResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// What it takes to add a domain.
struct QUILLBEAM_EXPORT CreateDomainDTO {
    std::string name{}; ///< the host name

    CreateDomainDTO() = default;

    explicit CreateDomainDTO(std::string name_)
        : name(std::move(name_)) {}

    friend bool operator==(const CreateDomainDTO&, const CreateDomainDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The settings of a custom domain that can be changed; what is absent stays as it is.
struct QUILLBEAM_EXPORT UpdateDomainDTO {
    std::optional<std::string> redirectUrl{};

    UpdateDomainDTO() = default;

    explicit UpdateDomainDTO(std::optional<std::string> redirectUrl_)
        : redirectUrl(std::move(redirectUrl_)) {}

    friend bool operator==(const UpdateDomainDTO&, const UpdateDomainDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /domains`: lists the account's domains.
///
/// 200 `ok` with all of them; 401 `unauthorized` without a valid key.
namespace getDomains {

inline constexpr std::string_view id = "getDomains";

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

class Output : public Responses<Output, Ok<Components::Schemas::DomainListDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getDomains

/// `POST /domains`: adds a domain to the account.
///
/// 201 `created` with the domain; 400 `badRequest` for a bad name or beyond a limit; 401 `unauthorized` without a valid
/// key; 409 `conflict` where the name is taken.
namespace createDomain {

inline constexpr std::string_view id = "createDomain";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::CreateDomainDTO>;

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

class Output
    : public Responses<Output, Created<Components::Schemas::DomainResponseDTO>, BadRequest, Unauthorized, Conflict> {
    using Responses::Responses;
};

} // namespace createDomain

/// `GET /domains/{id}`: reads one domain.
///
/// 200 `ok` with the domain; 400 `badRequest`; 401 `unauthorized` without a valid key; 404 `notFound` for an unknown
/// id.
namespace getDomain {

inline constexpr std::string_view id = "getDomain";

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
    using Path = getDomain::Path;
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

class Output
    : public Responses<Output, Ok<Components::Schemas::DomainResponseDTO>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace getDomain

/// `PUT /domains/{id}`: changes the settings of a custom domain.
///
/// 200 `ok` with the domain as it is now; 400 `badRequest` where the domain has no settings; 401 `unauthorized` without
/// a valid key; 404 `notFound` for an unknown id.
namespace updateDomain {

inline constexpr std::string_view id = "updateDomain";

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
    using Path = updateDomain::Path;
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::UpdateDomainDTO>;

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

class Output : public Responses<Output, Ok<Components::Schemas::DomainDTO>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace updateDomain

/// `DELETE /domains/{id}`: removes a domain from the account.
///
/// 200 `ok`, without a body; 400 `badRequest` where it cannot be removed; 401 `unauthorized` without a valid key; 404
/// `notFound` for an unknown id.
namespace deleteDomain {

inline constexpr std::string_view id = "deleteDomain";

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
    using Path = deleteDomain::Path;
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

class Output : public Responses<Output, Ok<>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace deleteDomain

} // namespace QuillbeamAPI::inline v1::Operations

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::CustomDomainMetadata::statusPayload> {
    static constexpr std::string_view values[] = {"ACTIVE", "PENDING", "BLOCKED"};
};

#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Record.hpp"

#include <string>
#include <string_view>
#include <utility>

/// Images: where the picture of a social preview is uploaded.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// Where to upload an image and where it can be read.
struct QUILLBEAM_EXPORT ImageUploadResponse {
    std::string uploadUrl{}; ///< takes one PUT with the bytes of the image
    std::string publicUrl{}; ///< where the image can be read afterwards

    ImageUploadResponse() = default;

    ImageUploadResponse(std::string uploadUrl_, std::string publicUrl_)
        : uploadUrl(std::move(uploadUrl_))
        , publicUrl(std::move(publicUrl_)) {}

    friend bool operator==(const ImageUploadResponse&, const ImageUploadResponse&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `POST /images/social-card`: gives an address to upload an image to, for a link's social preview. A POST without a
/// body.
///
/// 201 `created` with the address; 401 `unauthorized` without a valid key.
namespace getSocialCardUploadUrl {

inline constexpr std::string_view id = "getSocialCardUploadUrl";

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

class Output : public Responses<Output, Created<Components::Schemas::ImageUploadResponse>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getSocialCardUploadUrl

} // namespace QuillbeamAPI::inline v1::Operations

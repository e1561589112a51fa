#include "sandbox/Images.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Identifiers.hpp"
#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace sandbox {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t largestImage = 5 * 1024 * 1024;

struct ImageType {
    std::string_view contentType;

    // What a file of the type begins with, and what stands at `secondOffset` in it.
    std::string_view first;
    std::size_t secondOffset = 0;
    std::string_view second = {};
};

constexpr std::array imageTypes{
    ImageType{"image/png", "\x89PNG\r\n\x1a\n"sv},
    ImageType{"image/jpeg", "\xff\xd8\xff"sv},
    ImageType{"image/gif", "GIF8"sv},
    ImageType{"image/webp", "RIFF"sv, 8, "WEBP"sv},
};

const ImageType& typeOf(const Request& request) {
    std::string name = request.header("content-type").value_or("");
    // Parameters after the type say nothing of an image.
    name.resize(std::min(name.size(), name.find_first_of("; ")));
    for (const ImageType& type : imageTypes) {
        if (type.contentType == name) return type;
    }
    throw Problem(415, "A social card is an image/png, image/jpeg, image/gif or image/webp.");
}

bool holds(const std::string& bytes, const ImageType& type) {
    return bytes.starts_with(type.first) && bytes.size() >= type.secondOffset + type.second.size() &&
           bytes.compare(type.secondOffset, type.second.size(), type.second) == 0;
}

Response addSocialCard(Session& database, const Request& request, const Account& account) {
    const std::string id = makeIdentifier("img");
    const std::string token = makeIdentifier("upload", 20);
    database.execute("INSERT INTO images (id, account_id, upload_token) VALUES (?, ?, ?)", {id, account.id, token});
    return Response::json(
        201, {{"uploadUrl", request.origin() + "/uploads/" + token}, {"publicUrl", request.origin() + "/images/" + id}}
    );
}

Response upload(Session& database, const Request& request) {
    const std::string& token = request.parameters.at(0);
    const auto row = database.first("SELECT content_type IS NOT NULL FROM images WHERE upload_token = ?", {token});
    if (!row) throw Problem::notFound("There is nothing at this path.");
    if (row->integer(0) != 0) throw Problem::conflict("The image was uploaded already.");
    const ImageType& type = typeOf(request);
    if (request.body.size() > largestImage) {
        throw Problem(413, "A social card takes at most " + std::to_string(largestImage) + " bytes.");
    }
    if (!holds(request.body, type)) {
        throw Problem::badRequest("The bytes are not an " + std::string(type.contentType) + ".");
    }
    database.execute(
        "UPDATE images SET content_type = ?, bytes = ? WHERE upload_token = ?",
        {std::string(type.contentType), Bytes{request.body}, token}
    );
    return Response::empty(200);
}

Response getImage(Session& database, const Request& request) {
    const auto row = database.first(
        "SELECT content_type, bytes FROM images WHERE id = ? AND content_type IS NOT NULL", {request.parameters.at(0)}
    );
    if (!row) throw Problem::notFound("There is nothing at this path.");
    Response response = Response::empty(200);
    response.contentType = row->text(0);
    response.body = row->bytes(1);
    response.headers.emplace_back("Cache-Control", "public, max-age=31536000, immutable");
    response.headers.emplace_back("X-Content-Type-Options", "nosniff");
    return response;
}

} // namespace

void addImageRoutes(Router& router) {
    router.add("POST", "/images/social-card", withAccount(addSocialCard));
    router.add("PUT", "/uploads/{}", upload);
    router.add("GET", "/images/{}", getImage);
}

} // namespace sandbox

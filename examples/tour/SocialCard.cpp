#include "QuillbeamAPI/Images.hpp"
#include "examples/tour/Chapters.hpp"

#include <array>
#include <cstdint>
#include <string_view>

namespace examples {

namespace {

// A picture of one grey pixel (PNG).
constexpr std::array<std::uint8_t, 67> picture = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00,
    0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0x3a, 0x7e, 0x9b, 0x55, 0x00,
    0x00, 0x00, 0x0a, 0x49, 0x44, 0x41, 0x54, 0x78, 0xda, 0x63, 0x68, 0x00, 0x00, 0x00, 0x82, 0x00, 0x81,
    0xda, 0x45, 0x08, 0x3b, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82
};

} // namespace

Task<void> uploadASocialCard(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("A picture for social networks");

    report.step("Ask where to upload it");
    auto output = co_await guide->client.getSocialCardUploadUrl();
    guide->show(Operations::getSocialCardUploadUrl::id, output, 201);
    const ImageUploadResponse& addresses = output.created().body.json();
    report.detail("upload to", addresses.uploadUrl);
    report.detail("read from", addresses.publicUrl);

    report.step("Upload it there, and read it back");
    HTTPTypes::HTTPFields fields;
    fields[HTTPField::Name::contentType] = "image/png";
    const HTTPBody body(picture);
    auto stored = co_await guide->browser.visit(HTTPRequest::Method::put, addresses.uploadUrl, fields, body);
    report.visit("PUT (upload address)", stored.status, 200);
    auto shown = co_await guide->browser.visit(HTTPRequest::Method::get, addresses.publicUrl);
    report.visit("GET (public address)", shown.status, 200);
    const std::string type = shown.fields.value(HTTPField::Name::contentType).value_or("no type");
    report.detail("picture", type + ", " + std::to_string(shown.content.size()) + " bytes");
    const std::string_view sent(reinterpret_cast<const char*>(picture.data()), picture.size());
    report.expect(shown.content == sent, "the picture is another than the one that was uploaded");
    guide->story.cardUrl = addresses.publicUrl;
}

} // namespace examples

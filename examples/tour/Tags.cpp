#include "QuillbeamAPI/Tags.hpp"

#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "examples/tour/Chapters.hpp"

#include <algorithm>
#include <stdexcept>

namespace examples {

namespace {

std::string idOf(const std::vector<TagDTO>& tags, std::string_view name) {
    const auto at = std::find_if(tags.begin(), tags.end(), [&](const TagDTO& tag) { return tag.name == name; });
    if (at == tags.end()) throw std::runtime_error("a tag is not listed: " + std::string(name));
    return at->id.value_or("");
}

void showTags(Report& report, const std::vector<TagDTO>& tags) {
    for (const TagDTO& tag : tags) {
        report.detail(tag.id.value_or("(no id)"), tag.name);
    }
}

} // namespace

Task<void> sortByTags(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("Tags");

    report.step("See which ones the links have brought along");
    auto listed = co_await guide->client.getTags();
    guide->show(Operations::getTags::id, listed, 200);
    const std::vector<TagDTO> tags = listed.ok().body.json();
    showTags(report, tags);
    const std::string spring = idOf(tags, "spring");
    const std::string newsletter = idOf(tags, "newsletter");

    report.step("Rename one, but not to the name of another");
    const TagDTO letter(std::nullopt, "letter");
    auto renamed = co_await guide->client.updateTag(Operations::updateTag::Path(newsletter), letter);
    guide->show(Operations::updateTag::id, renamed, 200);
    report.detail("name", renamed.ok().body.json().name);
    const TagDTO taken(std::nullopt, "spring");
    auto refused = co_await guide->client.updateTag(Operations::updateTag::Path(newsletter), taken);
    guide->show(Operations::updateTag::id, refused, 400);
    guide->showError(refused.badRequest().body.json());

    report.step("Remove them: the links stay");
    const std::vector<std::string> both{spring, newsletter};
    for (const std::string& id : both) {
        auto removed = co_await guide->client.removeTag(Operations::removeTag::Path(id));
        guide->show(Operations::removeTag::id, removed, 200);
    }
    auto again = co_await guide->client.removeTag(Operations::removeTag::Path(spring));
    guide->show(Operations::removeTag::id, again, 404);
    guide->showError(again.notFound().body.json());
}

} // namespace examples

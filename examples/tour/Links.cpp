#include "QuillbeamAPI/Links.hpp"

#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "examples/tour/Chapters.hpp"

#include <algorithm>
#include <stdexcept>

namespace examples {

namespace {

CreateLinkDTO linkTo(std::string destination, std::string domain) {
    CreateLinkDTO link;
    link.destinationUrl = std::move(destination);
    link.domain = std::move(domain);
    return link;
}

/// A link that uses all that a link can have.
CreateLinkDTO campaign(const Story& story) {
    CreateLinkDTO link = linkTo(Campaign::destination, story.domain.name);
    link.slug = "spring";
    link.tags = {TagDTO(std::nullopt, "spring"), TagDTO(std::nullopt, "newsletter")};
    link.utmSource = "newsletter";
    link.utmMedium = "email";
    link.utmCampaign = "spring";
    link.title = "Spring is here";
    link.description = "Everything for the balcony";
    link.imageUrl = story.cardUrl;
    link.iosRedirectUrl = Campaign::forIOS;
    link.androidRedirectUrl = Campaign::forAndroid;
    link.regionRedirects = {RegionRedirect("FR", Campaign::forFrance)};
    return link;
}

void showLink(Report& report, const LinkDTO& link) {
    report.detail("short", link.shortUrl);
    report.detail("leads to", link.destinationUrl);
    if (link.iosRedirectUrl) report.detail("  on iOS", *link.iosRedirectUrl);
    if (link.androidRedirectUrl) report.detail("  on Android", *link.androidRedirectUrl);
    for (const RegionRedirect& redirect : link.regionRedirects.value_or(std::vector<RegionRedirect>())) {
        report.detail("  from " + redirect.countryCode, redirect.url);
    }
    std::string tags;
    for (const TagDTO& tag : link.tags) {
        tags += (tags.empty() ? "" : ", ") + tag.name;
    }
    if (!tags.empty()) report.detail("tags", tags);
    if (link.title) report.detail("title", *link.title);
}

Task<LinkHistoryDTO> history(std::shared_ptr<Guide> guide, Operations::getLinkHistory::Query query) {
    auto output = co_await guide->client.getLinkHistory(query);
    guide->show(Operations::getLinkHistory::id, output, 200);
    co_return output.ok().body.json();
}

void showHistory(Report& report, const LinkHistoryDTO& history) {
    for (const LinkDTO& link : history.links) {
        report.detail(link.slug, link.destinationUrl);
    }
}

} // namespace

Task<void> makeLinks(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    Story& story = guide->story;
    const Operations::getLinkHistory::Query everything;
    report.chapter("Links");

    report.step("See which links there are");
    Task<LinkHistoryDTO> looking = history(guide, everything);
    story.historyBefore = co_await std::move(looking);
    report.detail("links", std::to_string(story.historyBefore.links.size()));

    report.step("Make one with all that a link can have");
    const CreateLinkDTO wanted = campaign(story);
    auto created = co_await guide->client.createLink(wanted);
    guide->show(Operations::createLink::id, created, 201);
    story.campaign = created.created().body.json();
    story.linkIds.push_back(story.campaign.id);
    showLink(report, story.campaign);

    report.step("Make one with the same slug, and one on a domain that is not there");
    auto taken = co_await guide->client.createLink(wanted);
    guide->show(Operations::createLink::id, taken, 400);
    guide->showError(taken.badRequest().body.json());
    const CreateLinkDTO homeless = linkTo("https://www.tour.example/", "no.tour.example");
    auto nowhere = co_await guide->client.createLink(homeless);
    guide->show(Operations::createLink::id, nowhere, 404);
    guide->showError(nowhere.notFound().body.json());

    report.step("Make several at once; with a bad one among them, none is made");
    const std::string builtIn = story.domainsBefore.domains.at(0).name;
    BulkCreateLinksDTO several;
    for (const char* page : {"tulips", "daffodils", "crocuses"}) {
        several.links.push_back(linkTo(std::string("https://www.tour.example/") + page, builtIn));
    }
    auto bulk = co_await guide->client.createBulkLinks(several);
    guide->show(Operations::createBulkLinks::id, bulk, 201);
    const std::vector<LinkDTO> made = bulk.created().body.json().links;
    for (const LinkDTO& link : made) {
        story.linkIds.push_back(link.id);
        report.detail("short", link.shortUrl);
    }
    several.links.push_back(linkTo("not an address", builtIn));
    auto nothing = co_await guide->client.createBulkLinks(several);
    guide->show(Operations::createBulkLinks::id, nothing, 400);
    guide->showError(nothing.badRequest().body.json());

    report.step("Import links of another service");
    const ClaimLinksDTO foreign({"https://goo.gl/tour-a", "https://goo.gl/tour-b"});
    auto imported = co_await guide->client.importGoogleLinks(foreign);
    guide->show(Operations::importGoogleLinks::id, imported, 201);
    const std::vector<GoogleImportLinkDTO> importedLinks = imported.created().body.json().importedLinks;
    for (const GoogleImportLinkDTO& link : importedLinks) {
        report.detail(link.originalUrl, link.newUrl);
    }

    report.step("Make one without an account, and claim it later");
    const CreateLinkDTO unowned = linkTo("https://www.tour.example/shy", builtIn);
    auto anonymous = co_await guide->keyless.createAnonymousLink(unowned);
    guide->show(Operations::createAnonymousLink::id, anonymous, 201);
    const AnonymousLinkResponseDTO shy = anonymous.created().body.json();
    report.detail("short", shy.link.shortUrl);
    report.detail("claim token", shy.claimToken);
    const ClaimLinksDTO claim({shy.claimToken});
    auto claimed = co_await guide->client.claimLegacyLinks(claim);
    guide->show(Operations::claimLegacyLinks::id, claimed, 201);
    story.linkIds.push_back(shy.link.id);
    auto claimedAgain = co_await guide->client.claimLegacyLinks(claim);
    guide->show(Operations::claimLegacyLinks::id, claimedAgain, 400);
    guide->showError(claimedAgain.badRequest().body.json());

    report.step("Change a title: what is not named stays as it is");
    EditLinkDTO edit;
    edit.title = "Spring is really here";
    auto updated = co_await guide->client.updateLink(Operations::updateLink::Path(story.campaign.id), edit);
    guide->show(Operations::updateLink::id, updated, 200);
    story.campaign.title = edit.title;
    report.detail("title", updated.ok().body.json().title.value_or("none"));
    report.expect(updated.ok().body.json() == story.campaign, "something else has changed too");

    report.step("List them all, find some by text, and some by a tag");
    Task<LinkHistoryDTO> listing = history(guide, everything);
    LinkHistoryDTO all = co_await std::move(listing);
    showHistory(report, all);
    for (const GoogleImportLinkDTO& link : importedLinks) {
        const auto at = std::find_if(all.links.begin(), all.links.end(), [&](const LinkDTO& listed) {
            return listed.shortUrl == link.newUrl;
        });
        if (at == all.links.end()) throw std::runtime_error("an imported link is not listed");
        story.linkIds.push_back(at->id);
    }
    report.expect(
        all.links.size() == story.historyBefore.links.size() + story.linkIds.size(), "the number of links is another"
    );
    const Operations::getLinkHistory::Query byText("daffodil");
    Task<LinkHistoryDTO> searching = history(guide, byText);
    LinkHistoryDTO found = co_await std::move(searching);
    showHistory(report, found);
    report.expect(!found.links.empty(), "no link was found");
    const std::vector<std::string> tags{"newsletter"};
    const Operations::getLinkHistory::Query byTag(std::nullopt, tags);
    Task<LinkHistoryDTO> filtering = history(guide, byTag);
    LinkHistoryDTO tagged = co_await std::move(filtering);
    showHistory(report, tagged);
    report.expect(tagged.links.size() == 1, "expected one link");
}

Task<void> removeTheLinks(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("Leaving things as they were");

    report.step("Delete the links: a visitor finds nothing any more");
    for (const std::string& id : guide->story.linkIds) {
        auto deleted = co_await guide->client.deleteLink(Operations::deleteLink::Path(id));
        guide->show(Operations::deleteLink::id, deleted, 200);
    }
    const Operations::deleteLink::Path gone(guide->story.campaign.id);
    auto again = co_await guide->client.deleteLink(gone);
    guide->show(Operations::deleteLink::id, again, 404);
    const std::string address = guide->story.campaign.shortUrl;
    auto page = co_await guide->browser.visit(HTTPRequest::Method::get, address);
    report.visit("GET " + address, page.status, 404);
    const Operations::getLinkHistory::Query everything;
    Task<LinkHistoryDTO> listing = history(guide, everything);
    LinkHistoryDTO remaining = co_await std::move(listing);
    report.expect(remaining == guide->story.historyBefore, "the links and tags are not what they were at first");
}

} // namespace examples

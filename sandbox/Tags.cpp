#include "sandbox/Tags.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Identifiers.hpp"
#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

namespace sandbox {

namespace {

constexpr std::size_t longestName = 100;

std::vector<Tag> tagsOf(const std::vector<Row>& rows) {
    std::vector<Tag> tags;
    for (const Row& row : rows) {
        tags.push_back({row.text(0), row.text(1)});
    }
    return tags;
}

std::string requireTag(Session& database, const std::string& account, const std::string& id) {
    if (!database.first("SELECT 1 FROM tags WHERE id = ? AND account_id = ?", {id, account})) {
        throw Problem::notFound("There is no tag with the id \"" + id + "\".");
    }
    return id;
}

std::string idOfNamedTag(Session& database, const std::string& account, const std::string& name) {
    const auto row = database.first("SELECT id FROM tags WHERE account_id = ? AND name = ?", {account, name});
    if (row) return row->text(0);
    std::string id = makeIdentifier("tag");
    database.execute("INSERT INTO tags (id, account_id, name) VALUES (?, ?, ?)", {id, account, name});
    return id;
}

Response getTags(Session& database, const Request&, const Account& account) {
    return Response::json(200, tagBodies(tagsOfAccount(database, account.id)));
}

Response updateTag(Session& database, const Request& request, const Account& account) {
    const Tag tag{requireTag(database, account.id, request.parameters.at(0)), tagReferenceOf(Body(request)).name};
    if (database.first(
            "SELECT 1 FROM tags WHERE account_id = ? AND name = ? AND id <> ?", {account.id, tag.name, tag.id}
        )) {
        throw Problem::badRequest("Another tag is named \"" + tag.name + "\".");
    }
    database.execute("UPDATE tags SET name = ? WHERE id = ?", {tag.name, tag.id});
    return Response::json(200, tagBody(tag));
}

Response removeTag(Session& database, const Request& request, const Account& account) {
    database.execute("DELETE FROM tags WHERE id = ?", {requireTag(database, account.id, request.parameters.at(0))});
    return Response::empty(200);
}

} // namespace

void addTagRoutes(Router& router) {
    router.add("GET", "/tags", withAccount(getTags));
    router.add("PUT", "/tags/{}", withAccount(updateTag));
    router.add("DELETE", "/tags/{}", withAccount(removeTag));
}

TagReference tagReferenceOf(const Body& record) {
    TagReference tag{record.optionalText("id"), record.text("name")};
    if (tag.name.find_first_not_of(" \t\r\n") == std::string::npos) {
        throw Problem::badRequest("The name of a tag must not be blank.");
    }
    if (tag.name.size() > longestName) {
        throw Problem::badRequest("The name of a tag takes at most " + std::to_string(longestName) + " bytes.");
    }
    return tag;
}

Json tagBody(const Tag& tag) {
    return {{"id", tag.id}, {"name", tag.name}};
}

Json tagBodies(const std::vector<Tag>& tags) {
    Json bodies = Json::array();
    for (const Tag& tag : tags) {
        bodies.push_back(tagBody(tag));
    }
    return bodies;
}

std::vector<Tag> tagsOfAccount(Session& database, const std::string& account) {
    return tagsOf(database.rows("SELECT id, name FROM tags WHERE account_id = ? ORDER BY sequence", {account}));
}

std::vector<Tag> tagsOfLink(Session& database, const std::string& link) {
    return tagsOf(database.rows(
        "SELECT id, name FROM link_tags JOIN tags ON tags.id = tag_id WHERE link_id = ? ORDER BY link_tags.sequence",
        {link}
    ));
}

void setTagsOfLink(
    Session& database, const std::string& account, const std::string& link, const std::vector<TagReference>& tags
) {
    database.execute("DELETE FROM link_tags WHERE link_id = ?", {link});
    for (const TagReference& tag : tags) {
        const std::string id =
            tag.id ? requireTag(database, account, *tag.id) : idOfNamedTag(database, account, tag.name);
        database.execute("INSERT OR IGNORE INTO link_tags (link_id, tag_id) VALUES (?, ?)", {link, id});
    }
}

} // namespace sandbox

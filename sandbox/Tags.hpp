#pragma once

#include "sandbox/Body.hpp"
#include "sandbox/Router.hpp"

#include <optional>
#include <string>
#include <vector>

namespace sandbox {

struct Tag {
    std::string id;
    std::string name;
};

/// A tag as a request names it: by its id, or without one by its name.
struct TagReference {
    std::optional<std::string> id;
    std::string name;
};

/// The resource below "/tags".
void addTagRoutes(Router& router);

/// What a request's record of a tag says.
/// @throws Problem with status 400 if the record has no name or one that is blank or longer than 100 bytes.
TagReference tagReferenceOf(const Body& record);

/// The service's record of a tag.
Json tagBody(const Tag& tag);

/// The records of several tags, as a list.
Json tagBodies(const std::vector<Tag>& tags);

/// In the order in which they were made.
std::vector<Tag> tagsOfAccount(Session& database, const std::string& account);

/// In the order in which they were given to the link.
std::vector<Tag> tagsOfLink(Session& database, const std::string& link);

/// Gives the link these tags in place of those it had; one that is named twice counts once. A name that the account has
/// no tag of makes one. A reference with an id means that tag, whatever name stands beside it.
/// @throws Problem with status 404 if the account has no tag of such an id.
void setTagsOfLink(
    Session& database, const std::string& account, const std::string& link, const std::vector<TagReference>& tags
);

} // namespace sandbox

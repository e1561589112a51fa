#pragma once

#include <string>
#include <string_view>

namespace sandbox {

/// A host name in the form in which it is stored: lower case.
/// @throws Problem with status 400 and the reason if the text is no host name by RFC 1123, section 2.1, has only one
/// label, or is an IPv4 address.
std::string checkedHostName(std::string_view text);

/// A host name cut in two: "go.links.example.com" is "go.links" of "example.com". Without a list of public suffixes,
/// the last two labels count as the zone.
struct HostNameParts {
    std::string zone;

    /// Empty for the zone itself.
    std::string subdomain;
};

HostNameParts partsOfHostName(std::string_view name);

} // namespace sandbox

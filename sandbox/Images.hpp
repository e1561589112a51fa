#pragma once

#include "sandbox/Router.hpp"

namespace sandbox {

/// The resource below "/images", the addresses to upload to, and the uploaded images.
void addImageRoutes(Router& router);

} // namespace sandbox

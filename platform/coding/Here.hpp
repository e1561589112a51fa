#pragma once

namespace platform::inline v1 {

/// Stands for "the value here": the place of a read or write that has no key.
struct Here {};

} // namespace platform::inline v1

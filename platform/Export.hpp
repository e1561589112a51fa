#pragma once

/// Marks a declaration that applications link against. Everything else stays hidden in the library.
#define QUILLBEAM_EXPORT __attribute__((visibility("default")))

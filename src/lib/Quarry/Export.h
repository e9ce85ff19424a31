// Marks what the shared library lets its users see; everything else stays hidden.
#pragma once

#define QUARRY_EXPORT __attribute__((visibility("default")))

/// What the library inlines within itself, and is no one else's.
#define QUARRY_HIDDEN __attribute__((visibility("hidden")))

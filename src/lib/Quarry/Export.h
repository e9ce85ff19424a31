// Marks what the shared library lets its users see; everything else stays hidden.
#pragma once

#define QUARRY_EXPORT __attribute__((visibility("default")))

/// What is the library's own, although a class that it shows has it.
#define QUARRY_HIDDEN __attribute__((visibility("hidden")))

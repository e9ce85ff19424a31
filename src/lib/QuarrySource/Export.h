// Marks what the shared library lets its users see; everything else stays hidden.
#pragma once

#define QUARRYSOURCE_EXPORT __attribute__((visibility("default")))

/// What is the library's own, although a class that it shows has it.
#define QUARRYSOURCE_HIDDEN __attribute__((visibility("hidden")))

// Marks what the shared library lets its users see; everything else stays hidden.
#pragma once

#define QUARRY_EXPORT __attribute__((visibility("default")))

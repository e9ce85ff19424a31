// Marks what the shared library lets its users see; everything else stays hidden.
#pragma once

#define QUARRYSOURCE_EXPORT __attribute__((visibility("default")))

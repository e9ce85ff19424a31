/// Reads, writes and describes document trees for tests.
#pragma once

#include <Quarry/ParserGroup.h>

#include <memory>
#include <string>

namespace TestSupport {

/// Reads `text` into a new root group; warnings go to the console as usual.
std::unique_ptr<Quarry::ParserGroup> readText(const std::string& text, double version = 1.1);

/// Returns the items of a root group as they are written: one item a line, or all on one line.
std::string writeLines(const Quarry::ParserGroup& root);
std::string writeOneLine(const Quarry::ParserGroup& root);

/// Describes the tree of the plain items and calls with their types, independent of the writer:
/// plain items as `name int:1 string:"x"`, calls as `name(int:1)`, groups as
/// `name {item; item}`, items without values as the name alone, joined by "; ". Strings and blocks
/// stand as they are; other values by their stored text, or by `*` when they have none. Keywords
/// are left out, as getItem() does.
std::string describe(const Quarry::ParserGroup& group);

/// Expects that `text` is read without a message and gives the tree that describe() calls
/// `expected`.
void checkReads(const std::string& text, const std::string& expected, double version = 1.1);

/// Expects that `text` is read with exactly this one warning and gives the tree `expected`.
void checkWarns(const std::string& text, const std::string& warning, const std::string& expected,
                double version = 1.1);

/// Expects that the tree of `root` is written, one item a line, as `expected`.
void checkWrites(const Quarry::ParserGroup& root, const std::string& expected);

/// Expects that `text`, which begins with a line feed, is read without a message and written back
/// byte for byte.
void checkRoundTrip(const std::string& text);

/// Returns the text of `depth` groups, each in the other: "g { g { ... } }".
std::string makeDeepText(unsigned long depth);

}  // namespace TestSupport

/// What stands before the line feeds of a compressed document.
#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// When the library reads a compressed document, it takes the last two bytes off each line, the
/// line feed included, and off each piece of 8190 bytes of a longer one. Where the first of the two
/// is '$', it puts a line feed in their place.
///
/// Any text without zero bytes can be written so that this gives the same text: with a '$' before
/// each of its line feeds, and another byte and a line feed of their own where a line would become
/// too long, or the text ends without one.

/// Returns a text with markers.
/// @param text without zero bytes
std::string addLineMarkers(std::string_view text);

/// Returns what the library makes of a text with markers.
/// @throws std::out_of_range for a line of less than two bytes, as the library does
std::string takeLineMarkers(std::string_view marked);

/// Takes the next piece off what is left of a text with markers: the next line with its line feed,
/// or as much of a longer one as the library reads at once. The rest must not be empty.
std::string_view takePiece(std::string_view& rest);

/// Tells whether a text has markers: somewhere a '$', or everywhere the other byte that
/// addLineMarkers() writes. A text without any line feed has none, unless it is empty.
bool hasLineMarkers(std::string_view text);

}  // namespace Tool

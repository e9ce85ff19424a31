/// Documents as XML.
#pragma once

#include "../Peer.h"

namespace QuarryBenchmarks {

/// Makes the XML of a document, without blanks between the elements.
///
/// An item is an element of its name, in the order of the document. A single value is the text of
/// that element, several are elements `v` in it, and the value of a group are the elements of its
/// items. The arguments of a call are elements `v` as well, and the call has the attribute
/// `call="yes"`. A block is text in hexadecimal digits.
///
/// The texts that the source tells of are those of the elements without elements in them, also
/// where such an element is empty.
Source makeXml(const Workload& workload);

}  // namespace QuarryBenchmarks

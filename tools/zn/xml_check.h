// What the XML loader passes over in silence: markup that breaks off or does not nest, and an encoding
// that nobody knows.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_WString.h"

#include <string>
#include <vector>

namespace zntool {

class Progress;

// The charset that an XML declaration names; empty when it names none.
Zn_WString DeclaredCharset(const Zn_Buffer& xml);

// "line 12: ..." for the first fault; empty when the markup is whole.
std::string FindXmlFault(const Zn_Buffer& xml, unsigned codePage, Progress& progress);

// Bytes of each "dataset" element, in their order.
std::vector<long long> DatasetBytes(const Zn_Buffer& xml);

} // namespace zntool

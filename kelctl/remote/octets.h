// Octets in a message, which is JSON: a text where they are UTF-8, and {"base64": "..."} where they are not.
#pragma once

#include "notation/document.h"

#include <string>

namespace kelctl
{

// Never fails: any octets have one of the two forms.
notation::document document_of_octets(const std::string &octets);

// Throws notation::document_error when it is neither.
std::string octets_of(const notation::document &message);

} // namespace kelctl

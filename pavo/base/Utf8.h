// UTF-8 <-> wide strings. Malformed input becomes U+FFFD, never an error.
#pragma once

#include <string>
#include <string_view>

namespace pavo {

std::wstring fromUtf8(std::string_view utf8);
std::string toUtf8(std::wstring_view wide);

} // namespace pavo

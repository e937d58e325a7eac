// A value from outside (a file, an answer) quoted in a message: in double
// quotes, control characters written as \uXXXX, and cut after 40
// characters with "...", so that a hostile value cannot flood or garble
// the message.
#pragma once

#include <string>
#include <string_view>

namespace pavo {

std::string quoteValue(std::string_view utf8);
std::wstring quoteValue(std::wstring_view text);

} // namespace pavo

// Help topics: plain-text files help/TOPIC.txt in resource libraries.
#pragma once

#include <optional>
#include <string>

namespace pavo::app {

// The text of `topic` (letter case ignored): from the current resource
// library first, then from every library on the resource path.
std::optional<std::wstring> findHelpTopic(const std::wstring& topic);

// Prints the topic on the command line, or says that there is none.
// STATUS_NORMAL or STATUS_ERROR.
int showHelpTopic(const std::wstring& topic);

} // namespace pavo::app

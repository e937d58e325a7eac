#include "VxDbUtil.h"

void VxDbUtil::SplitString(const OxString& text, const OxString& separator, OxArray<OxString>& parts) {
    const std::wstring& s = text.str();
    const std::wstring& sep = separator.str();
    if (sep.empty()) {
        parts.append(text);
        return;
    }
    std::size_t start = 0;
    for (std::size_t at = s.find(sep); at != std::wstring::npos; at = s.find(sep, start)) {
        parts.append(OxString(s.substr(start, at - start).c_str()));
        start = at + sep.size();
    }
    parts.append(OxString(s.substr(start).c_str()));
}

#include "LayerNameList.h"

#include <algorithm>

#include "oxut.h"

namespace vxlayer {

namespace {

constexpr std::wstring_view kConstraintsLayer = L"*pavo_constraints";

// An item without wildcard syntax names at most one layer.
bool isPlainName(const OxString& item) { return item.findOneOf(L"#@.*?~[]`,", 0) < 0; }

} // namespace

OxString NameListItems::next() {
    const std::size_t comma = m_rest.find(L',');
    std::wstring_view item = m_rest;
    if (comma == 0 || comma == std::wstring_view::npos) {
        m_rest = {};
    } else {
        item = m_rest.substr(0, comma);
        m_rest.remove_prefix(comma + 1);
    }
    OxString trimmed{item};
    trimmed.trimLeft().trimRight();
    return trimmed;
}

bool isConstraintsLayer(std::wstring_view name) {
    if (name.size() != kConstraintsLayer.size()) return false;
    for (size_t i = 0; i < name.size(); ++i) {
        const wchar_t ch = name[i];
        const wchar_t lower = ch >= L'A' && ch <= L'Z' ? static_cast<wchar_t>(ch - L'A' + L'a') : ch;
        if (lower != kConstraintsLayer[i]) return false;
    }
    return true;
}

LayerNameList::LayerNameList(std::wstring_view list, bool exactMatch) : m_exact(exactMatch) {
    if (!list.empty() && list.front() == L'=') {
        m_exact = true;
        list.remove_prefix(std::min(list.find_first_not_of(L'='), list.size()));
    }
    m_bracketRule = list.find_first_of(L"[]") != std::wstring_view::npos;
    for (NameListItems items(list); !items.done();) {
        OxString text = items.next();
        const bool whole = m_exact || isPlainName(text);
        m_items.push_back({std::move(text), whole});
    }
}

bool LayerNameList::selects(const Item& item, const OxString& name) const {
    if (isConstraintsLayer(name.view())) return false;
    if (item.wholeName) return name.compareNoCase(item.text) == 0;
    return item.text == L"*" || oxutWcMatchEx(name.kwszPtr(), item.text.kwszPtr(), true) ||
           (m_bracketRule && name.compareNoCase(item.text) == 0);
}

bool LayerNameList::selects(const OxString& name) const {
    return std::any_of(m_items.begin(), m_items.end(), [&](const Item& item) { return selects(item, name); });
}

} // namespace vxlayer

// A layer name list as typed: items separated by commas, each a wildcard
// pattern, or an exact name after a leading "=". The one reading of the
// syntax, shared by the commands that walk the layer table and by the layer
// manager's filter, which matches the names it holds.
#pragma once

#include <string_view>
#include <vector>

#include "OxString.h"

namespace vxlayer {

// Splits a name list into items without copying what is left of it, so
// that a list of any length is split in one pass. A comma at the very start
// of what is left does not split: the whole rest is then one item (so "A,,B"
// gives "A" and ",B").
class NameListItems {
public:
    explicit NameListItems(std::wstring_view list) : m_rest(list) {}
    bool done() const { return m_rest.empty(); }
    // The next item, trimmed of white space.
    OxString next();

private:
    std::wstring_view m_rest;
};

// The drawing's constraints layer, which no name list selects.
bool isConstraintsLayer(std::wstring_view name);

class LayerNameList {
public:
    struct Item {
        OxString text;
        // Compared with whole names, case ignored: an exact list, or an item
        // without wildcard syntax (which the table's name index can answer).
        bool wholeName = false;
    };

    // `exactMatch` reads every item as an exact name, as a leading "=" does.
    LayerNameList(std::wstring_view list, bool exactMatch);

    const std::vector<Item>& items() const { return m_items; }
    // True for "=" with nothing after it.
    bool namesNothing() const { return m_exact && m_items.empty(); }

    // True when `item` selects the layer called `name`.
    bool selects(const Item& item, const OxString& name) const;
    // True when any item selects it.
    bool selects(const OxString& name) const;

private:
    std::vector<Item> m_items;
    bool m_exact = false;
    // A list with brackets also takes each item as an exact name, so that a
    // layer called "[A]" can be named.
    bool m_bracketRule = false;
};

} // namespace vxlayer

#include <cwchar>

#include "DbStore.h"
#include "OxDbObjectId.h"

const OxDbObjectId OxDbObjectId::kNull;

std::wstring OxDbHandle::toString() const {
    static const wchar_t digits[] = L"0123456789ABCDEF";
    if (m_value == 0) return L"0";
    std::wstring out;
    for (std::uint64_t v = m_value; v != 0; v >>= 4)
        out.insert(out.begin(), digits[v & 0xF]);
    return out;
}

bool OxDbHandle::parse(const wchar_t* text, OxDbHandle& out) {
    out = OxDbHandle();
    if (!text || !*text) return false;
    std::uint64_t value = 0;
    std::size_t digits = 0;
    for (const wchar_t* p = text; *p; ++p) {
        int d;
        if (*p >= L'0' && *p <= L'9')
            d = *p - L'0';
        else if (*p >= L'a' && *p <= L'f')
            d = *p - L'a' + 10;
        else if (*p >= L'A' && *p <= L'F')
            d = *p - L'A' + 10;
        else
            return false;
        if (value == 0 && d == 0) continue; // leading zeros do not count toward the width
        if (++digits > 16) return false;    // more than 64 bits
        value = value << 4 | static_cast<std::uint64_t>(d);
    }
    out = OxDbHandle(value);
    return true;
}

bool OxDbObjectId::isValid() const { return m_cell && m_cell->object != nullptr; }

bool OxDbObjectId::isErased() const { return m_cell && m_cell->erased; }

#include "base/CaseFold.h"

#include <atomic>
#include <clocale>
#include <cwctype>
#include <locale.h>
#include <wctype.h>

namespace pavo {
namespace {

// The C.UTF-8 locale knows every script's case pairs and, unlike the
// user's locale, is the same on every machine. Made once, never freed.
locale_t foldLocale() {
    static const locale_t loc = [] {
        locale_t l = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
        if (!l) l = newlocale(LC_CTYPE_MASK, "C.utf8", static_cast<locale_t>(nullptr));
        if (!l) l = newlocale(LC_CTYPE_MASK, "C", static_cast<locale_t>(nullptr));
        return l;
    }();
    return loc;
}

// lower(upper(c)): final sigma and sigma both become sigma, and so do the
// other letters that have two lower-case forms for one capital.
wchar_t foldSlow(wchar_t ch) {
    locale_t loc = foldLocale();
    if (!loc) return ch;
    return static_cast<wchar_t>(towlower_l(towupper_l(static_cast<wint_t>(ch), loc), loc));
}

constexpr std::size_t kBmpSize = 0x10000;
constexpr std::size_t kPageSize = 0x100;
constexpr std::size_t kPages = kBmpSize / kPageSize;

// Folded code points of the Basic Multilingual Plane, a page of 256 made on
// first use: a session that meets a few scripts pays for a few pages, not
// for 130,000 locale calls at start-up. Pages are never freed; a page made
// twice by racing threads keeps the first one.
std::atomic<const wchar_t*> foldPages[kPages];

const wchar_t* foldPage(std::size_t page) {
    const wchar_t* p = foldPages[page].load(std::memory_order_acquire);
    if (p) return p;
    auto* made = new wchar_t[kPageSize];
    for (std::size_t i = 0; i < kPageSize; ++i)
        made[i] = foldSlow(static_cast<wchar_t>(page * kPageSize + i));
    if (foldPages[page].compare_exchange_strong(p, made, std::memory_order_acq_rel)) return made;
    delete[] made;
    return p;
}

} // namespace

wchar_t foldCase(wchar_t ch) {
    if (ch >= 0 && ch < 0x80) return ch >= L'A' && ch <= L'Z' ? static_cast<wchar_t>(ch + 32) : ch;
    if (ch > 0 && static_cast<std::size_t>(ch) < kBmpSize) {
        const auto c = static_cast<std::size_t>(ch);
        return foldPage(c / kPageSize)[c % kPageSize];
    }
    return foldSlow(ch);
}

wchar_t upperCase(wchar_t ch) {
    if (ch >= 0 && ch < 0x80) return ch >= L'a' && ch <= L'z' ? static_cast<wchar_t>(ch - 32) : ch;
    locale_t loc = foldLocale();
    return loc ? static_cast<wchar_t>(towupper_l(static_cast<wint_t>(ch), loc)) : ch;
}

std::wstring foldCase(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& ch : out)
        ch = foldCase(ch);
    return out;
}

int compareNoCase(std::wstring_view a, std::wstring_view b) {
    const std::size_t n = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < n; ++i) {
        const wchar_t fa = foldCase(a[i]), fb = foldCase(b[i]);
        if (fa != fb) return fa < fb ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool equalNoCase(std::wstring_view a, std::wstring_view b) { return a.size() == b.size() && compareNoCase(a, b) == 0; }

std::size_t hashNoCase(std::wstring_view text) {
    // FNV-1a over the folded code points.
    std::size_t h = 1469598103934665603ull;
    for (wchar_t ch : text) {
        h ^= static_cast<std::size_t>(static_cast<std::uint32_t>(foldCase(ch)));
        h *= 1099511628211ull;
    }
    return h;
}

} // namespace pavo

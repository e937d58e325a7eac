#include "ListingText.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <cmath>

namespace pavo::app {

std::wstring listingNumber(double value) { return fmt::format(L"{:.4f}", std::abs(value) < 5e-5 ? 0.0 : value); }

std::wstring listingPoint(const OxGePoint3d& p) {
    return L"X=" + listingNumber(p.x) + L"  Y=" + listingNumber(p.y) + L"  Z=" + listingNumber(p.z);
}

} // namespace pavo::app

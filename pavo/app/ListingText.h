// How LIST writes values: numbers with four decimals, points as
// "X=...  Y=...  Z=...".
#pragma once

#include <string>

#include "OxGe.h"

namespace pavo::app {

std::wstring listingNumber(double value);
std::wstring listingPoint(const OxGePoint3d& p);

} // namespace pavo::app

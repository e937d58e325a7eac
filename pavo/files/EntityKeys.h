// The keys of an entity object in a drawing file, shared by the side that
// reads entities and the side that builds them (which names keys in its
// messages).
#pragma once

#include <cstdint>

#include "files/JsonIn.h"

namespace pavo::files::entitykeys {

enum Key {
    kT,
    kH,
    kL,
    kC,
    kLt,
    kLts,
    kLw,
    kPs,
    kTr,
    kM,
    kInv, // common
    kS,
    kE,
    kP,
    kR,
    kSa,
    kEa,
    kV,
    kClosed,
    kElev,
    kW,
    kTxt,
    kHt,
    kRot,
    kTag,
    kPrompt,
    kB,
    kSc,
    kAttribs,
    kN,
    kOff,
    kLock,
    kVc,
    kVh,
    kVt,
    kVd,
    kTw,
    kFl,
    kKeyCount
};

const KeyTable& entityKeys();

inline constexpr std::uint64_t bit(int k) { return std::uint64_t(1) << k; }
template <class... K> inline constexpr std::uint64_t bits(K... k) { return (bit(k) | ...); }

} // namespace pavo::files::entitykeys

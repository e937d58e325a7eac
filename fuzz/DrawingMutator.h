// Structure-aware changes to a drawing file for the drawing session fuzzer:
// handles made equal, extreme or dangling, block references that close
// loops, attributes that reuse handles, viewports moved, renumbered or given
// odd frozen lists, layers renamed, duplicated or given overrides, objects
// copied and removed, extreme numbers, edited texts, and answers to run
// after the drawing loads. Most results still load, so that what a command
// does with an odd but valid drawing is tried.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace pavofuzz {

// Byte-level changes to a text (libFuzzer's own mutator in the fuzzer): the
// new size, at most `maxSize`.
using ByteMutator = std::size_t (*)(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// `input` (a drawing, then the answers; see FuzzSession.h) changed one to
// three times; empty when its drawing is not a JSON object.
std::string mutateDrawingInput(std::string_view input, std::mt19937_64& random, ByteMutator bytes);

} // namespace pavofuzz

// Helpers shared by the drawing file tests.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "files/DrawingFile.h"

namespace pavo::files::test {

inline std::unique_ptr<OxDbDatabase> loadOrFail(std::string_view json) {
    LoadError error;
    auto db = readDrawing(json, "test.pvd", error);
    EXPECT_TRUE(db) << error.message();
    return db;
}

// The sample drawing with one piece of text replaced (the text must occur).
inline std::string sampleWith(std::string_view from, std::string_view to) {
    std::string text(embeddedSampleDrawing());
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

// The sample drawing's header entry "handseed":"..." (it moves as objects
// are added to the sample), and its value.
inline std::string sampleHandseedEntry() {
    const std::string_view text = embeddedSampleDrawing();
    const size_t at = text.find("\"handseed\":\"");
    EXPECT_NE(at, std::string::npos);
    if (at == std::string::npos) return {};
    return std::string(text.substr(at, text.find('"', at + 12) + 1 - at));
}

inline std::uint64_t sampleHandseed() {
    const std::string entry = sampleHandseedEntry();
    return entry.size() > 13 ? std::stoull(entry.substr(12, entry.size() - 13), nullptr, 16) : 0;
}

} // namespace pavo::files::test

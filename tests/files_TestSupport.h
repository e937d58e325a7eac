// Helpers shared by the drawing file tests.
#pragma once

#include <gtest/gtest.h>

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

} // namespace pavo::files::test

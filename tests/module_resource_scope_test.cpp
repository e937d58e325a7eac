// The module's resource switch for a command run: restored on every way out.
#include <gtest/gtest.h>

#include <stdexcept>

#include "module/ResourceScope.h"

namespace {

class CountingContext : public IPavoBuildInCommandContext {
public:
    bool switches = true;
    int set = 0, restored = 0;
    std::wstring library;
    bool setCurrentResource(const wchar_t* name) override {
        ++set;
        library = name;
        return switches;
    }
    void restoreResource(int reserved) override {
        EXPECT_EQ(reserved, 0);
        ++restored;
    }
    bool isNoDialogContext() override { return true; }
    PavoDocumentData* documentState() override { return nullptr; }
    bool isDialogRequested() override { return false; }
    OxDbDatabase* database() override { return nullptr; }
    void regenerate() override {}
};

} // namespace

TEST(ResourceScope, RestoresOnReturnAndOnException) {
    CountingContext ctx;
    { vxlayer::ContextResourceScope scope(&ctx); }
    EXPECT_EQ(ctx.library, L"VxLayerCmdsRes.dll");
    EXPECT_EQ(ctx.restored, 1);
    try {
        vxlayer::ContextResourceScope scope(&ctx);
        throw std::runtime_error("branch failed");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(ctx.set, 2);
    EXPECT_EQ(ctx.restored, 2);
}

TEST(ResourceScope, NothingToRestoreWhenItDidNotSwitch) {
    CountingContext ctx;
    ctx.switches = false;
    { vxlayer::ContextResourceScope scope(&ctx); }
    EXPECT_EQ(ctx.set, 1);
    EXPECT_EQ(ctx.restored, 0);
    { vxlayer::ContextResourceScope scope(nullptr); } // no context: nothing at all
}

// The module's entry, registration and factories, against a recording store.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ModuleCopy.h"
#include "app/ResourceLibraries.h"

namespace fs = std::filesystem;
using pavo::app::ResourceLibraries;
using pavotest::ModuleCopy;

namespace {

class RecordingStore : public IPavoCommandStore {
public:
    std::vector<IPavoCommandFactory*> added;
    std::vector<std::wstring> removed;
    std::vector<int> results; // returned in turn, then 0
    size_t next = 0;
    int addCommand(IPavoCommandFactory* f, unsigned int reserved) override {
        EXPECT_EQ(reserved, 0u);
        added.push_back(f);
        return next < results.size() ? results[next++] : 0;
    }
    int removeCommand(const wchar_t* name) override {
        removed.emplace_back(name);
        return next < results.size() ? results[next++] : 0;
    }
};

// Points the resource path at a folder of our own for one test.
class ResourceFolder {
public:
    ResourceFolder() {
        static int n = 0;
        m_dir = fs::temp_directory_path() / ("pavo-res-" + std::to_string(getpid()) + "-" + std::to_string(n++));
        fs::create_directories(m_dir);
        m_saved = ResourceLibraries::instance().searchPath();
        ResourceLibraries::instance().setSearchPath({m_dir});
    }
    ~ResourceFolder() {
        ResourceLibraries::instance().setSearchPath(m_saved);
        fs::remove_all(m_dir);
    }
    void writeTable(const std::string& content) {
        fs::create_directories(m_dir / "VxLayerCmdsRes");
        std::ofstream(m_dir / "VxLayerCmdsRes" / "strings.txt") << content;
        ResourceLibraries::instance().setSearchPath({m_dir}); // forget the cached library
    }

private:
    fs::path m_dir;
    std::vector<fs::path> m_saved;
};

IPavoCommandFactory* factoryNamed(RecordingStore& store, const std::wstring& global) {
    for (IPavoCommandFactory* f : store.added)
        if (global == f->globalName()) return f;
    return nullptr;
}

} // namespace

TEST(ModuleRegistration, RegistersFiveFactoriesInOrderAndPassesOnTheLastResult) {
    ModuleCopy module;
    ASSERT_TRUE(module.loaded());
    IPavoCmdApplication* app = module.app();
    ASSERT_TRUE(app->initialize());

    RecordingStore store;
    store.results = {1, 2, 3, 4, 77}; // earlier failures change nothing
    EXPECT_EQ(app->registCommand(&store), 77);
    ASSERT_EQ(store.added.size(), 5u);
    const std::vector<std::wstring> order = {L"-LAYER", L"LAYER", L"LAYMCUR", L"VPLAYER", L"SETBYLAYER"};
    const std::vector<unsigned> flags = {7, 3, 2, 3, 2};
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(store.added[i]->globalName(), order[i]);
        EXPECT_EQ(store.added[i]->flags(), flags[i]);
        EXPECT_STREQ(store.added[i]->module(), L"VxLayerCmds.dll");
        EXPECT_EQ(store.added[i]->helpTopicOverride(), nullptr);
    }

    // A second registration passes the very same factory objects.
    RecordingStore again;
    app->registCommand(&again);
    EXPECT_EQ(again.added, store.added);

    RecordingStore removal;
    removal.results = {9, 9, 9, 9, -5};
    EXPECT_EQ(app->unregistCommand(&removal), -5);
    EXPECT_EQ(removal.removed, order);
    app->uninitialize();
}

TEST(ModuleRegistration, EntryIsStableAndMessagesAreIgnored) {
    ModuleCopy module;
    ASSERT_TRUE(module.loaded());
    IPavoCmdApplication* before = module.app();
    before->initialize();
    auto entry = reinterpret_cast<GetPavoCmdApplicationFn>(
        dlsym(dlopen(nullptr, RTLD_NOW), "GetPavoCmdApplication")); // not exported by the host itself
    EXPECT_EQ(entry, nullptr);
    int dummy = 0;
    EXPECT_EQ(before->sendMessage(kPavoMsgQuitting, &dummy, &dummy), 0);
    EXPECT_EQ(before->sendMessage(static_cast<PavoCmdAppMsg>(12345), nullptr, nullptr), 0);
}

TEST(ModuleFactories, LocalNameFallsBackWithoutLibraryAndRetriesLater) {
    ResourceFolder folder; // no resource library at all
    ModuleCopy module;
    ASSERT_TRUE(module.loaded());
    RecordingStore store;
    module.app()->registCommand(&store);
    IPavoCommandFactory* laymcur = factoryNamed(store, L"LAYMCUR");
    ASSERT_NE(laymcur, nullptr);
    EXPECT_STREQ(laymcur->localName(), L"LAYMCUR");
    EXPECT_EQ(ResourceLibraries::instance().depth(), 0u);

    folder.writeTable("6725 \"CALQUECOURANT\"\n");
    EXPECT_STREQ(laymcur->localName(), L"CALQUECOURANT"); // the cache was left empty, so it tried again
    EXPECT_EQ(ResourceLibraries::instance().depth(), 0u);

    folder.writeTable("6725 \"OTHER\"\n");
    EXPECT_STREQ(laymcur->localName(), L"CALQUECOURANT"); // loaded once, then cached
}

TEST(ModuleFactories, LongLocalNameIsCutTo1023Characters) {
    ResourceFolder folder;
    folder.writeTable("6831 \"" + std::string(1500, 'V') + "\"\n6865 \"" + std::string(1023, 'S') + "\"\n");
    ModuleCopy module;
    ASSERT_TRUE(module.loaded());
    RecordingStore store;
    module.app()->registCommand(&store);
    EXPECT_EQ(std::wstring(factoryNamed(store, L"VPLAYER")->localName()), std::wstring(1023, L'V'));
    EXPECT_EQ(std::wstring(factoryNamed(store, L"SETBYLAYER")->localName()), std::wstring(1023, L'S'));
}

TEST(ModuleFactories, DescriptionIsEmptyAndLocalNamesComeFromTheTable) {
    ResourceFolder folder;
    folder.writeTable("6763 \"-CALQUE\"\n");
    ModuleCopy module;
    ASSERT_TRUE(module.loaded());
    RecordingStore store;
    module.app()->registCommand(&store);
    for (IPavoCommandFactory* f : store.added) EXPECT_STREQ(f->description(), L"");
    EXPECT_STREQ(factoryNamed(store, L"-LAYER")->localName(), L"-CALQUE");
    EXPECT_STREQ(factoryNamed(store, L"LAYER")->localName(), L"LAYER");
    EXPECT_EQ(ResourceLibraries::instance().depth(), 0u);
}

TEST(ModuleFactories, ReleaseAndFlags) {
    ModuleCopy module;
    ASSERT_TRUE(module.loaded());
    RecordingStore store;
    module.app()->registCommand(&store);
    IPavoCommandFactory* layer = factoryNamed(store, L"-LAYER");
    IPavoCommandFactory* dialog = factoryNamed(store, L"LAYER");
    layer->release(nullptr); // does nothing
    layer->addFlags(4, false);
    EXPECT_EQ(layer->flags(), 3u);
    dialog->addFlags(4, true);
    EXPECT_EQ(dialog->flags(), 7u);
    for (IPavoCommandFactory* f : store.added) {
        IPavoBuildInCommand* cmd = f->create();
        ASSERT_NE(cmd, nullptr);
        EntityParameters params;
        EXPECT_EQ(cmd->doAction(nullptr, params, 0), STATUS_NORMAL);
        f->release(cmd);
    }
}

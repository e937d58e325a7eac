// Large drawings are read on two threads (the JSON on one, the database
// built on the other). These tests send small drawings through the threads,
// in batches of a few entities, and hold them to the results of one thread:
// the same database, and the same first problem at the same place.
#include <string>

#include "files/EntityPipeline.h"
#include "files_TestSupport.h"

namespace pavo::files::test {
namespace {

// Makes every drawing of a test go through the threads (or not), in batches
// of `batch` entities.
class PipelineMode {
public:
    PipelineMode(bool threads, std::size_t batch) : m_saved(pipelineSettings()) {
        PipelineSettings& settings = pipelineSettings();
        settings.threads = threads;
        settings.minimumText = 0;
        settings.batchEntities = batch;
    }
    ~PipelineMode() { pipelineSettings() = m_saved; }
    PipelineMode(const PipelineMode&) = delete;
    PipelineMode& operator=(const PipelineMode&) = delete;

private:
    PipelineSettings m_saved;
};

// `json` with `entities` (each followed by a comma) first in model space.
std::string withFirstEntities(std::string json, const std::string& entities) {
    const std::string modelSpace = R"({"h":"26","name":"*Model_Space","entities":[)";
    const auto at = json.find(modelSpace);
    EXPECT_NE(at, std::string::npos);
    if (at != std::string::npos) json.insert(at + modelSpace.size(), "\n" + entities);
    return json;
}

// The sample with `count` more entities of the shapes the builder makes and
// of the kinds the JSON side makes, on several layers, at the start of model
// space, and `extra` (text of entities, each followed by a comma) after them.
std::string sampleWithEntities(int count, const std::string& extra = "") {
    const char* layers[] = {"18", "19", "1D", "7A"};
    std::string entities;
    for (int i = 0; i < count; ++i) {
        const std::string h = "\"h\":\"" + std::to_string(1000 + i) + "\"";
        const std::string l = ",\"l\":\"" + std::string(layers[i % 4]) + "\"";
        const std::string x = std::to_string(i);
        switch (i % 5) {
        case 0:
            entities += "{\"t\":\"line\"," + h + l + ",\"s\":[" + x + ",0],\"e\":[" + x + ",5]}";
            break;
        case 1:
            entities += "{\"t\":\"circle\"," + h + l + ",\"c\":3,\"lts\":2,\"p\":[" + x + ",1],\"r\":4}";
            break;
        case 2:
            entities +=
                "{\"t\":\"arc\"," + h + ",\"lw\":25,\"ps\":\"11\",\"p\":[" + x + ",2],\"r\":1,\"sa\":0,\"ea\":1}";
            break;
        case 3:
            // Every other text has an escape, which the parser unescapes into its own buffer.
            entities += "{\"t\":\"text\"," + h + l + ",\"p\":[" + x + ",3],\"txt\":\"T" + x +
                        (i % 2 ? "\\u00e9\\\"" : "") + "\"}";
            break;
        default:
            entities += "{\"t\":\"insert\"," + h + l + ",\"b\":\"2A\",\"p\":[" + x + ",4],\"attribs\":[{\"h\":\"" +
                        std::to_string(900000 + i) + "\",\"p\":[0,0],\"txt\":\"A\",\"tag\":\"PROJECT\"}]}";
            break;
        }
        entities += ",\n";
    }
    return withFirstEntities(std::string(embeddedSampleDrawing()), entities + extra);
}

std::string loadAndWrite(const std::string& json) {
    auto db = loadOrFail(json);
    return db ? writeDrawing(*db) : std::string();
}

LoadError refuse(const std::string& json) {
    LoadError error;
    EXPECT_FALSE(readDrawing(json, "bad.pvd", error));
    return error;
}

TEST(DrawingPipeline, ThreadsBuildTheSameDrawingEveryTime) {
    const std::string json = sampleWithEntities(600);
    std::string single;
    {
        PipelineMode mode(false, 4096);
        single = loadAndWrite(json);
    }
    ASSERT_NE(single.find("\"h\":\"1599\""), std::string::npos); // the last added entity was read
    ASSERT_NE(single.find("\"tag\":\"PROJECT\""), std::string::npos);
    ASSERT_NE(single.find("T593\u00e9\\\""), std::string::npos); // unescaped, then escaped again
    for (std::size_t batch : {1, 7, 4096}) {
        SCOPED_TRACE(batch);
        PipelineMode mode(true, batch);
        EXPECT_EQ(loadAndWrite(json), single);
        EXPECT_EQ(loadAndWrite(json), single);
    }
}

struct Refusal {
    const char* name;
    std::string json;
    const char* pointer;
    const char* problem; // a part of the problem text
};

TEST(DrawingPipeline, TheFirstProblemInTheFileIsReportedWhicheverSideFindsIt) {
    const Refusal cases[] = {
        // Found by the JSON side.
        {"unknown key", sampleWithEntities(40, R"({"t":"line","h":"5000","bogus":1},)"), "/blocks/0/entities/40/bogus",
         "unknown key \"bogus\""},
        {"linetype scale", sampleWithEntities(40, R"({"t":"circle","h":"5000","lts":0,"p":[0,0],"r":1},)"),
         "/blocks/0/entities/40", "refused the entity's properties"},
        {"null layer", sampleWithEntities(40, R"({"t":"point","h":"5000","l":null,"p":[0,0]},)"),
         "/blocks/0/entities/40", "refused the entity's properties"},
        {"empty tag",
         sampleWithEntities(
             12, R"({"t":"insert","h":"5000","b":"2A","p":[0,0],"attribs":[{"h":"5001","p":[0,0],"tag":""}]},)"),
         "/blocks/0/entities/12/attribs/0/tag", "a tag must not be empty"},
        {"key before a duplicate handle", sampleWithEntities(9, R"({"t":"line","bogus":1,"h":"18"},)"),
         "/blocks/0/entities/9/bogus", "unknown key"},
        // Found by the builder.
        {"duplicate handle", sampleWithEntities(40, R"({"t":"line","h":"18","s":[0,0],"e":[1,1]},)"),
         "/blocks/0/entities/40/h", "duplicate handle \"18\""},
        {"duplicate handle before a bad key", sampleWithEntities(9, R"({"t":"line","h":"18","bogus":1},)"),
         "/blocks/0/entities/9/h", "duplicate handle \"18\""},
        {"wrong class", sampleWithEntities(40, R"({"t":"line","h":"5000","l":"B","s":[0,0],"e":[1,1]},)"),
         "/blocks/0/entities/40/l", "is OxDbLinetypeTableRecord, not a layer"},
        {"wrong class before a bad entity",
         sampleWithEntities(40, R"({"t":"line","h":"5000","l":"B","s":[0,0],"e":[1,1]},{"t":"nope","h":"5001"},)"),
         "/blocks/0/entities/40/l", "not a layer"},
        {"attribute handle",
         sampleWithEntities(
             12, R"({"t":"insert","h":"5000","b":"2A","p":[0,0],"attribs":[{"h":"19","p":[0,0],"tag":"X"}]},)"),
         "/blocks/0/entities/12/attribs/0/h", "duplicate handle \"19\""},
        {"frozen layer of a viewport", sampleWith(R"("fl":["1B"])", R"("fl":["1B","B"])"), "/blocks/1/entities/2/fl/1",
         "not a layer"},
        {"dangling reference", sampleWith(R"("b":"2A","p":[651)", R"("b":"FFFF","p":[651)"), "/blocks/1/entities/3/b",
         "refers to no object"},
        {"duplicate block name", sampleWith(R"("name":"TITLE")", R"("name":"door")"), "/blocks/4/name",
         "duplicate block name \"door\""},
        {"layer handle", sampleWith(R"({"h":"1A","name":"A-GLAZ")", R"({"h":"19","name":"A-GLAZ")"), "/layers/3/h",
         "duplicate handle \"19\""},
        {"layer linetype", sampleWith(R"("linetype":"E","lineweight":13)", R"("linetype":"17","lineweight":13)"),
         "/layers/6/linetype", "not a linetype"},
        {"override viewport", sampleWith(R"("overrides":[{"viewport":"6E")", R"("overrides":[{"viewport":"17")"),
         "/layers/1/overrides/0/viewport", "not a viewport"},
        {"override viewport read later",
         sampleWith(R"("overrides":[{"viewport":"6E")", R"("overrides":[{"viewport":"19")"),
         "/layers/1/overrides/0/viewport", "not a viewport"},
        // The place of a reference found dangling at the end is found again
        // by walking the text: strings full of JSON's own signs, and
        // escapes, before it must not lead it astray.
        {"dangling override viewport after strings with brackets",
         sampleWith(R"("description":"Walls","overrides":[{"viewport":"6E")",
                    R"("description":"W\"a]l}l{s[,:\\\u00e9\ud83d\ude00","overrides":[{"viewport":"FFFF")"),
         "/layers/1/overrides/0/viewport", "refers to no object"},
        {"override lineweight", sampleWith(R"("color":1,"lineweight":70})", R"("color":1,"lineweight":-1})"),
         "/layers/1/overrides/0/lineweight", "refused the lineweight override"},
        {"no layer 0 before a bad entity",
         withFirstEntities(sampleWith(R"("name":"0",)", R"("name":"Z",)"), R"({"t":"nope","h":"5000"},)"), "/layers",
         "no layer \"0\""},
        {"duplicate block handle", sampleWith(R"({"h":"2A","name":"TITLE")", R"({"h":"29","name":"TITLE")"),
         "/blocks/4/h", "duplicate handle \"29\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        LoadError single;
        {
            PipelineMode mode(false, 4096);
            single = refuse(c.json);
        }
        EXPECT_EQ(single.pointer, c.pointer);
        EXPECT_NE(single.problem.find(c.problem), std::string::npos) << single.message();
        for (std::size_t batch : {1, 3, 4096}) {
            SCOPED_TRACE(batch);
            PipelineMode mode(true, batch);
            EXPECT_EQ(refuse(c.json).message(), single.message());
        }
    }
}

TEST(DrawingPipeline, ADrawingRefusedAfterItsEntitiesLeavesNothingBehind) {
    // Every entity is built before the layouts refuse the drawing; the next
    // drawing is read as if nothing had happened.
    const std::string good = sampleWithEntities(300);
    const std::string bad = sampleWith(R"("name":"A1 Plan")", R"("name":"model")");
    const std::string badAtTheEnd = sampleWithEntities(300, R"({"t":"arc","h":"5000","p":[0,0],"r":-1},)");
    std::string expected;
    {
        PipelineMode mode(false, 4096);
        expected = loadAndWrite(good);
    }
    PipelineMode mode(true, 16);
    const LoadError late = refuse(bad);
    EXPECT_EQ(late.pointer, "/layouts/1/name") << late.message();
    EXPECT_NE(late.problem.find("duplicate layout name"), std::string::npos) << late.message();
    const LoadError last = refuse(badAtTheEnd);
    EXPECT_EQ(last.pointer, "/blocks/0/entities/300/r") << last.message();
    EXPECT_EQ(loadAndWrite(good), expected);
}

} // namespace
} // namespace pavo::files::test

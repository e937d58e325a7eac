// The sessions shown in docs/paper-space.md and docs/vplayer.md are what
// pavo prints for the answers they show, on the sample drawing.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "DocExamples.h"
#include "SessionHarness.h"

using pavotest::ScriptedSession;

namespace {

struct DocSession {
    const char* document;
    const char* firstLine;
    std::vector<std::string> answers;
};

} // namespace

TEST(PaperSpaceDocs, TheSessionsShownAreWhatPavoPrints) {
    const DocSession sessions[] = {
        {"docs/paper-space.md", "Command: CTAB", {"CTAB", "A1 Plan", "PSPACE", "MSPACE"}},
        {"docs/paper-space.md",
         "Command: VPLAYER",
         {"VPLAYER", "Vpvisdflt", "A-ANNO-*", "Frozen", "", "CTAB", "A1 Plan", "MVIEW", "10,10", "210,160"}},
        {"docs/paper-space.md", "Command: CTAB", {"CTAB", "A3 Detail", "PSPACE", "LIST", "20,170", ""}},
        {"docs/vplayer.md", "Command: CTAB", {"CTAB", "A1 Plan", "VPLAYER", "Freeze", "A-FURN", "", "List", "380,110", ""}},
    };
    // Two blocks of paper-space.md start alike: each is found after the
    // one before.
    std::map<std::string, size_t> searchedTo;
    for (const DocSession& doc : sessions) {
        SCOPED_TRACE(std::string(doc.document) + ": " + doc.answers[1]);
        const std::string markdown = pavotest::repositoryFile(doc.document).substr(searchedTo[doc.document]);
        const std::string shown = pavotest::textBlockStartingWith(markdown, doc.firstLine);
        ASSERT_FALSE(shown.empty());
        searchedTo[doc.document] += markdown.find(shown) + shown.size();
        ScriptedSession s(doc.answers);
        ASSERT_EQ(s.run(), 0) << s.transcript();
        EXPECT_EQ(s.transcript().substr(0, shown.size()), shown);
    }
}

// The single-pick selector: a request (prompt and what to leave out), then
// one point from the user, then the objects found there.
//
//   PavoEntSelectorRequest request(L"\nSelect a viewport : ", nullptr, 1, 1, nullptr, false);
//   PavoEntSelector selector;
//   selector.grabSelectionSet().clear();
//   if (selector.doAcquireUserInput(request, false) == PavoEntSelector::kInputEnded) ... // Escape, Enter
//   PavoSelectSet found;
//   if (selector.doQuerySelectSet(&found, request) == 1) found.getAt(0, id);
#pragma once

#include "OxArray.h"
#include "OxDbObjectId.h"
#include "OxGe.h"
#include "OxString.h"
#include "PavoExport.h"

// Extra parameters of a request; none are used by this host.
struct PavoSelectorParamsEx {};

// The objects a query found, topmost first.
class PAVO_HOST_API PavoSelectSet {
public:
    int length() const { return m_ids.length(); }
    // False (and `id` null) when `index` is out of range.
    bool getAt(int index, OxDbObjectId& id) const;
    const OxDbObjectIdArray& ids() const { return m_ids; }

private:
    friend class PavoSSetWriteAccessor;
    OxDbObjectIdArray m_ids;
};

// Write access to a selector's own selection set.
class PAVO_HOST_API PavoSSetWriteAccessor {
public:
    explicit PavoSSetWriteAccessor(PavoSelectSet& set) : m_set(&set) {}
    void clear() { m_set->m_ids.removeAll(); }
    void append(const OxDbObjectId& id) { m_set->m_ids.append(id); }

private:
    PavoSelectSet* m_set;
};

class PAVO_HOST_API PavoEntSelectorRequest {
public:
    // Option of updateQueryExcludeOption: which objects a query leaves out,
    // a combination of the Exclude bits.
    enum : int { kEntityExclusions = 0x2800 };
    enum Exclude : int {
        kExcludeOffLayers = 0x0001,
        kExcludeFrozenLayers = 0x0100,
        kExcludeViewports = 0x0200,
        kExcludeFrozenInViewport = 0x0400, // frozen in the viewport the user works in
        kExcludeSheet = 0x8000,            // a layout's own viewport 1
        // What a pick leaves out unless told otherwise.
        kUsualExclusions = kExcludeOffLayers | kExcludeFrozenLayers | kExcludeFrozenInViewport | kExcludeSheet,
    };

    // `prompt` is shown when asking; `keywords` (null: none) are keywords
    // the user may type instead of a point ("local _ global"); `maxObjects`
    // and `pickMode` are 1 (one object, by a point) in this host;
    // `usePreselection` lets a pre-selection answer the request.
    PavoEntSelectorRequest(const wchar_t* prompt, const wchar_t* keywords, int maxObjects, int pickMode,
                           const PavoSelectorParamsEx* params, bool usePreselection);

    const OxString& prompt() const { return m_prompt; }
    const OxString& keywords() const { return m_keywords; }
    bool usesPreselection() const { return m_usePreselection; }
    // Sets an option's value (kEntityExclusions: the Exclude bits).
    void updateQueryExcludeOption(int option, int value);
    int queryExcludeOption(int option) const;

private:
    OxString m_prompt, m_keywords;
    int m_exclusions = kUsualExclusions;
    bool m_usePreselection = false;
};

class PAVO_HOST_API PavoEntSelector {
public:
    // Results of doAcquireUserInput.
    enum : int {
        kPointGiven = 1,
        kKeywordGiven = 2,
        kInputEnded = 3, // Escape or Enter: see isUserInputCancel and wasNullInput
    };
    // Bits of SetSelectorQueryFlags.
    enum QueryFlags : int {
        kQueryTopmostOnly = 0x1000,   // only the topmost object at the point
        kQueryNoHighlight = 0x2000,   // found objects are not highlighted
        kQueryLockedLayers = 0x8000,  // objects on locked layers may be found
    };

    PavoEntSelector();
    ~PavoEntSelector();
    PavoEntSelector(const PavoEntSelector&) = delete;
    PavoEntSelector& operator=(const PavoEntSelector&) = delete;

    // Takes the highlight off the objects of the selection set (`how` is
    // reserved; pass 0 or 1).
    void dehlSelected(int how);
    PavoSSetWriteAccessor grabSelectionSet() { return PavoSSetWriteAccessor(m_set); }
    void SetSelectorQueryFlags(int flags) { m_queryFlags = flags; }
    int selectorQueryFlags() const { return m_queryFlags; }

    // Asks the request's prompt until the user gives a point, a keyword of
    // the request, Enter or Escape; any other text is refused. ERRNO is 52
    // after Enter.
    int doAcquireUserInput(const PavoEntSelectorRequest& request, bool transparent);
    bool isUserInputCancel() const { return m_cancelled; }
    bool wasNullInput() const { return m_nullInput; }
    // The point or keyword given.
    const OxGePoint3d& acquiredPoint() const { return m_point; }
    const OxString& acquiredKeyword() const { return m_keyword; }

    // Finds the objects at the acquired point in the current space, as the
    // request's exclusions and the query flags allow; they become the
    // selection set and, when `found` is given, its content. 1 when
    // something was found, 0 when nothing (ERRNO 7), -1 without a point.
    int doQuerySelectSet(PavoSelectSet* found, const PavoEntSelectorRequest& request);

private:
    PavoSelectSet m_set;
    int m_queryFlags = kQueryTopmostOnly;
    bool m_cancelled = false, m_nullInput = false, m_hasPoint = false;
    OxGePoint3d m_point;
    OxString m_keyword;
};

// Host-allocated strings and result buffers, counted so that the session can
// report what a command forgot to release.
#include "resbuf.h"

#include <cwchar>

#include "base/HostAllocations.h"

namespace {

// Result buffer types whose value is a host-allocated string: text values,
// entity type names and the text group codes of selection filters.
bool holdsString(int type) { return type == RTSTR || type == RTDXF0 || (type >= 1 && type <= 9); }

bool holdsReal(int type) { return type == RTREAL || type == RTANG || type == RTORINT || (type >= 40 && type <= 59); }

bool holdsShort(int type) { return type == RTSHORT || (type >= 60 && type <= 79); }

bool holdsLong(int type) { return type == RTLONG || (type >= 90 && type <= 99); }

} // namespace

int oxutNewString(const wchar_t* source, wchar_t*& dest) {
    if (!source) {
        dest = nullptr;
        return STATUS_ERROR;
    }
    const std::size_t length = std::wcslen(source);
    dest = new wchar_t[length + 1];
    std::wmemcpy(dest, source, length + 1);
    ++pavo::hostAllocations().strings;
    return STATUS_NORMAL;
}

void oxutDelBuffer(wchar_t*& buffer) {
    if (!buffer) return;
    delete[] buffer;
    buffer = nullptr;
    --pavo::hostAllocations().strings;
}

resbuf* oxutNewRb(int type) {
    resbuf* rb = new resbuf{};
    rb->restype = static_cast<short>(type);
    ++pavo::hostAllocations().resbufs;
    return rb;
}

int oxutRelRb(resbuf* rb) {
    while (rb) {
        resbuf* next = rb->rbnext;
        if (holdsString(rb->restype)) oxutDelBuffer(rb->resval.rstring);
        delete rb;
        --pavo::hostAllocations().resbufs;
        rb = next;
    }
    return STATUS_NORMAL;
}

resbuf* oxutBuildListV(const int* types, const wchar_t* const* strings, const double* reals, const long* ints,
                       int count) {
    if (!types || count <= 0) return nullptr;
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (int i = 0; i < count; ++i) {
        resbuf* rb = oxutNewRb(types[i]);
        const int type = types[i];
        if (holdsString(type)) {
            const wchar_t* text = strings && strings[i] ? strings[i] : L"";
            oxutNewString(text, rb->resval.rstring);
        } else if (holdsReal(type)) {
            rb->resval.rreal = reals ? reals[i] : 0.0;
        } else if (holdsShort(type)) {
            rb->resval.rint = static_cast<short>(ints ? ints[i] : 0);
        } else if (holdsLong(type)) {
            rb->resval.rlong = static_cast<std::int32_t>(ints ? ints[i] : 0);
        } else {
            rb->resval.mnInt64 = ints ? ints[i] : 0;
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

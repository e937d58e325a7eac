// Result buffers: system variable values, selection filters, entity names.
#pragma once

#include <cstdint>
#include <type_traits>

#include "PavoExport.h"
#include "oxstatus.h"

// An entity or selection set name: two machine words owned by the host.
typedef long ox_name[2];
typedef long* ox_namep;
typedef double ox_point[3];
typedef double* ox_pointp;

struct ox_binary {
    short clen;
    char* buf;
};

union ox_resval {
    double rreal;
    double rpoint[3];
    short rint;
    wchar_t* rstring;
    long rlname[2];
    std::int32_t rlong;
    std::int64_t mnInt64;
    ox_binary rbinary;
};

struct resbuf {
    resbuf* rbnext;
    short restype;
    ox_resval resval;
};

// Host-allocated strings and result buffers. Everything allocated here is
// counted, and a command that leaves any unreleased is reported.
PAVO_HOST_API int oxutNewString(const wchar_t* source, wchar_t*& dest);
PAVO_HOST_API void oxutDelBuffer(wchar_t*& buffer);
PAVO_HOST_API resbuf* oxutNewRb(int type);
// Releases a whole list, strings included.
PAVO_HOST_API int oxutRelRb(resbuf* rb);

PAVO_HOST_API resbuf* oxutBuildListV(const int* types, const wchar_t* const* strings, const double* reals,
                                     const long* ints, int count);

namespace pavo_detail {
struct BuildListCollector {
    static constexpr int kMax = 64;
    int types[kMax];
    const wchar_t* strings[kMax];
    double reals[kMax];
    long ints[kMax];
    int count = 0;
    bool done = false;

    template <class V>
    void value(int type, V v) {
        if (count >= kMax) return;
        types[count] = type;
        strings[count] = nullptr;
        reals[count] = 0;
        ints[count] = 0;
        if constexpr (std::is_convertible_v<V, const wchar_t*>)
            strings[count] = v;
        else if constexpr (std::is_floating_point_v<V>)
            reals[count] = v;
        else
            ints[count] = static_cast<long>(v);
        ++count;
    }
    void take() {}
    template <class... Rest>
    void take(int type, Rest... rest) {
        if (done) return;
        if (type == 0) {
            done = true;
            return;
        }
        if constexpr (sizeof...(Rest) > 0) takeValue(type, rest...);
    }
    template <class V, class... Rest>
    void takeValue(int type, V v, Rest... rest) {
        value(type, v);
        take(rest...);
    }
};
} // namespace pavo_detail

// Builds a result buffer list from (type, value) pairs ended by 0, such as
// oxutBuildList(RTDXF0, L"VIEWPORT", 0). Type-safe: no C varargs.
template <class... Args>
resbuf* oxutBuildList(int type, Args... args) {
    pavo_detail::BuildListCollector c;
    c.take(type, args...);
    return oxutBuildListV(c.types, c.strings, c.reals, c.ints, c.count);
}

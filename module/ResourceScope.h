// Makes the module's resource library current for one command run and
// restores the previous one on every way out, exceptions included.
#pragma once

#include "IPavoCommand.h"

namespace vxlayer {

inline constexpr const wchar_t* kResourceLibrary = L"VxLayerCmdsRes.dll";

class ContextResourceScope {
public:
    explicit ContextResourceScope(IPavoBuildInCommandContext* ctx)
        : m_ctx(ctx), m_switched(ctx && ctx->setCurrentResource(kResourceLibrary)) {}
    ~ContextResourceScope() {
        if (m_switched) m_ctx->restoreResource(0);
    }
    ContextResourceScope(const ContextResourceScope&) = delete;
    ContextResourceScope& operator=(const ContextResourceScope&) = delete;

private:
    IPavoBuildInCommandContext* m_ctx;
    bool m_switched;
};

} // namespace vxlayer

// Visibility of the host's interface. Everything the module may call is
// exported from libpavohost with default visibility, so that a module built
// with hidden visibility still resolves it at load time.
#pragma once

#if defined(PAVO_HOST_BUILD)
#define PAVO_HOST_API __attribute__((visibility("default")))
#else
#define PAVO_HOST_API __attribute__((visibility("default")))
#endif

// Functions a module exports to the host.
#define PAVO_MODULE_EXPORT extern "C" __attribute__((visibility("default")))

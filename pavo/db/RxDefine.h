// Defines the runtime-class members declared by OX_RX_DECLARE_MEMBERS. Each
// class registers itself by name when the library is loaded, so that
// OxRxClass::find knows every class from the start.
#pragma once

#include "OxRx.h"

#define OX_RX_DEFINE_MEMBERS(CLASS, PARENT)                                                                            \
    OxRxClass* CLASS::desc() {                                                                                         \
        static OxRxClass cls(L"" #CLASS, PARENT::desc());                                                              \
        return &cls;                                                                                                   \
    }                                                                                                                  \
    OxRxClass* CLASS::isA() const { return CLASS::desc(); }                                                            \
    namespace {                                                                                                        \
    [[maybe_unused]] const OxRxClass* const registered##CLASS = CLASS::desc();                                         \
    }

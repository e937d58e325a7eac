// The active view of the drawing: whether the user works in model space
// (TILEMODE 1, or inside a layout viewport) or in a layout's paper space.
#pragma once

#include "PavoExport.h"

class PAVO_HOST_API PavoGsView {
public:
    enum ViewingSpace : int { kModelSpace = 0, kPaperSpace = 1 };
    // Read each time it is asked: a command may switch spaces meanwhile.
    int viewingSpace() const;
};

class PAVO_HOST_API PavoGraphics {
public:
    // Null when no drawing is open.
    PavoGsView* activeGsView();

private:
    PavoGsView m_view;
};

// The graphics of the working drawing; null when no drawing is open.
PAVO_HOST_API PavoGraphics* GetActiveGraphics();

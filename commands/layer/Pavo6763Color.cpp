// "-LAYER" option Color: a colour for the layers of a name list. A negative
// index colour also turns the layers off, a positive one turns them on.
#include <cstdint>
#include <cstdlib>

#include "LayerPrompts.h"
#include "OxCmColor.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "PavoAcquireInput.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

// The colour as the layer prompt shows it: small index colours (and
// ByLayer) as the typed number with their name, "-1 (red)".
OxString colourText(const OxCmColor& color, short enteredIndex, bool turnOff) {
    const wchar_t* book = color.bookName();
    OxString display;
    if (book) {
        display = book;
        display += L"|";
    }
    display += color.colorNameForDisplay();
    const std::uint16_t index = color.colorIndex();
    if (!book && color.colorMethod() == OxCmEntityColor::kByACI && (index <= 7 || index == 256)) {
        OxString text;
        text.format(L"%d (%ls)", static_cast<int>(enteredIndex), display);
        return text;
    }
    if (!turnOff) return display;
    OxString text(L"-");
    text += display;
    return text;
}

// Asks whether the current layer `name` really goes off; Enter or cancel
// keep it on, an answer that is neither Yes nor No asks again.
bool confirmCurrentLayerOff(const OxString& name) {
    const OxString keywords = oxmdOxResourceString(10113, L"Yes No _Yes No");
    OxString prompt;
    prompt.format(oxmdOxResourceString(10111, L"\nReally want layer %ls (the CURRENT layer) off? <N>"), name);
    const OxString notUnderstood = oxmdOxResourceString(10112, L"\nPlease input Yes(Y) or No(N).");
    for (;;) {
        oxedInitGet(OX_INP_ARBITRARY, keywords);
        OxString answer;
        const int status = oxedGetString(0, prompt, answer);
        if (status == STATUS_CANCEL) return false;
        if (status == STATUS_NORMAL) {
            if (answer.isEmpty()) return false;
            OxString keyword;
            oxedGetInput(keyword);
            if (keyword.compareNoCase(L"YES") == 0) return true;
            if (keyword.compareNoCase(L"NO") == 0) return false;
            oxutPrintf(notUnderstood);
        } else if (status == STATUS_ERROR) {
            oxutPrintf(notUnderstood);
        }
    }
}

} // namespace

int Pavo6763Command::_branch_color() {
    OxCmColor color;
    PavoAcquireInput input;
    input.prompt(oxmdOxResourceString(10110, L"\nNew color [Truecolor/COlorbook] : "));
    int status = input.getColor(color, PavoAcquireInput::kAllowNegativeIndex);
    if (status != STATUS_NORMAL) return status;

    const auto enteredIndex = static_cast<short>(color.colorIndex());
    const bool turnOff = enteredIndex < 0;
    if (turnOff) color.setColorIndex(static_cast<std::uint16_t>(std::abs(static_cast<int>(enteredIndex))));

    const OxString currentLayer = vxlayer::currentLayerName();
    OxString prompt;
    prompt.format(oxmdOxResourceString(10083, L"\nLayer(s) to be %ls <%ls>: "),
                  colourText(color, enteredIndex, turnOff), currentLayer);
    OxArray<OxDbObjectId> ids;
    status = vxlayer::askTargetLayers(m_context, prompt, currentLayer, ids);
    if (status != STATUS_NORMAL) return status;

    const std::uint16_t index = color.colorIndex();
    // One layer at a time; the current layer stays open while its question
    // is answered.
    vxlayer::changeLayers(ids, [&](OxDbLayerTableRecord& layer) {
        layer.setColor(color);
        if (!turnOff) {
            // Index 0 (true and book colours) and ByLayer leave on/off alone.
            if (index >= 1 && index <= 255) layer.setIsOff(false);
        } else if (layer.name().compareNoCase(currentLayer) != 0 || confirmCurrentLayerOff(layer.name())) {
            layer.setIsOff(true);
        }
    });
    return STATUS_NORMAL;
}

// The SETBYLAYER settings dialog: check boxes for the properties that the
// command resets. Bits 32 and 64 of the mask are not shown and pass through.
#pragma once

#include <cstdint>

#include "OxUiDialog.h"

class DlgSetByLayer : public COxUiDialog {
    Q_OBJECT
public:
    explicit DlgSetByLayer(CWnd* parent);

    const CRuntimeClass* GetRuntimeClass() const override;
    int OnInitDialog() override;
    void DoDataExchange(CDataExchange* pDX) override;
    void OnHelp() override;
    void bindSingals();

public slots:
    void OnClickedColorCheck();
    void OnClickedLineTypeCheck();
    void OnClickedPrintStyleCheck();
    void OnClickedLineWidthCheck();
    void OnClickedTranspancyCheck();
    void OnClickedMaterialCheck();
    void OnBnClickedButtonHelp();

public:
    CButton m_colorCheck;
    CButton m_linetypeCheck;
    CButton m_printStyleCheck;
    CButton m_lineWidthCheck;
    CButton m_transparencyCheck;
    CButton m_materialCheck;
    // Written by the caller before DoModal, read after an OK.
    std::uint16_t m_mode = 255;
    bool m_bColorDependentPlotStyles = true;
    bool m_bGenerated;

private:
    // Sets or clears `bit` of the mask from the check box.
    void takeCheck(const CButton& box, std::uint16_t bit);
};

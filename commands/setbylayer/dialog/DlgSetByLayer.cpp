#include "DlgSetByLayer.h"

#include <QAbstractButton>

#include "commands/setbylayer/SetByLayerMode.h"
#include "oxed.h"

using namespace vxlayer::setbylayer;

namespace {

const CRuntimeClass kDlgSetByLayerClass = {"DlgSetByLayer", nullptr};

} // namespace

DlgSetByLayer::DlgSetByLayer(CWnd* parent)
    : COxUiDialog(parent),
      m_bGenerated(generateUICtrls(L"VxLayerCmdsRes/VxSetByLayerCmdRes", L"IDD_SETBYLAYER", true)) {
    if (m_bGenerated) {
        bindSingals();
        COxUiDialog::bindSingals();
    }
}

const CRuntimeClass* DlgSetByLayer::GetRuntimeClass() const { return &kDlgSetByLayerClass; }

void DlgSetByLayer::bindSingals() {
    struct Connection {
        const char* control;
        const char* slot;
    };
    static const Connection kConnections[] = {
        {"IDC_SETBYLAYER_COLOR", SLOT(OnClickedColorCheck())},
        {"IDC_SETBYLAYER_LINETYPE", SLOT(OnClickedLineTypeCheck())},
        {"IDC_SETBYLAYER_PRINTSTYLE", SLOT(OnClickedPrintStyleCheck())},
        {"IDC_SETBYLAYER_MATERIAL", SLOT(OnClickedMaterialCheck())},
        {"IDC_SETBYLAYER_LINEWIDTH", SLOT(OnClickedLineWidthCheck())},
        {"IDC_SETBYLAYER_TRANSPARENCY", SLOT(OnClickedTranspancyCheck())},
        {"IDHELP", SLOT(OnBnClickedButtonHelp())},
    };
    for (const Connection& c : kConnections) {
        QWidget* widget = getWidgetsFromOrignal(c.control, 0);
        if (widget && isControlOfBase(c.control) == 0) connect(widget, SIGNAL(clicked()), this, c.slot);
    }
}

void DlgSetByLayer::DoDataExchange(CDataExchange* pDX) {
    COxUiDialog::DoDataExchange(pDX);
    DDX_Control(pDX, "IDC_SETBYLAYER_COLOR", m_colorCheck);
    DDX_Control(pDX, "IDC_SETBYLAYER_LINETYPE", m_linetypeCheck);
    DDX_Control(pDX, "IDC_SETBYLAYER_MATERIAL", m_materialCheck);
    DDX_Control(pDX, "IDC_SETBYLAYER_PRINTSTYLE", m_printStyleCheck);
    DDX_Control(pDX, "IDC_SETBYLAYER_LINEWIDTH", m_lineWidthCheck);
    DDX_Control(pDX, "IDC_SETBYLAYER_TRANSPARENCY", m_transparencyCheck);
}

int DlgSetByLayer::OnInitDialog() {
    COxUiDialog::OnInitDialog();
    // The box gets the masked value itself; any non-zero value checks it.
    m_colorCheck.SetCheck(m_mode & kColor);
    m_linetypeCheck.SetCheck(m_mode & kLinetype);
    m_lineWidthCheck.SetCheck(m_mode & kLineweight);
    m_transparencyCheck.SetCheck(m_mode & kTransparency);
    m_materialCheck.SetCheck(m_mode & kMaterial);
    // Material is shown but not changed here: its bit comes from
    // SETBYLAYERMODE only.
    m_materialCheck.EnableWindow(0);
    if (m_bColorDependentPlotStyles) {
        m_printStyleCheck.SetCheck(0);
        m_printStyleCheck.EnableWindow(0);
    } else {
        m_printStyleCheck.SetCheck(m_mode & kPlotStyle);
    }
    return 1;
}

void DlgSetByLayer::takeCheck(const CButton& box, std::uint16_t bit) {
    m_mode = box.GetCheck() ? static_cast<std::uint16_t>(m_mode | bit) : static_cast<std::uint16_t>(m_mode & ~bit);
}

void DlgSetByLayer::OnClickedColorCheck() { takeCheck(m_colorCheck, kColor); }
void DlgSetByLayer::OnClickedLineTypeCheck() { takeCheck(m_linetypeCheck, kLinetype); }
void DlgSetByLayer::OnClickedPrintStyleCheck() { takeCheck(m_printStyleCheck, kPlotStyle); }
void DlgSetByLayer::OnClickedLineWidthCheck() { takeCheck(m_lineWidthCheck, kLineweight); }
void DlgSetByLayer::OnClickedTranspancyCheck() { takeCheck(m_transparencyCheck, kTransparency); }
void DlgSetByLayer::OnClickedMaterialCheck() { takeCheck(m_materialCheck, kMaterial); }
void DlgSetByLayer::OnBnClickedButtonHelp() { oxedHelp(nullptr, L"SETBYLAYER_DIA", 0); }
void DlgSetByLayer::OnHelp() { oxedHelp(nullptr, L"SETBYLAYER_DIA", 0); }

// CWnd, CButton and DDX_Control: controls attached to widgets.
#include <QAbstractButton>
#include <QCheckBox>
#include <QWidget>

#include "OxUiDialog.h"

CWnd::~CWnd() = default;

int CWnd::EnableWindow(int enable) {
    if (!m_widget) return 0;
    const int wasDisabled = m_widget->isEnabled() ? 0 : 1;
    m_widget->setEnabled(enable != 0);
    return wasDisabled;
}

int CWnd::IsWindowEnabled() const { return m_widget && m_widget->isEnabled() ? 1 : 0; }

int CButton::GetCheck() const {
    const auto* button = qobject_cast<const QAbstractButton*>(m_widget);
    return button && button->isChecked() ? BST_CHECKED : BST_UNCHECKED;
}

void CButton::SetCheck(int check) {
    if (auto* box = qobject_cast<QCheckBox*>(m_widget))
        box->setCheckState(check != 0 ? Qt::Checked : Qt::Unchecked);
    else if (auto* button = qobject_cast<QAbstractButton*>(m_widget))
        button->setChecked(check != 0);
}

void DDX_Control(CDataExchange* pDX, const char* controlName, CWnd& control) {
    if (!pDX || !pDX->m_pDlgWnd || control.widget()) return;
    control.Attach(pDX->m_pDlgWnd->getWidgetsFromOrignal(controlName));
}

// The host's dialog framework, in the window-class model: COxUiDialog is a
// QDialog whose widgets are built from a Qt Designer layout in a resource
// library, with CWnd-style controls attached to them by control name. It
// lives in libpavoui, which only dialog libraries link: including this
// header pulls in Qt.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>
#include <vector>

#include "PavoExport.h"
#include "oxui.h"

#define PAVO_UI_API __attribute__((visibility("default")))

class COxUiDialog;

// Check states of CButton.
inline constexpr int BST_UNCHECKED = 0;
inline constexpr int BST_CHECKED = 1;

// A window: wraps the widget it is attached to (none: every call is a
// harmless no-op).
class PAVO_UI_API CWnd {
public:
    CWnd() = default;
    explicit CWnd(QWidget* widget) : m_widget(widget) {}
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    QWidget* widget() const { return m_widget; }
    void Attach(QWidget* widget) { m_widget = widget; }
    // Enables (non-zero) or disables the window; non-zero when it was
    // disabled before.
    int EnableWindow(int enable = 1);
    int IsWindowEnabled() const;

protected:
    QWidget* m_widget = nullptr;
};

// A button or check box.
class PAVO_UI_API CButton : public CWnd {
public:
    // BST_CHECKED or BST_UNCHECKED.
    int GetCheck() const;
    // Any non-zero value checks the box.
    void SetCheck(int check);
};

// Passed to DoDataExchange: which way data goes.
class PAVO_UI_API CDataExchange {
public:
    CDataExchange(COxUiDialog* dialog, bool saveAndValidate) : m_pDlgWnd(dialog), m_bSaveAndValidate(saveAndValidate) {}
    COxUiDialog* m_pDlgWnd;
    bool m_bSaveAndValidate;
};

// Attaches `control` to the dialog's control named `controlName`.
PAVO_UI_API void DDX_Control(CDataExchange* pDX, const char* controlName, CWnd& control);

struct CRuntimeClass {
    const char* m_lpszClassName;
    const CRuntimeClass* m_pBaseClass;
};

// The host's main window, the parent of dialogs.
PAVO_UI_API CWnd* AfxGetMainWnd();

class PAVO_UI_API COxUiDialog : public QDialog, public CWnd {
    Q_OBJECT
public:
    // `parent` null: the host's main window.
    explicit COxUiDialog(CWnd* parent = nullptr);
    ~COxUiDialog() override;

    virtual const CRuntimeClass* GetRuntimeClass() const;

    // Shows the dialog and returns when it is closed: IDOK or IDCANCEL. When
    // no dialog can be shown it says why and returns IDCANCEL at once. In a
    // script the dialog is driven by "@" lines (see docs/command-line.md).
    virtual int DoModal();
    // Attaches the controls (DoDataExchange); 1.
    virtual int OnInitDialog();
    virtual void DoDataExchange(CDataExchange* pDX);
    bool UpdateData(bool saveAndValidate = true);
    // OK: takes the data (UpdateData) and closes with IDOK. Cancel closes
    // with IDCANCEL. Help: nothing unless a dialog has help.
    virtual void OnOK();
    virtual void OnCancel();
    virtual void OnHelp();

    // Builds the widgets of dialog `dialogId` from layout `resource`
    // ("Library/Layout": Layout.ui in resource library Library) and takes its
    // title and size when `adoptWindow`. false, with the reason printed,
    // when the layout is missing, unreadable or holds another dialog.
    bool generateUICtrls(const wchar_t* resource, const wchar_t* dialogId, bool adoptWindow = true);
    // The widget made for control `name`, or null.
    QWidget* getWidgetsFromOrignal(const char* name, int reserved = 0) const;
    // Non-zero for the controls the base connects itself (IDOK, IDCANCEL,
    // IDHELP); a derived class connects the others.
    virtual int isControlOfBase(const char* name) const;
    // The base's own connections: OK, Cancel and Help.
    void bindSingals();

    // Script actions: a line "@verb arguments" calls the action of `verb`.
    // The base offers click, check, ok, cancel and shot; a dialog adds its
    // own in its constructor. `usage` is shown when a line is wrong.
    using ScriptAction = std::function<void(const QString& arguments)>;
    void addScriptAction(const QString& verb, const QString& usage, ScriptAction action);
    // Runs one "@" line; false (with a message) when it is not understood.
    bool runScriptLine(const QString& line);
    // True once the dialog was closed with a result.
    bool isClosed() const { return m_closed; }

    void done(int result) override;

protected:
    // Prints one line on the command line.
    static void say(const QString& text);

private:
    void addBaseScriptActions();
    // Clicks the named control as a person would; false when it cannot.
    bool clickControl(const QString& name);
    QString scriptUsage() const;

    struct Action {
        QString verb, usage;
        ScriptAction run;
    };
    std::vector<Action> m_actions;
    bool m_closed = false;
};

// COxUiDialog: the dialog base, its layout, its connections and its script
// actions.
#include "OxUiDialog.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QPixmap>
#include <QVBoxLayout>

#include "oxed.h"
#include "ui/DialogLayout.h"
#include "ui/DialogScript.h"
#include "ui/UiApplication.h"

namespace {

// The parent widget of a new dialog, with the application made first: the
// QDialog base is built from it.
QWidget* parentWidgetOf(CWnd* parent) {
    pavo::ui::ensureApplication();
    return parent && parent->widget() ? parent->widget() : pavo::ui::mainWindow();
}

const CRuntimeClass kDialogClass = {"COxUiDialog", nullptr};

} // namespace

COxUiDialog::COxUiDialog(CWnd* parent) : QDialog(parentWidgetOf(parent)), CWnd(this) { addBaseScriptActions(); }

COxUiDialog::~COxUiDialog() { m_widget = nullptr; }

const CRuntimeClass* COxUiDialog::GetRuntimeClass() const { return &kDialogClass; }

void COxUiDialog::say(const QString& text) { oxutPrintf(L"\n%ls", text.toStdWString()); }

int COxUiDialog::DoModal() {
    if (const int refused = oxuiRefuseDialog()) return refused;
    m_closed = false;
    setResult(0);
    OnInitDialog();
    if (pavo::ui::scriptDrivesDialogs()) return pavo::ui::runScriptedDialog(*this);
    return exec() == QDialog::Accepted ? IDOK : IDCANCEL;
}

int COxUiDialog::OnInitDialog() {
    UpdateData(false);
    return 1;
}

void COxUiDialog::DoDataExchange(CDataExchange*) {}

bool COxUiDialog::UpdateData(bool saveAndValidate) {
    CDataExchange exchange(this, saveAndValidate);
    DoDataExchange(&exchange);
    return true;
}

void COxUiDialog::OnOK() {
    if (UpdateData(true)) accept();
}

void COxUiDialog::OnCancel() { reject(); }

void COxUiDialog::OnHelp() {}

void COxUiDialog::done(int result) {
    m_closed = true;
    QDialog::done(result);
}

bool COxUiDialog::generateUICtrls(const wchar_t* resource, const wchar_t* dialogId, bool adoptWindow) {
    QString error;
    QWidget* form = pavo::ui::loadDialogForm(QString::fromWCharArray(resource ? resource : L""),
                                             QString::fromWCharArray(dialogId ? dialogId : L""), this, error);
    if (!form) {
        say(error);
        return false;
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(form);
    if (adoptWindow) {
        setWindowTitle(form->windowTitle());
        resize(form->size());
    }
    return true;
}

QWidget* COxUiDialog::getWidgetsFromOrignal(const char* name, int) const {
    return name ? findChild<QWidget*>(QString::fromLatin1(name)) : nullptr;
}

int COxUiDialog::isControlOfBase(const char* name) const {
    const QString control = QString::fromLatin1(name ? name : "");
    return control == QLatin1String("IDOK") || control == QLatin1String("IDCANCEL") ||
                   control == QLatin1String("IDHELP")
               ? 1
               : 0;
}

void COxUiDialog::bindSingals() {
    const auto bind = [this](const char* name, void (COxUiDialog::*handler)()) {
        if (auto* button = qobject_cast<QAbstractButton*>(getWidgetsFromOrignal(name)))
            connect(button, &QAbstractButton::clicked, this, [this, handler] { (this->*handler)(); });
    };
    bind("IDOK", &COxUiDialog::OnOK);
    bind("IDCANCEL", &COxUiDialog::OnCancel);
    bind("IDHELP", &COxUiDialog::OnHelp);
}

// ------------------------------------------------------------------ scripts

void COxUiDialog::addScriptAction(const QString& verb, const QString& usage, ScriptAction action) {
    for (Action& a : m_actions) {
        if (a.verb.compare(verb, Qt::CaseInsensitive) == 0) {
            a = {verb, usage, std::move(action)};
            return;
        }
    }
    m_actions.push_back({verb, usage, std::move(action)});
}

QString COxUiDialog::scriptUsage() const {
    QStringList usages;
    for (const Action& a : m_actions) usages << a.usage;
    return usages.join(QStringLiteral(", "));
}

bool COxUiDialog::runScriptLine(const QString& line) {
    const QString text = line.trimmed().mid(1); // after the '@'
    const int blank = text.indexOf(QLatin1Char(' '));
    const QString verb = blank < 0 ? text : text.left(blank);
    const QString arguments = blank < 0 ? QString() : text.mid(blank + 1).trimmed();
    for (const Action& a : m_actions) {
        if (a.verb.compare(verb, Qt::CaseInsensitive) != 0) continue;
        a.run(arguments);
        QCoreApplication::processEvents();
        return true;
    }
    say(QStringLiteral("Unknown dialog action \"@%1\". This dialog answers to %2.").arg(verb, scriptUsage()));
    return false;
}

bool COxUiDialog::clickControl(const QString& name) {
    QWidget* widget = findChild<QWidget*>(name);
    auto* button = qobject_cast<QAbstractButton*>(widget);
    if (!widget) {
        say(QStringLiteral("The dialog has no control %1.").arg(name));
    } else if (!button) {
        say(QStringLiteral("%1 is not a button or check box.").arg(name));
    } else if (!button->isEnabled()) {
        say(QStringLiteral("%1 is disabled; nothing changed.").arg(name));
    } else {
        button->click();
        return true;
    }
    return false;
}

void COxUiDialog::addBaseScriptActions() {
    addScriptAction(QStringLiteral("click"), QStringLiteral("@click NAME"), [this](const QString& name) {
        if (name.isEmpty())
            say(QStringLiteral("@click needs a control name."));
        else
            clickControl(name);
    });
    addScriptAction(QStringLiteral("check"), QStringLiteral("@check NAME on|off"), [this](const QString& arguments) {
        const QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const QString state = words.size() == 2 ? words[1].toLower() : QString();
        if (state != QLatin1String("on") && state != QLatin1String("off")) {
            say(QStringLiteral("@check needs a control name and on or off."));
            return;
        }
        auto* button = qobject_cast<QAbstractButton*>(findChild<QWidget*>(words[0]));
        if (button && !button->isCheckable()) {
            say(QStringLiteral("%1 cannot be checked.").arg(words[0]));
            return;
        }
        // A box already as asked is left alone; otherwise one click, as a
        // person would give it.
        if (!button || button->isChecked() != (state == QLatin1String("on"))) clickControl(words[0]);
    });
    addScriptAction(QStringLiteral("ok"), QStringLiteral("@ok"), [this](const QString&) {
        if (getWidgetsFromOrignal("IDOK"))
            clickControl(QStringLiteral("IDOK"));
        else
            OnOK();
    });
    addScriptAction(QStringLiteral("cancel"), QStringLiteral("@cancel"), [this](const QString&) {
        if (getWidgetsFromOrignal("IDCANCEL"))
            clickControl(QStringLiteral("IDCANCEL"));
        else
            OnCancel();
    });
    addScriptAction(QStringLiteral("list"), QStringLiteral("@list"), [this](const QString&) {
        for (QAbstractButton* button : findChildren<QAbstractButton*>()) {
            if (button->objectName().isEmpty()) continue;
            QString state = button->isCheckable() ? (button->isChecked() ? QStringLiteral("checked")
                                                                          : QStringLiteral("unchecked"))
                                                  : QStringLiteral("button");
            if (!button->isEnabled()) state += QStringLiteral(", disabled");
            say(QStringLiteral("%1 \"%2\": %3").arg(button->objectName(), button->text().remove(QLatin1Char('&')), state));
        }
    });
    addScriptAction(QStringLiteral("shot"), QStringLiteral("@shot FILE.png"), [this](const QString& file) {
        if (file.isEmpty()) {
            say(QStringLiteral("@shot needs a file name."));
            return;
        }
        QCoreApplication::processEvents();
        if (grab().save(file, "PNG"))
            say(QStringLiteral("Saved a picture of the dialog in %1.").arg(file));
        else
            say(QStringLiteral("Cannot save a picture in %1.").arg(file));
    });
}

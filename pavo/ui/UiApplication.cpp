#include "ui/UiApplication.h"

#include <QApplication>
#include <cstdio>
#include <QWidget>

#include "OxUiDialog.h"

namespace pavo::ui {

namespace {

// pavo's output is its transcript: Qt's debug chatter and warnings (such as
// the offscreen platform's) stay out of it unless PAVO_QT_MESSAGES is set.
void qtMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg || qEnvironmentVariableIsSet("PAVO_QT_MESSAGES"))
        std::fprintf(stderr, "Qt: %s\n", message.toLocal8Bit().constData());
}

} // namespace

void ensureApplication(bool offscreen) {
    if (QApplication::instance()) return;
    qInstallMessageHandler(qtMessage);
    // Qt keeps references to these for the application's life.
    static char name[] = "pavo", platformOption[] = "-platform", platform[] = "offscreen";
    static char* argv[] = {name, platformOption, platform, nullptr};
    static int argc = offscreen ? 3 : 1;
    // Never deleted: dialogs may be shown until the process ends, and the
    // library stays loaded (it is linked with -z nodelete).
    new QApplication(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
}

QWidget* mainWindow() {
    ensureApplication();
    static QWidget* window = [] {
        auto* w = new QWidget();
        w->setObjectName(QStringLiteral("pavo"));
        w->setWindowTitle(QStringLiteral("pavo"));
        return w;
    }();
    return window;
}

} // namespace pavo::ui

CWnd* AfxGetMainWnd() {
    static CWnd window(pavo::ui::mainWindow());
    return &window;
}

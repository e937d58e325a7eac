#include "ui/DialogLayout.h"

#include <QBuffer>
#include <QUiLoader>
#include <QWidget>
#include <QXmlStreamReader>

#include "app/ResourceLibraries.h"
#include "base/PathText.h"
#include "files/FileRead.h"

namespace pavo::ui {

namespace {

// The class and name of the layout's top-level widget.
struct TopWidget {
    QString className, name;
    qint64 classOffset = -1; // where the class attribute's value starts
};

TopWidget topWidget(const QByteArray& xml) {
    QXmlStreamReader reader(xml);
    TopWidget top;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != QLatin1String("widget")) continue;
        top.className = reader.attributes().value(QLatin1String("class")).toString();
        top.name = reader.attributes().value(QLatin1String("name")).toString();
        top.classOffset = xml.indexOf("class=\"" + top.className.toUtf8() + "\"");
        break;
    }
    return top;
}

std::filesystem::path layoutPath(const QString& resource, QString& error) {
    const int slash = resource.indexOf(QLatin1Char('/'));
    if (slash <= 0 || slash == resource.size() - 1) {
        error = QStringLiteral("\"%1\" does not name a layout as Library/Layout.").arg(resource);
        return {};
    }
    const QString library = resource.left(slash);
    app::ResourceLibrary* found = app::ResourceLibraries::instance().find(library.toStdWString());
    if (!found) {
        error = QStringLiteral("The resource library %1 is not on the resource path.").arg(library);
        return {};
    }
    return found->folder() / pathFromText((resource.mid(slash + 1) + QStringLiteral(".ui")).toStdWString());
}

} // namespace

QWidget* loadDialogForm(const QString& resource, const QString& dialogId, QWidget* parent, QString& error) {
    const std::filesystem::path file = layoutPath(resource, error);
    if (file.empty()) return nullptr;
    const QString path = QString::fromStdWString(pathText(file));
    std::string reason;
    const std::optional<std::string> text = files::readFileText(file, reason);
    if (!text) {
        error = QStringLiteral("The dialog layout %1 cannot be read: %2.").arg(path, QString::fromStdString(reason));
        return nullptr;
    }
    QByteArray xml = QByteArray::fromStdString(*text);
    const TopWidget top = topWidget(xml);
    if (top.name != dialogId || top.classOffset < 0) {
        error = QStringLiteral("The dialog layout %1 holds no dialog %2.").arg(path, dialogId);
        return nullptr;
    }
    // Built as a plain widget inside the host's dialog, so that Escape and
    // Enter reach the dialog itself and not a dialog nested in it.
    xml.replace(top.classOffset, 7 + top.className.toUtf8().size() + 1, "class=\"QWidget\"");
    QBuffer buffer(&xml);
    buffer.open(QIODevice::ReadOnly);
    QUiLoader loader;
    QWidget* form = loader.load(&buffer, parent);
    if (!form) error = QStringLiteral("The dialog layout %1 cannot be built: %2").arg(path, loader.errorString());
    return form;
}

} // namespace pavo::ui

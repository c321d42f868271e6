#include "common/ui/Help.h"

#include "common/core/Desktop.h"
#include "common/ui/HelpWindow.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>

namespace {
QString gHelpFile;
QPointer<HelpWindow> gWindow;

HelpWindow& TheWindow() {
    if (!gWindow) {
        gWindow = new HelpWindow;
        gWindow->setAttribute(Qt::WA_DeleteOnClose);
    }
    return *gWindow;
}

int OwnContext(const QObject* object) {
    int context = object->property(Help::kContextProperty).toInt();
    if (context <= 0) {
        if (const auto* menu = qobject_cast<const QMenu*>(object))
            context = menu->menuAction()->property(Help::kContextProperty).toInt();
    }
    return context > 0 ? context : 0;
}

class F1Handler final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
            return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier || !Help::Available())
            return false;
        int context = 0;
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            if (const QAction* entry = menu->activeAction())
                context = entry->property(Help::kContextProperty).toInt();
            if (context <= 0)
                context = Help::ContextOf(menu);
            while (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
        } else {
            QWidget* focus = QApplication::focusWidget();
            context = Help::ContextOf(focus ? focus : watched);
        }
        if (context > 0)
            Help::ShowTopic(context);
        else
            Help::ShowContents();
        return true;
    }
};
} // namespace

QString App::HelpFile() {
    return gHelpFile;
}

void App::SetHelpFile(const QString& path) {
    gHelpFile = path;
}

bool Help::Available() {
    return !gHelpFile.isEmpty() && QFile::exists(QStringLiteral(":/help/contents.html"));
}

void Help::NoHelpBox(const QString& title) {
    MsgBox(QStringLiteral("Unable to display Help Contents. There is no Help associated with this "
                          "project."),
           vb::vbInformation, title);
}

void Help::ShowContents() {
    TheWindow().ShowContents();
}

void Help::ShowSearch() {
    TheWindow().ShowSearch();
}

void Help::ShowTopic(int context) {
    TheWindow().ShowTopic(context);
}

void Help::Quit() {
    delete gWindow.data();
}

HelpWindow* Help::Window() {
    return gWindow.data();
}

int Help::ContextOf(const QObject* object) {
    for (; object; object = object->parent()) {
        if (const int context = OwnContext(object))
            return context;
    }
    return 0;
}

void Help::InstallF1Handler() {
    static F1Handler* handler = nullptr;
    if (!handler && qApp) {
        handler = new F1Handler(qApp);
        qApp->installEventFilter(handler);
    }
}

#pragma once

#include <QApplication>

// The application object. Whatever error escapes an event handler is logged through the
// error log and the program carries on: no input ever ends it.
class VantryApplication : public QApplication {
    Q_OBJECT
public:
    VantryApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};

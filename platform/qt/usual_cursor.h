// What opens while work is going on has its usual pointer.
#pragma once

#include <QCursor>
#include <QGuiApplication>

class UsualCursor {
public:
    UsualCursor() {
        for (; QGuiApplication::overrideCursor(); ++depth) QGuiApplication::restoreOverrideCursor();
    }
    UsualCursor(const UsualCursor&) = delete;
    UsualCursor& operator=(const UsualCursor&) = delete;
    ~UsualCursor() {
        for (; depth > 0; --depth) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }

private:
    int depth = 0;
};

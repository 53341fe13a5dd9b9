// What stands open at present, and what of it can be used.
#pragma once

#include "platform/qt/qt_frame.h"

#include <QDialog>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <string>
#include <vector>

/// What takes the keyboard and the mouse; each lies over those behind it in this list.
enum class Place { Menu, Box, FileDialog, Dialog, Window, Nothing };

/// Only the pointer of the present place is set, and `window` while there is one.
struct Scene {
    Place place = Place::Nothing;
    QMenu* menu = nullptr;
    QMessageBox* box = nullptr;
    QFileDialog* files = nullptr;
    QDialog* dialog = nullptr;  ///< any modal dialog
    QtFrame* window = nullptr;  ///< shown

    /// The widget of the place; null where there is nothing.
    QWidget* Top() const;
    QWidget* Edit() const { return window->findChild<QWidget*>(QStringLiteral("edit")); }
    QWidget* List() const { return window->findChild<QWidget*>(QStringLiteral("list")); }
};

Scene LookAround();

/// The widget that hears the keys of the place, which is not Nothing.
QWidget& KeyTarget(const Scene& scene);

/// The controls inside a window that a person can use now, in the order of their making:
/// buttons, fields, sliders, pictures and text controls.
std::vector<QWidget*> Controls(const QWidget& window);

/// "QLineEdit Width", for the log.
std::string NameOf(const QWidget& widget);

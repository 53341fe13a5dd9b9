// Takes pictures of windows, dialogs and menus off screen, and writes them as small PNG files.
#pragma once

#include <QDialog>
#include <QMenu>
#include <QPixmap>
#include <functional>
#include <string>

class Camera {
public:
    /// `intoFolder` ends with a slash.
    explicit Camera(std::string intoFolder) : folder(std::move(intoFolder)) {}
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;
    virtual ~Camera() = default;

    /// Writes a picture, with at most 256 colours.
    virtual void Save(const QPixmap& picture, const std::string& name);
    /// Runs something that opens a dialog, lets `act` use it, takes its picture under its title
    /// and closes it.
    virtual void TakeDialog(const std::string& name, const std::function<void()>& open,
                            const std::function<void(QDialog&)>& act = {});
    /// Presses and lets go the right mouse button over a widget, and takes a picture of the
    /// part of it that lies around the menu that opens, with the sub-menus of `path` open.
    virtual void TakeMenu(const std::string& name, QWidget& over, QPoint from, QPoint to,
                          Qt::KeyboardModifiers with = {},
                          const std::vector<std::string>& path = {});

    bool AllSaved() const { return saved; }

private:
    std::string folder;
    bool saved = true;
};

/// Lets all that was asked for be painted.
void Settle();

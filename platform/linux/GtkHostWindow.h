// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HostWindow.h"

#include <memory>

class WebKitView;

/// A GTK window: a bar with a sentence, the host of the page and a button, and the web view below.
class GtkHostWindow final : public HostWindow {
    Q_OBJECT
public:
    struct Texts {
        QString title;
        QString instruction;
        QString button;
    };

    /// Takes the view's widget into the window; `view` must outlive it.
    GtkHostWindow(WebKitView& view, const Texts& texts);
    ~GtkHostWindow() override;

    void show(Activation activation) override;
    void hide() override;
    bool isVisible() const override;
    void setReason(const QString& reason) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

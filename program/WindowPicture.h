// SPDX-License-Identifier: MIT
#pragma once

#include "program/WindowProgram.h"

/// The main window with its finds, drawn on no screen, to be saved as a picture.
class WindowPicture : public QObject {
    Q_OBJECT
public:
    /// What the drawing takes of Qt; to be called before there is a QApplication.
    static void prepare();

    /// Needs a QApplication. `tindra` must outlive it. Throws Err when `file` cannot be written.
    WindowPicture(Tindra& tindra, const QString& file);

    /// Draws what the window shows by now; false, and said so, when it could not be saved.
    QCoro::Task<bool> save();

private:
    Tindra& m_tindra;
    QString m_file;
    WindowProgram m_program;
};

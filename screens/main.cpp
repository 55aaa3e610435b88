// SPDX-License-Identifier: MIT
// tindra-screens FOLDER [FILTER]: draws every state of every screen whose name contains FILTER into
// FOLDER, light and dark. Ends with 1 when there was a warning or nothing to draw.
#include "screens/Screen.h"

#include <QDir>
#include <QGuiApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[]) {
    PageWindow::prepare();
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    QTextStream out(stdout);
    if (arguments.size() < 2 || !QDir().mkpath(arguments[1])) {
        out << "usage: tindra-screens FOLDER [FILTER]\n";
        return 2;
    }
    int drawn = 0;
    bool bad = false;
    for (const Screen& screen : Screen::all()) {
        if (!screen.name.contains(arguments.value(2)))
            continue;
        for (const QSize size : screen.sizes) {
            for (const bool dark : {false, true}) {
                const QString path = u"%1/%2-%3x%4%5.png"_s.arg(arguments[1], screen.name)
                                         .arg(size.width())
                                         .arg(size.height())
                                         .arg(dark ? u"-dark"_s : QString());
                Shot shot(size, dark);
                screen.build(shot);
                bad = !shot.page().grab().save(path) || bad;
                for (const QString& warning : shot.page().takeWarnings()) {
                    out << path << ": " << warning << '\n';
                    bad = true;
                }
                ++drawn;
            }
        }
    }
    out << drawn << " pictures in " << arguments[1] << '\n';
    return bad || drawn == 0 ? 1 : 0;
}

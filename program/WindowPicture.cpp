// SPDX-License-Identifier: MIT
#include "program/WindowPicture.h"

#include "core/Err.h"
#include "program/Output.h"

#include <QPointer>
#include <QSaveFile>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Longer than any of the window's animations.
constexpr auto settling = 1s;

QString failure(const QSaveFile& file) {
    return u"Bildet kan ikke lagres i %1: %2"_s.arg(file.fileName(), file.errorString());
}

} // namespace

void WindowPicture::prepare() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
}

WindowPicture::WindowPicture(Tindra& tindra, const QString& file)
    : m_tindra(tindra), m_file(file), m_program(tindra) {
    // A round takes minutes, so that this is found out first.
    QSaveFile trial(m_file);
    if (!trial.open(QIODevice::WriteOnly))
        throw Err{failure(trial)};
    trial.cancelWriting();
    m_program.window().resize(MainWindow::usualSize);
    // On no screen: the platform draws into memory.
    m_program.window().show();
}

QCoro::Task<bool> WindowPicture::save() {
    const QPointer self(this);
    m_program.openHits();
    co_await m_tindra.clock.sleep(settling);
    if (!self)
        co_return false;
    // Whoever looks at the old picture meanwhile never gets half a new one.
    QSaveFile file(m_file);
    const bool isSaved = file.open(QIODevice::WriteOnly) &&
                         m_program.window().grabWindow().save(&file, "PNG") && file.commit();
    say(isSaved ? u"Bildet av vinduet er lagret i %1."_s.arg(m_file) : failure(file));
    co_return isSaved;
}

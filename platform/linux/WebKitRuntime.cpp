// SPDX-License-Identifier: MIT
#include "platform/linux/WebKitRuntime.h"

#include "platform/Bundle.h"
#include "platform/linux/GLibHandles.h"
#include "platform/linux/WebKitView.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <sys/stat.h>

#include <webkit2/webkit2.h>

struct WebKitRuntime::Private {
    GObjectPtr<WebKitWebContext> context;
    GObjectPtr<WebKitUserContentFilterStore> filters;
    bool sandboxed = false;
};

using namespace Qt::StringLiterals;

namespace {

/// A folder that only its owner may enter, since WebKit itself makes readable files.
QString privateFolder(const QString& path) {
    QDir().mkpath(path);
    ::chmod(QFile::encodeName(path).constData(), S_IRWXU);
    return path;
}

/// WebKit aborts the program when its sandbox cannot be built, so it is tried first.
bool sandboxWorks() {
    if (QStandardPaths::findExecutable(u"xdg-dbus-proxy"_s).isEmpty())
        return false;
    QProcess bwrap;
    bwrap.start(u"bwrap"_s, {u"--ro-bind"_s, u"/"_s, u"/"_s, u"--proc"_s, u"/proc"_s, u"--dev"_s,
                             u"/dev"_s, u"--unshare-pid"_s, u"--unshare-net"_s, u"true"_s});
    return bwrap.waitForFinished(5000) && bwrap.exitStatus() == QProcess::NormalExit &&
           bwrap.exitCode() == 0;
}

void refuseDownload(WebKitWebContext*, WebKitDownload* download, gpointer) {
    webkit_download_cancel(download);
}

} // namespace

std::unique_ptr<WebKitRuntime> WebKitRuntime::start(const Folders& folders, QString& problem) {
    // Without GLib's main loop nothing would ever load, and nothing would be said.
    const auto* dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher || !dispatcher->inherits("QEventDispatcherGlib")) {
        problem = QStringLiteral("Nettleserdelen trenger GLibs hendelsesløkke. Fjern QT_NO_GLIB "
                                 "fra miljøet, eller bruk en Qt som er bygd med GLib.");
        return nullptr;
    }
    // Desktops know by these which launcher a window belongs to, on Wayland and on X11.
    g_set_prgname(TINDRA_BUNDLE_ID);
    gtk_disable_setlocale();
    if (!gtk_init_check(nullptr, nullptr)) {
        problem = QStringLiteral("Fant ingen skjerm. Start Tindra fra et skrivebord, eller med "
                                 "xvfb-run der det ikke finnes noe.");
        return nullptr;
    }
    gdk_set_program_class(TINDRA_WINDOW_CLASS);

    auto d = std::make_unique<Private>();
    const QByteArray data = QFile::encodeName(privateFolder(folders.data() + u"/web"_s));
    const QByteArray cache = QFile::encodeName(privateFolder(folders.cache() + u"/web"_s));
    const GObjectPtr<WebKitWebsiteDataManager> manager(
        webkit_website_data_manager_new("base-data-directory", data.constData(),
                                        "base-cache-directory", cache.constData(), nullptr));
    d->context.reset(webkit_web_context_new_with_website_data_manager(manager.get()));
    webkit_cookie_manager_set_persistent_storage(
        webkit_website_data_manager_get_cookie_manager(manager.get()),
        (data + "/cookies.sqlite").constData(), WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    d->sandboxed = sandboxWorks();
    webkit_web_context_set_sandbox_enabled(d->context.get(), d->sandboxed);
    // Nothing that a page offers is ever written to the user's folders.
    g_signal_connect(d->context.get(), "download-started", G_CALLBACK(refuseDownload), nullptr);
    d->filters.reset(webkit_user_content_filter_store_new((cache + "/filters").constData()));
    return std::unique_ptr<WebKitRuntime>(new WebKitRuntime(std::move(d)));
}

WebKitRuntime::WebKitRuntime(std::unique_ptr<Private> data) : d(std::move(data)) {}

WebKitRuntime::~WebKitRuntime() = default;

std::unique_ptr<WebKitView> WebKitRuntime::makeView(Clock& clock) {
    return std::make_unique<WebKitView>(d->context.get(), d->filters.get(), clock);
}

bool WebKitRuntime::isSandboxed() const {
    return d->sandboxed;
}

QString WebKitRuntime::version() {
    return u"%1.%2.%3"_s.arg(webkit_get_major_version())
        .arg(webkit_get_minor_version())
        .arg(webkit_get_micro_version());
}

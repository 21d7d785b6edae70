#pragma once
// Work that touches no widget (decoding a picture, reducing its colours,
// reading a folder) runs on a pool thread while the event loop goes on
// turning: the window repaints and the progress window moves, and input
// waits until the result is back on this thread. Run it inside a document
// job, so that nothing changes the style meanwhile.

#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>
#include <type_traits>
#include <utility>

namespace ombrevale::workbench {

template <typename Work>
std::invoke_result_t<Work> OffThread(Work work) {
    using Result = std::invoke_result_t<Work>;
    QFutureWatcher<Result> watcher;
    QEventLoop loop;
    bool done = false;
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, [&] {
        done = true;
        loop.quit();
    });
    watcher.setFuture(QtConcurrent::run(std::move(work)));
    if (!done) loop.exec(QEventLoop::ExcludeUserInputEvents);
    // What the work posted back (its progress) lands before its result is used.
    QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
    return watcher.future().takeResult();
}

// Calls what on this thread, from whichever thread the work runs on.
template <typename What>
void OnUiThread(What what) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(what), Qt::QueuedConnection);
}

}  // namespace ombrevale::workbench

#pragma once
// ombrevale-link.exe, the Win32 side of the editor link and of the live
// registry read on Linux: run under Wine in the current prefix and spoken to a
// line at a time. Wine can take seconds to come up and an editor can stop
// answering, so the helper is started and spoken to on a thread of its own and
// nobody else waits for it longer than they chose to: work for it is queued.

#include <functional>
#include <string>
#include <vector>

namespace ombrevale::linkhelper {

// Begins starting the helper unless it is up or starting; returns at once.
// A start that failed is not tried again for a few seconds.
void Start();

// While held, a start that is asked for waits to launch Wine until the hold
// is let go: on a machine of few cores Wine's boot would slow the window's
// first paint. Requests meanwhile fail at once and jobs queue as in a start.
void Hold(bool on);

// Up, with nothing queued ahead of a new request.
bool Ready();

// The Wine prefix a Ready() helper runs in; empty when it is not Ready().
std::string ReadyPrefix();

// Sends one request and collects the answer: one line, or for "windows" every
// line up to "end". False at once when the helper is not up (a start is then
// begun). Off the helper's thread the request is queued behind the work
// already waiting and `waitMs` is the longest wait for its answer: later it
// is still sent, and the answer dropped. On the helper's thread (in a job) it
// is sent at once. A helper that takes 5 s to answer is ended and started again.
bool Request(const std::string& request, std::vector<std::string>& answer, int waitMs = 1000);

// Queues `job` for the helper's own thread, where Request works for it, and
// returns at once; it runs once the helper is up. A job queued under a `slot`
// that already waits replaces that one in its place in the queue. Queued jobs
// are dropped when a start fails.
void WhenUp(int slot, std::function<void()> job);

// Where the helper is looked for: $OMBREVALE_LINK_EXE, else beside this
// program (a build folder), else where it is installed (lib/ombrevale/).
std::string HelperPath();

// Stops the helper and its thread now and forgets a failed start (this also
// happens when the process ends).
void Shutdown();

}  // namespace ombrevale::linkhelper

// The floor of start-up: a bare Qt window of the main window's size that
// prints the wall clock (CLOCK_REALTIME, ns) once its first paint has reached
// the screen, then ends. The caller notes the clock just before the start.
#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstdio>

namespace {

class BareWindow : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        if (painted_) return;
        painted_ = true;
        // The timer runs once the paint has been flushed to the window.
        QTimer::singleShot(0, this, [] {
            const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(
                                std::chrono::system_clock::now().time_since_epoch())
                                .count();
            std::printf("first paint at %lld\n", static_cast<long long>(ns));
            std::fflush(stdout);
            QCoreApplication::exit(0);
        });
    }

private:
    bool painted_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    BareWindow w;
    w.resize(594, 514);
    w.show();
    return app.exec();
}

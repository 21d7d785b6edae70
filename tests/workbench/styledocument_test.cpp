// The style document alone: what each job tells and in which order, an edit
// refused while a job runs, and work off the UI thread while the loop turns.
#include <QUndoStack>
#include <QtTest>
#include <filesystem>
#include <thread>

#include "support/hookrecorder.h"
#include "support/tempdir.h"
#include "workbench/keptview.h"
#include "workbench/offthread.h"
#include "workbench/styledocument.h"

using ombrevale::workbench::StyleDocument;
using Kind = ombrevale::editparts::Kind;

// Every signal of a document as a line: "busy", "idle", "loaded 2", "saved", "part 6 3".
struct Signals : QObject {
    QStringList lines;
    explicit Signals(StyleDocument& doc) {
        connect(&doc, &StyleDocument::BusyChanged, this, [this](bool b) { lines << (b ? "busy" : "idle"); });
        connect(&doc, &StyleDocument::Loaded, this,
                [this](StyleDocument::LoadKind k) { lines << QStringLiteral("loaded %1").arg(int(k)); });
        connect(&doc, &StyleDocument::Saved, this, [this] { lines << "saved"; });
        connect(&doc, &StyleDocument::PartChanged, this,
                [this](Kind k, std::int32_t n) { lines << QStringLiteral("part %1 %2").arg(int(k)).arg(n); });
    }
};

class StyleDocumentTest : public QObject {
    Q_OBJECT
    ombrevale::testsupport::TempDir dir_;

private slots:
    void initTestCase() { qputenv("XDG_STATE_HOME", QByteArray::fromStdString(dir_.File("state"))); }

    // Each job: busy while it runs, then what it brought, with the path already the new one.
    void jobs_data() {
        QTest::addColumn<QString>("job");
        QTest::addColumn<QStringList>("told");
        QTest::addColumn<bool>("sampleAfter");
        QTest::addRow("start") << "start" << QStringList{"busy", "idle", "loaded 0"} << true;
        QTest::addRow("refresh of a missing file")
            << "refresh missing" << QStringList{"busy", "idle", "loaded 1"} << false;
        QTest::addRow("open of a file that is no style") << "open bad" << QStringList{"busy", "idle"} << true;
        QTest::addRow("save") << "save" << QStringList{"busy", "idle", "saved"} << false;
    }
    void jobs() {
        QFETCH(QString, job);
        QFETCH(QStringList, told);
        QFETCH(bool, sampleAfter);
        const ombrevale::testsupport::HookRecorder quiet;
        StyleDocument doc;
        Signals log(doc);
        QString pathAtLoad;
        connect(&doc, &StyleDocument::Loaded, this, [&] { pathAtLoad = QString::fromStdString(doc.Path()); });
        if (job != "start") QVERIFY(doc.Reload(OMBREVALE_SAMPLE, StyleDocument::LoadKind::Start));
        log.lines.clear();
        const std::string other = dir_.File("other.sty");
        LoadReport report;
        if (job == "start") QVERIFY(doc.Reload(OMBREVALE_SAMPLE, StyleDocument::LoadKind::Start));
        if (job == "refresh missing") QVERIFY(!doc.Reload(dir_.File("gone.sty"), StyleDocument::LoadKind::Refresh));
        if (job == "open bad") {
            QFile bad(QString::fromStdString(dir_.File("bad.sty")));
            QVERIFY(bad.open(QIODevice::WriteOnly) && bad.write("GBSX not a style") > 0);
            bad.close();
            QVERIFY(!doc.Open(dir_.File("bad.sty"), report) && report.problem);
        }
        if (job == "save") QVERIFY(doc.Save(other));
        QCOMPARE(log.lines, told);
        QCOMPARE(doc.Path() == std::string(OMBREVALE_SAMPLE), sampleAfter);
        QCOMPARE(doc.HasStyle(), job != "refresh missing");
        QVERIFY(!doc.Busy());
        if (told.back().startsWith("loaded")) QCOMPARE(pathAtLoad.toStdString(), doc.Path());
    }

    // An edit asked for inside a job is refused aloud and changes nothing; after it, it is one step.
    void editWaitsForNoJob() {
        const ombrevale::testsupport::HookRecorder told;
        StyleDocument doc;
        QVERIFY(doc.Reload(OMBREVALE_SAMPLE, StyleDocument::LoadKind::Start));
        Signals log(doc);
        int made = 0;
        const auto change = [&] {
            ++made;
            return doc.Sty().SetBitsTile(3, ByteString(4096, 7));
        };
        {
            const StyleDocument::Job outer(doc);
            const StyleDocument::Job inner(doc);
            QVERIFY(!doc.Record({{Kind::Tile, 3}}, "import into tile 3", change));
        }
        QCOMPARE(made, 0);
        QCOMPARE(doc.UndoStack()->count(), 0);
        QCOMPARE(told.messages().size(), std::size_t(1));
        QVERIFY(told.messages()[0].find("import into tile 3 was not made") != std::string::npos);
        QVERIFY(doc.Record({{Kind::Tile, 3}}, "import into tile 3", change));
        QCOMPARE(log.lines, (QStringList{"busy", "idle", QStringLiteral("part %1 3").arg(int(Kind::Tile))}));
        QCOMPARE(doc.UndoStack()->count(), 1);
    }

    // Save As onto a style another window holds: that window keeps its edits, and the user is told so.
    void saveOntoAStyleHeldElsewhere() {
        const std::string held = dir_.File("held.sty");
        std::filesystem::copy_file(OMBREVALE_SAMPLE, held, std::filesystem::copy_options::overwrite_existing);
        StyleDocument holder, saver;
        QVERIFY(holder.Reload(held, StyleDocument::LoadKind::Start));
        QVERIFY(saver.Reload(OMBREVALE_SAMPLE, StyleDocument::LoadKind::Start));
        QWidget page, save;
        const ombrevale::workbench::KeptEditsView view(saver, &page, &save, &page);
        const ombrevale::testsupport::HookRecorder told;
        QVERIFY(saver.Save(held));
        QCOMPARE(told.messages().size(), std::size_t(1));
        QVERIFY(told.messages()[0].find(held + " is open in another Ombrevale window") != std::string::npos);
    }

    // The loop turns while the work runs, and what the work posted back is in before its result.
    void offThreadKeepsTheLoopTurning() {
        int ticks = 0, posted = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] { ++ticks; });
        timer.start(1);
        const int result = ombrevale::workbench::OffThread([&posted] {
            for (int i = 0; i < 50; ++i) {
                ombrevale::workbench::OnUiThread([&posted] { ++posted; });
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
            return 42;
        });
        QCOMPARE(result, 42);
        QCOMPARE(posted, 50);
        QVERIFY(ticks > 0);
    }
};

QTEST_MAIN(StyleDocumentTest)
#include "styledocument_test.moc"

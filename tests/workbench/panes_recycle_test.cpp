// The Recycling page: sorted rows, the input box answered by the test, the
// 64-row limit, Remove, and the store rebuilt with its closing 255.
#include <QPushButton>
#include <QtTest>

#include "panes_fixture.h"
#include "support/hookrecorder.h"
#include "workbench/panes_dialogs.h"

namespace {

using Replies = QList<QVariant>;  // a QString reply, or an invalid QVariant for Cancel

void SetRows(frmSTY2& w, const QStringList& rows) {
    w.lstRecy->clear();
    for (const auto& r : rows) w.lstRecy->addItem(r);
}

QStringList Rows(const frmSTY2& w) {
    QStringList out;
    for (int i = 0; i < w.lstRecy->count(); ++i) out << w.lstRecy->item(i)->text();
    return out;
}

QList<int> Store() {
    QList<int> out;
    for (auto b : modDeclares::STYRecycle) out << b;
    return out;
}

}  // namespace

class PanesRecycleTest : public QObject {
    Q_OBJECT
    std::unique_ptr<panestest::SampleWindow> s_;
    Replies replies_;
    QStringList prompts_;

private slots:
    void init() {
        s_ = std::make_unique<panestest::SampleWindow>();
        prompts_.clear();
        ombrevale::panesdialogs::Install({[this](QWidget*, const QString& prompt) -> std::optional<QString> {
                                   prompts_ << prompt;
                                   const QVariant v = replies_.takeFirst();
                                   if (!v.isValid()) return std::nullopt;
                                   return v.toString();
                               },
                               {}});
    }
    void cleanup() {
        ombrevale::panesdialogs::Install({});
        s_.reset();
    }

    void startsWithTheFilesList() {
        const auto& recy = modDeclares::STYRecycle;
        QVERIFY(recy.size() >= 2);
        QCOMPARE(s_->w->lstRecy->count(), static_cast<int>(recy.size()) - 1);
        QCOMPARE(s_->w->lstRecy->item(0)->text(), QString::asprintf("%03d", recy[0]));
    }

    void add_data() {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<QList<int>>("store");
        QTest::addColumn<int>("messages");
        QTest::newRow("7 gives 007") << QStringList{} << "7" << QStringList{"007"} << QList<int>{7, 255} << 0;
        QTest::newRow("sorted into place") << QStringList{"010", "200"} << "50" << QStringList{"010", "050", "200"}
                                           << QList<int>{10, 50, 200, 255} << 0;
        QTest::newRow("duplicate stays") << QStringList{"123"} << "123" << QStringList{"123", "123"}
                                         << QList<int>{123, 123, 255} << 0;
        QTest::newRow("255 is an entry") << QStringList{"001"} << "255" << QStringList{"001", "255"}
                                         << QList<int>{1, 255, 255} << 0;
        QTest::newRow("0 is an entry") << QStringList{} << " 0 " << QStringList{"000"} << QList<int>{0, 255} << 0;
        QTest::newRow("256 refused") << QStringList{"010"} << "256" << QStringList{"010"} << QList<int>{-1} << 1;
        QTest::newRow("-1 refused") << QStringList{"010"} << "-1" << QStringList{"010"} << QList<int>{-1} << 1;
        QTest::newRow("text refused") << QStringList{"010"} << "bus" << QStringList{"010"} << QList<int>{-1} << 1;
        QTest::newRow("fraction refused") << QStringList{"010"} << "1.5" << QStringList{"010"} << QList<int>{-1} << 1;
        QTest::newRow("empty refused") << QStringList{"010"} << "" << QStringList{"010"} << QList<int>{-1} << 1;
    }
    void add() {
        QFETCH(QStringList, before);
        QFETCH(QString, reply);
        QFETCH(QStringList, after);
        QFETCH(QList<int>, store);
        QFETCH(int, messages);
        SetRows(*s_->w, before);
        const QList<int> old = Store();
        testsupport::HookRecorder hooks;
        replies_ = {reply};
        s_->w->cmdRecyAdd_Click();
        QCOMPARE(prompts_, QStringList{"Model Number?"});
        QCOMPARE(Rows(*s_->w), after);
        // A refused reply leaves the store as the file had it.
        QCOMPARE(Store(), store == QList<int>{-1} ? old : store);
        QCOMPARE(static_cast<int>(hooks.messages().size()), messages);
    }

    void cancelChangesNothing() {
        SetRows(*s_->w, {"010"});
        const QList<int> old = Store();
        testsupport::HookRecorder hooks;
        replies_ = {QVariant()};
        s_->w->cmdRecyAdd_Click();
        QCOMPARE(Rows(*s_->w), QStringList{"010"});
        QCOMPARE(Store(), old);
        QVERIFY(hooks.messages().empty());
    }

    void limit_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<bool>("added");
        QTest::newRow("63 rows: the 64th goes in") << 63 << true;
        QTest::newRow("64 rows: full") << 64 << false;
        QTest::newRow("70 rows from a file: full") << 70 << false;
    }
    void limit() {
        QFETCH(int, rows);
        QFETCH(bool, added);
        QStringList before;
        for (int i = 0; i < rows; ++i) before << QString::asprintf("%03d", i);
        SetRows(*s_->w, before);
        testsupport::HookRecorder hooks;
        replies_ = {QStringLiteral("99")};
        s_->w->cmdRecyAdd_Click();
        QCOMPARE(s_->w->lstRecy->count(), added ? rows + 1 : rows);
        if (added) {
            QVERIFY(hooks.messages().empty());
            QCOMPARE(static_cast<int>(modDeclares::STYRecycle.size()), 65);
            QCOMPARE(static_cast<int>(modDeclares::STYRecycle.back()), 255);
        } else {
            QVERIFY(prompts_.isEmpty());
            QCOMPARE(static_cast<int>(hooks.messages().size()), 1);
            QVERIFY(QString::fromStdString(hooks.messages()[0]).contains("No more entries allowed."));
        }
    }

    void remove_data() {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<QList<int>>("store");
        QTest::newRow("the only row") << QStringList{"042"} << 0 << QStringList{} << QList<int>{255};
        QTest::newRow("middle row") << QStringList{"001", "002", "003"} << 1 << QStringList{"001", "003"}
                                    << QList<int>{1, 3, 255};
        QTest::newRow("nothing selected")
            << QStringList{"001", "002"} << -1 << QStringList{"001", "002"} << QList<int>{-1};
    }
    void remove() {
        QFETCH(QStringList, before);
        QFETCH(int, selected);
        QFETCH(QStringList, after);
        QFETCH(QList<int>, store);
        SetRows(*s_->w, before);
        const QList<int> old = Store();
        s_->w->lstRecy->setCurrentRow(selected);
        s_->w->cmdRecyRemove_Click();
        QCOMPARE(Rows(*s_->w), after);
        QCOMPARE(Store(), store == QList<int>{-1} ? old : store);
        // Nothing is selected afterwards, so a second press removes nothing.
        QTest::mouseClick(s_->w->cmdRecyRemove, Qt::LeftButton);
        QCOMPARE(Rows(*s_->w), after);
    }
};

QTEST_MAIN(PanesRecycleTest)
#include "panes_recycle_test.moc"

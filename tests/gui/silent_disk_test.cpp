// Tests the window on a disk that does not answer: it repaints, Stop works, and it can be closed.

#include "gui/files_fixture.h"
#include "platform/linux/preview/preview_tools.h"
#include "platform/qt/forms/dialogs.h"
#include "platform/qt/preview/preview_area.h"
#include "platform/qt/preview/preview_texts.h"
#include "support/fuse_mount.h"

namespace hl::test {
namespace {

struct SilentDisk : FilesTest {
    /// Reads the source and lists its files.
    GridView& open() {
        session_.emplace(home.path());
        session_->form().parts().preview.tools = &tools;
        session_->start();
        GridView& list = s().window().grid(GridId::kFiles);
        if (!list.isVisible()) s().click(Command::kShowFiles);
        s().scan(at("mount"));
        session_->sortByName(list);
        return list;
    }
    void SetUp() override {
        if (!mount.missing().empty()) GTEST_SKIP() << mount.missing();
    }
    void TearDown() override {
        session_.reset();
        mount.die();
        EXPECT_TRUE(comes([] { return HelperSlot::taken() == 0; }));
    }
    /// Does `act`, which waits for the disk. Meanwhile the window must react, and `end` must end the wait.
    void expectEnds(const char* what, const std::function<void()>& act, const std::function<void()>& end) {
        QElapsedTimer time;
        QTimer tick;
        int ticks = 0;
        QObject::connect(&tick, &QTimer::timeout, [&] { ++ticks; });
        tick.start(10);
        time.start();
        QTimer::singleShot(1500, &tick, end);
        mount.stopAnswering();
        act();
        EXPECT_TRUE(time.elapsed() > 1400 && time.elapsed() < 4000) << what << " " << time.elapsed();
        EXPECT_GT(ticks, 20) << what;
    }
    std::function<void()> stop() {
        return [this] {
            EXPECT_TRUE(s().enabled(Command::kStop) && !s().enabled(Command::kStart));
            s().click(Command::kStop);
        };
    }
    void answerAgain() const {
        mount.answerAgain();
        EXPECT_TRUE(comes([] { return HelperSlot::taken() == 0; }));
    }

    FuseMount mount{at("src"), at("mount")};
    SilentDisks disks;
    LinuxPreviewTools tools{
        fs::path(HARBORLANTERN_PROGRAM).parent_path().string(), "", at("src"), {}, &disks};
};

TEST_F(SilentDisk, StopEndsMenusNamesListsAndDeleting) {
    GridView& list = open();
    ListSession::clickOn(list, 0);
    expectEnds(
        "menu", [&] { rightClick(list, list.grid().rowAt(1)); }, stop());
    EXPECT_EQ(s().status(),
              "Der Datenträger von '" + at("mount/b.txt") + "' antwortet nicht; es wurde nichts verändert.");
    answerAgain();
    expectEnds(
        "name", [&] { rename(list, "new.txt"); }, stop());
    answerAgain();
    std::string text;
    answer("OK", &text);
    expectEnds(
        "files", [&] { session_->click(Command::kFilesDelete); }, stop());
    EXPECT_TRUE(has(text, "Der Datenträger von '" + at("mount/b.txt") + "' antwortet nicht"));
    answerAgain();
    expectEnds(
        "list", [&] { s().clickRow("sub"); }, stop());
    answerAgain();
    s().clickRow("sub");
    answer("OK");
    expectEnds(
        "folder", [&] { s().execute(Command::kDeleteFolders); }, stop());
    answerAgain();
    EXPECT_NE(s().row("sub"), kNoRow);
    // The disk may still carry out what it has in hand: one file of the second command.
    for (const char* path : {"src/a.txt", "src/c.txt", "src/sub/d.txt", "src/sub/deep/e.txt"})
        EXPECT_TRUE(there(path)) << path;
}

TEST_F(SilentDisk, TheQuestionBeforeADeleteStandsAndIsAnsweredAtOnce) {
    options("AskBeforeDelete=1\r\n");
    ListSession::clickOn(open(), 0);
    mount.stopAnswering();
    // The second time it is known at once that the disk is silent.
    for (int times = 0; times < 2; ++times) {
        QElapsedTimer sinceAnswer;
        s().answers.add([&](QDialog& dialog) {
            auto& box = dynamic_cast<QMessageBox&>(dialog);
            EXPECT_TRUE(QTest::qWaitFor([&] {
                return box.informativeText().endsWith(QStringLiteral("Der Datenträger antwortet nicht."));
            })) << box.informativeText().toStdString();
            sinceAnswer.start();
            pressIn(dialog, "Abbrechen");
        });
        session_->click(Command::kFilesDelete);
        EXPECT_TRUE(sinceAnswer.isValid() && sinceAnswer.elapsed() < 500);
        EXPECT_TRUE(there("src/a.txt"));
    }
}

TEST_F(SilentDisk, ThePreviewWaitsWithoutKeepingTheUserFromAnotherRow) {
    GridView& list = open();
    session_->click(Command::kFilesPreview);
    auto* area = dynamic_cast<PreviewArea*>(s().frame().findChild<QWidget*>(QStringLiteral("preview")));
    const auto shows = [&](const std::string& text) {
        return QTest::qWaitFor([&] {
            auto* view = dynamic_cast<TextView*>(area->viewer());
            return view != nullptr && view->toPlainText().toStdString() == text;
        });
    };
    for (const char* name : {"a", "b", "c"}) writeFile(at("src/") + name + ".txt", name);
    ListSession::clickOn(list, 0);
    EXPECT_TRUE(shows("a"));
    mount.stopAnswering();
    ListSession::clickOn(list, 1);
    EXPECT_TRUE(shows("Der Datenträger antwortet noch nicht ...")) << "and the window is not locked:";
    EXPECT_TRUE(s().enabled(Command::kStart));
    ListSession::clickOn(list, 2);
    mount.answerAgain();
    EXPECT_TRUE(shows("c"));
}

TEST_F(SilentDisk, TheWindowClosesAtOnceAndSavesItsSettings) {
    const std::pair<const char*, std::function<void()>> acts[] = {
        {"deleting", [&] { deleteInList(); }},
        {"reading", [&] { s().scan(at("mount/sub")); }},
        {"listing", [&] { s().clickRow("sub"); }}};
    for (const auto& [what, act] : acts) {
        ListSession::clickOn(open(), 0);
        fs::remove(ini());
        expectEnds(what, act, [&] { s().frame().close(); });
        EXPECT_TRUE(s().form().unloaded() && fs::exists(ini()) && !s().frame().isVisible()) << what;
        session_.reset();
        answerAgain();
    }
}

TEST_F(SilentDisk, AScanSaysWhatItWaitsForAndStopEndsIt) {
    open();
    mount.stopAnswering();
    QElapsedTimer sinceStop;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        if (sinceStop.isValid() || !s().status().starts_with("Warten auf " + at("mount"))) return;
        sinceStop.start();
        stop()();
    });
    tick.start(50);
    s().scan(at("mount/sub"));
    EXPECT_TRUE(sinceStop.isValid() && sinceStop.elapsed() < 1000) << sinceStop.elapsed();
    EXPECT_TRUE(s().enabled(Command::kStart));
}

TEST_F(SilentDisk, WhatIsHandedOverOrDroppedDuringTheWaitIsReadAfterTheStop) {
    open();
    for (const char* name : {"handed", "dropped"}) folder(std::string("src/") + name);
    mount.stopAnswering();
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        if (!s().status().starts_with("Warten auf " + at("mount"))) return;
        tick.stop();
        s().form().handOver("\"" + at("src/handed") + "\"");
        s().form().parts().sourceEvents->dropped({{"", at("src/dropped")}});
        stop()();
    });
    tick.start(50);
    s().scan(at("mount/sub"));
    EXPECT_TRUE(comes([&] {
        Session::settle();
        return s().row("handed") != kNoRow && s().row("dropped") != kNoRow;
    }));
}

TEST_F(SilentDisk, AFolderAndATargetAreAskedForByALineOfText) {
    open();
    const auto typed = [&](const std::string& path) {
        s().answers.add([this, path](QDialog& dialog) {
            EXPECT_EQ(dynamic_cast<QFileDialog*>(&dialog), nullptr);
            auto* line = dialog.findChild<QLineEdit*>();
            const bool tells = has(dialog.findChild<QLabel*>()->text().toStdString(), at("mount"));
            if (line == nullptr || !tells) return ADD_FAILURE(), dialog.reject();
            line->setText(QString::fromStdString(path));
            pressIn(dialog, "OK");
        });
    };
    folder("src/chosen");
    typed(at("src/chosen"));
    expectEnds(
        "folder", [&] { s().execute(Command::kNewSource); }, stop());
    answerAgain();
    s().execute(Command::kStart);
    EXPECT_NE(s().row("chosen"), kNoRow);
    const DialogTexts texts{"", "Ja", "Nein", "OK", "Abbrechen", &s().patience, "silent"};
    const auto target = [&] { return askForSavePath(&s().frame(), texts, "A (*.a)|*.a", "a", at("src")); };
    typed("new");
    expectEnds(
        "target", [&] { EXPECT_EQ(target(), at("src/new.a")); }, stop());
    file("src/old.a", 1);
    for (const char* button : {"Nein", "Ja"}) {
        typed("old.a");
        std::string question;
        answer(button, &question);
        if (*button == 'N') typed("other.b");
        EXPECT_EQ(target(), at(*button == 'N' ? "src/other.b" : "src/old.a"));
        EXPECT_TRUE(has(question, "old.a")) << question;
    }
}

TEST_F(SilentDisk, AFileDialogThatShowsADiskThatFallsSilentComesBack) {
    open();
    s().answers.add([&](QDialog& dialog) {
        auto& files = dynamic_cast<QFileDialog&>(dialog);
        files.setDirectory(QString::fromStdString(at("src")));
        mount.stopAnswering();
        // Its thread hangs now.
        files.setDirectory(QString::fromStdString(fs::path(at("mount")).parent_path()));
        QTimer::singleShot(500, &dialog, &QDialog::reject);
        QTimer::singleShot(2000, &s().frame(), stop());
    });
    QElapsedTimer time;
    time.start();
    s().execute(Command::kNewSource);
    EXPECT_LT(time.elapsed(), 5000);
    answerAgain();
}

/// A sound with 1.5 MB a second.
void makeSound(const std::string& path, std::uint32_t bytes) {
    const auto number = [](std::uint32_t value) {
        return std::string(reinterpret_cast<const char*>(&value), sizeof value);
    };
    writeFile(path, "RIFF" + number(bytes + 36) + "WAVEfmt " + number(16) + std::string("\1\0\2\0", 4) +
                        number(192'000) + number(1'536'000) + std::string("\x8\0\x20\0", 4) + "data" +
                        number(bytes));
    fs::resize_file(path, bytes + 44);
}

TEST_F(SilentDisk, ALargeSoundPlaysFromThereAndSaysSoWhenTheDiskFallsSilent) {
    if (!fs::exists(fs::path(HARBORLANTERN_PROGRAM).parent_path() / "harborlantern-media.so"))
        GTEST_SKIP() << "built without QtMultimedia";
    open();
    makeSound(at("src/large.wav"), 90'000'000);
    makeSound(at("src/small.wav"), 3'072'000);
    session_->click(Command::kFilesPreview);
    auto* area = dynamic_cast<PreviewArea*>(s().frame().findChild<QWidget*>(QStringLiteral("preview")));
    const auto comesWithin = [](int milliseconds, const std::function<bool()>& what) {
        return QTest::qWaitFor(what, milliseconds);
    };
    const auto position = [&] { return area->findChild<QAbstractSlider*>(QStringLiteral("position")); };
    const auto lasts = [&](int milliseconds) {
        return comesWithin(15'000, [&] {
            return position() != nullptr && std::abs(position()->maximum() - milliseconds) < 100;
        });
    };
    const auto notice = [&] {
        return area->findChild<QWidget*>(QStringLiteral("film"))->accessibleDescription().toStdString();
    };
    const auto says = [&](const char* what) {
        auto* view = dynamic_cast<TextView*>(area->viewer());
        return view != nullptr && has(view->toPlainText().toStdString(), what);
    };
    EXPECT_TRUE(area->showFile(PreviewViewer::kMedia, at("src/small.wav")));
    if (!lasts(2000)) GTEST_SKIP() << "no player";
    const char* const kWaits = "Der Datenträger antwortet noch nicht ...";
    const char* const kSilent = "Der Datenträger antwortet nicht. Die Wiedergabe wurde beendet.";
    enum End { kNothing, kStop, kOther, kClose };  // What the user does meanwhile.
    for (const int end : {kNothing, kStop, kOther, kClose}) {
        EXPECT_TRUE(area->showFile(PreviewViewer::kMedia, at("mount/large.wav")));
        EXPECT_TRUE(lasts(58'593));
        position()->setValue(20'000 + end * 5000);  // A place that was not read before.
        EXPECT_TRUE(comesWithin(5000, [&] { return position()->value() > 20'200 + end * 5000; })) << end;
        mount.stopAnswering();
        if (end != kNothing) position()->setValue(5000 + end * 2000);
        EXPECT_TRUE(comesWithin(15'000, [&] { return notice() == kWaits; })) << end;
        QElapsedTimer time;
        time.start();
        if (end == kNothing) {
            EXPECT_TRUE(comesWithin(15'000, [&] { return says(kSilent); }));
            time.restart();
        }
        if (end == kStop) area->findChild<QAbstractButton*>(QStringLiteral("stop"))->click();
        EXPECT_EQ(says(kSilent), end == kNothing || end == kStop);
        if (end == kClose) {
            session_.reset();
        } else {
            EXPECT_TRUE(area->showFile(PreviewViewer::kMedia, at("src/small.wav")));
        }
        EXPECT_LT(time.elapsed(), end == kClose ? 3000 : 500) << end;
        EXPECT_TRUE(end == kClose || lasts(2000)) << "while the disk is silent";
        answerAgain();
    }
}

TEST_F(SilentDisk, AWindowWhoseOwnFolderIsThereGoesOnAndCloses) {
    session_.emplace(at("mount/sub"));
    session_->start();
    mount.stopAnswering();
    QElapsedTimer time;
    time.start();
    s().scan(at("src"));
    EXPECT_NE(s().row("src"), kNoRow);
    s().frame().close();
    EXPECT_LT(time.elapsed(), 6000);
    EXPECT_TRUE(s().form().unloaded());
    session_.reset();
    answerAgain();
}

TEST_F(SilentDisk, TheStartKeepsASavedSourceThatCannotBeAskedFor) {
    setSettings("[ComboOrdner]\r\n0O=" + at("mount/sub") + "\r\n");
    mount.stopAnswering();
    session_.emplace(home.path());
    QElapsedTimer time;
    time.start();
    session_->start();
    auto* sources = s().frame().findChild<QComboBox*>(QStringLiteral("cboOrdner"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return s().enabled(Command::kStart); }));
    EXPECT_LT(time.elapsed(), 4000);
    EXPECT_GE(sources->findText(QString::fromStdString(at("mount/sub"))), 0);
}

}  // namespace
}  // namespace hl::test

// Tests with real desktop entries, programs that record how they were started, and a session bus of the test.
#include "platform/desktop/desktop_programs.h"

#include <sys/socket.h>
#include <sys/un.h>

#include "base/path.h"
#include "platform/qt/window/clipboard.h"
#include "support/patience.h"

namespace hl::test {
namespace {

using Words = std::vector<std::string>;
using Variables = std::map<std::string, std::string>;

/// A user whose folders are all their own; only the file types are inherited.
struct DesktopUser : testing::Test {
    DesktopUser() {
        makeTree(folder_.path(),
                 {"data/applications/", "system/", "config/", "home/", "run/", "bin/", "files/"});
        must(::chmod(at("run").c_str(), 0700));
        fs::create_directory_symlink("/usr/share/mime", at("system/mime"));
        // It is complete before it gets its name, because whoever waits for it must not see a part of it.
        writeScript(at("bin/recorder"),
                    "out=\"$OUT/run/started\"\n{ printf '%s\\0' \"$@\"; } > \"$out.$$.new\"\n"
                    "env > \"$OUT/run/env\"\npwd > \"$OUT/run/cwd\"\nmv \"$out.$$.new\" \"$out.$$\"\n");
        writeScript(at("bin/dbus-launch"), "touch \"$OUT/run/launched\"\n");
    }
    std::string at(const std::string& name) const { return folder_.path() + "/" + name; }

    std::string file(const std::string& name, std::string_view content = "text\n", mode_t mode = 0644) const {
        writeFile(at("files/" + name), content);
        must(::chmod(at("files/" + name).c_str(), mode));
        return at("files/" + name);
    }

    std::string link(const std::string& name, const std::string& target) const {
        fs::create_symlink(target, at("files/" + name));
        return at("files/" + name);
    }

    /// Installs a program that records; `types` is for example "text/plain;", `parameters` "%f".
    void installs(const std::string& id, const std::string& types, const std::string& parameters,
                  const std::string& more = "") {
        writeFile(at("data/applications/" + id + ".desktop"),
                  "[Desktop Entry]\nType=Application\nName=The " + id + "\nExec=" + at("bin/recorder") + " " +
                      parameters + "\nMimeType=" + types + "\n" + more + "\n");
        for (std::size_t from = 0, to = 0; (to = types.find(';', from)) != types.npos; from = to + 1)
            cache_[types.substr(from, to - from)] += id + ".desktop;";
        std::string cache = "[MIME Cache]\n";
        for (const auto& [type, ids] : cache_) cache.append(type).append("=").append(ids).append("\n");
        writeFile(at("data/applications/mimeinfo.cache"), cache);
    }
    void chooses(const std::string& id, const std::string& type) {
        choices_ += type + "=" + id + ".desktop\n";
        writeFile(at("config/mimeapps.list"), "[Default Applications]\n" + choices_);
    }

    /// Returns what the desktop answers in a process of this user. `runner` starts it, for example
    /// {"dbus-run-session", "--"}.
    std::string asks(const Words& words, Words runner = {}) const {
        runner.insert(runner.end(), {fs::read_symlink("/proc/self/exe").string(), "--desktop"});
        runner.insert(runner.end(), words.begin(), words.end());
        const pid_t child = must(::fork());
        if (child == 0) startInChild(runner);
        int status = 0;
        must(::waitpid(child, &status, 0));
        EXPECT_EQ(status, 0);
        return contentOf(at("run/answer"));
    }

    /// Expects that one program was started since the last call, with this argument alone.
    void expectStarted(const std::string& argument) const {
        EXPECT_EQ(started(1), std::multiset<Words>({{argument}}));
    }
    /// Returns the arguments of each program that was started since the last call, in no order.
    std::multiset<Words> started(std::size_t expected) const {
        std::multiset<Words> all;
        comes([&] {
            for (const auto& each : fs::directory_iterator(at("run")))
                if (each.path().stem() == "started") {
                    std::ifstream in(each.path());
                    Words words;
                    for (std::string word; std::getline(in, word, '\0');) words.push_back(word);
                    all.insert(words);
                    fs::remove(each.path());
                }
            return all.size() >= expected;
        });
        return all;
    }

    /// Set for each question; the value "-" removes the variable.
    Variables environment;

  private:
    [[noreturn]] void startInChild(const Words& words) const {
        const int out = must(::open(at("run/answer").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644));
        ::dup2(out, STDOUT_FILENO);
        Variables all = environment;
        for (const auto& [name, folder] :
             {std::pair("HOME", "home"), std::pair("XDG_DATA_HOME", "data"),
              std::pair("XDG_DATA_DIRS", "system"), std::pair("XDG_CONFIG_HOME", "config"),
              std::pair("XDG_CONFIG_DIRS", "none"), std::pair("XDG_RUNTIME_DIR", "run"),
              std::pair("HARBORLANTERN_HOME", "home"), std::pair("OUT", ".")})
            all.emplace(name, at(folder));
        for (const char* none : {"DBUS_SESSION_BUS_ADDRESS", "XDG_CACHE_HOME"}) all.emplace(none, "-");
        all.insert({{"DISPLAY", ":4711"}, {"LC_ALL", "C"}, {"PATH", at("bin") + ":/usr/bin:/bin"}});
        for (const auto& [name, value] : all)
            value == "-" ? ::unsetenv(name.c_str()) : ::setenv(name.c_str(), value.c_str(), 1);
        ::alarm(60);  // If it hangs, its test fails.
        std::vector<char*> argv;
        for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
        argv.push_back(nullptr);
        ::execvp(argv[0], argv.data());
        ::_exit(127);
    }

    TempDir folder_;
    Variables cache_;
    std::string choices_;
};

TEST_F(DesktopUser, EachNameArrivesUnchangedWhateverItHolds) {
    const std::string names[] = {"plain.txt", "a b.txt",     "it's \"quoted\"", "$(touch x)", "`touch x`",
                                 "%f %U %%",  "line\nbreak", "\xff\xfe.txt",    "-n",         "back\\slash",
                                 ";#?&|<>*",  "~",           "\xc3\xa4\t"};
    // A file on the disk is handed over by its path, even to a program that takes URLs.
    const std::pair<std::string, bool> cases[] = {
        {"%F", true}, {"%f", false}, {"%U", true}, {"%u", false}, {"", false}};
    Words paths, question = {"with", "program.desktop"};
    std::multiset<Words> each;
    for (const std::string& name : names) each.insert({paths.emplace_back(file(name))});
    question.insert(question.end(), paths.begin(), paths.end());
    for (const auto& [parameters, together] : cases) {
        installs("program", "text/plain;", parameters);
        EXPECT_EQ(asks(question), "true") << parameters;
        EXPECT_EQ(started(together ? 1 : paths.size()), together ? std::multiset<Words>({paths}) : each)
            << parameters;
    }
    EXPECT_FALSE(fs::exists("x"));
}

TEST_F(DesktopUser, OpeningTakesTheProgramThatIsSetForTheType) {
    installs("first", "text/plain;", "first %f");
    installs("chosen", "text/plain;inode/directory;", "chosen %f");
    chooses("chosen", "text/plain");
    must(::mkfifo(at("files/pipe").c_str(), 0600));
    const std::string cases[][2] = {
        {file("\xff"), "started"},    {link("link", file("a.txt")), "started"},
        {at("files"), "started"},     {file("script.sh", "#!/bin/sh\n"), "started"},
        {file("x.png", "?"), "none"}, {at("files/pipe"), "none"},
        {at("files/gone"), "failed"}, {link("dangling", at("files/gone")), "failed"}};
    for (const auto& [path, answer] : cases) {
        EXPECT_EQ(asks({"open", path}), answer) << path;
        std::multiset<Words> starts;
        if (answer == "started") starts.insert({"chosen", path});
        EXPECT_EQ(started(starts.size()), starts) << path;
    }
}

TEST_F(DesktopUser, TheDesktopsOwnChoiceComesFirstAndNoneTwice) {
    installs("a", "text/plain;text/html;", "%f");
    installs("b", "text/plain;image/png;", "%f");
    installs("c", "text/plain;text/html;image/png;", "%f", "Name[de]=Das C");
    installs("gone", "text/plain;", "%f", "TryExec=/nowhere/at/all");
    installs("secret", "text/plain;", "%f", "NoDisplay=true");
    installs("aimless", "", "");
    chooses("c", "text/plain");
    const std::string text = file("x.txt"), page = file("x.html"), picture = file("x.png"),
                      sound = file("x.ogg");
    const std::pair<Words, std::string> cases[] = {
        {{"programs", "9", text}, "c.desktop=The c a.desktop=The a b.desktop=The b"},
        {{"programs", "2", text}, "c.desktop=The c a.desktop=The a"},
        {{"programs", "9", page, text}, "a.desktop=The a c.desktop=The c b.desktop=The b"},
        {{"programs", "9", picture, text}, "b.desktop=The b c.desktop=The c"},
        {{"programs", "9", page, picture}, "c.desktop=The c b.desktop=The b"},
        {{"programs", "9", text, sound}, ""},
        {{"all"}, "a.desktop=The a b.desktop=The b c.desktop=The c"}};
    for (const auto& [question, answer] : cases)
        EXPECT_EQ(asks(question), answer) << testing::PrintToString(question);
    environment = {{"LANGUAGE", "de"}, {"LC_ALL", "C.UTF-8"}};
    EXPECT_EQ(asks({"all"}), "c.desktop=Das C a.desktop=The a b.desktop=The b");
    for (const std::string id : {"gone.desktop", "never.desktop", "", "../applications/a.desktop"})
        EXPECT_EQ(asks({"with", id, text}), "false") << id;
}

TEST_F(DesktopUser, WhatIsStartedGetsTheUsersOwnEnvironment) {
    installs("a", "text/plain;", "%f");
    const std::string cases[][2] = {{"-", "-"}, {at("cache"), "unix:path=/nowhere"}};
    for (const auto& [cache, bus] : cases) {
        environment = {{"XDG_CACHE_HOME", cache}, {"DBUS_SESSION_BUS_ADDRESS", bus}};
        EXPECT_EQ(asks({"with", "a.desktop", file("x")}), "true");
        started(1);
        const std::string lines = "\n" + contentOf(at("run/env"));
        for (const auto& [name, value] : environment) {
            const std::string wanted = name + (value == "-" ? "=" : "=" + value + "\n");
            EXPECT_EQ(lines.find("\n" + wanted) != lines.npos, value != "-") << name;
        }
    }
    EXPECT_FALSE(fs::exists(at("run/launched")));
}

TEST_F(DesktopUser, ATerminalStartsInItsFolderAndTheDesktopsChoiceComesFirst) {
    const std::string odd = at("files/$(touch x) 'a\"b");
    makeFolder(odd);
    EXPECT_EQ(asks({"terminal", at("files/gone")}), "false");
    for (const std::string name : {"x-terminal-emulator", "own-terminal", "xdg-terminal-exec"}) {
        writeScript(at("bin/" + name), "exec recorder " + name + "\n");
        environment = {{"TERMINAL", name == "x-terminal-emulator" ? "missing" : "own-terminal"}};
        EXPECT_EQ(asks({"terminal", odd}), "true");
        expectStarted(name);
        EXPECT_EQ(contentOf(at("run/cwd")), odd + "\n");
    }
    EXPECT_EQ(asks({"terminal", at("files/gone")}), "false");
    EXPECT_EQ(started(0).size(), 0U);
}

TEST_F(DesktopUser, FactsAreThoseOfTheSystem) {
    DesktopPrograms desktop;
    const std::string path = file("facts", std::string(5000, 'x'), 0640);
    must(::link(path.c_str(), at("files/other").c_str()));
    const auto facts = desktop.facts(path);
    struct stat real;
    must(::stat(path.c_str(), &real));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->size, 5000U);
    EXPECT_EQ(facts->space, static_cast<std::uint64_t>(real.st_blocks) * 512);
    EXPECT_EQ(facts->mode, real.st_mode);
    EXPECT_EQ(facts->links, 2U);
    EXPECT_EQ(facts->modified, real.st_mtime);
    EXPECT_FALSE(facts->owner.empty() || facts->group.empty());
    EXPECT_EQ(desktop.facts(link("a link", path))->mode & S_IFMT, static_cast<mode_t>(S_IFLNK));
    EXPECT_FALSE(desktop.facts(at("files/gone")));
}

TEST_F(DesktopUser, OnlyWhatCanRunRunsWhenOpened) {
    const std::string program = contentOf("/bin/true");
    must(::mkfifo(at("files/pipe").c_str(), 0777));
    makeFolder(at("files/folder.desktop"));
    const std::pair<std::string, bool> cases[] = {
        {file("program", program, 0755), true},
        {file("program.data", program, 0644), false},
        {link("toProgram", at("files/program")), true},
        {file("script", "#!/bin/sh\n", 0755), true},
        {file("script2", "#!/bin/sh\n", 0644), false},
        {file("script.txt", "#!/bin/sh\n", 0755), true},
        {file("x.jar", "PK\3\4", 0755), true},
        {file("x.jar2.jar", "PK\3\4", 0644), false},
        {file("x.exe", "MZ", 0644), true},
        {file("entry.desktop", "", 0644), true},
        {file("entry", "[Desktop Entry]\nType=Application\n", 0644), false},
        {link("text", file("text.txt", "text\n", 0755)), false},
        {file("page.html", "<html>", 0755), false},
        {file("empty", "", 0755), false},
        {at("files/folder.desktop"), false},
        {at("files/pipe"), false},
        {link("dangling.desktop", at("files/gone")), false},
        {at("files/gone.desktop"), false},
        {"", false}};
    DesktopPrograms desktop;
    for (const auto& [path, runs] : cases) EXPECT_EQ(desktop.runsWhenOpened(path), runs) << path;
}

TEST_F(DesktopUser, WithNoBusTheFolderIsOpenedAtOnceAndNoBusIsStarted) {
    const Words show = {"show", file("\xff a"), file("b")};
    EXPECT_EQ(asks(show), "false");
    installs("folders", "inode/directory;", "%f");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(asks(show), "true");
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
    expectStarted(at("files"));
    EXPECT_EQ(asks({"show", "/usr"}), "true");
    expectStarted("/");
    EXPECT_EQ(asks({"properties", at("files/b")}), "false");
    EXPECT_EQ(asks({"show"}), "false");
    EXPECT_FALSE(fs::exists(at("run/launched")));
}

TEST_F(DesktopUser, TheFileManagerIsAskedForTheFilesAndMayTakeItsTime) {
    if (::access("/usr/bin/dbus-run-session", X_OK) != 0) GTEST_SKIP() << "There is no dbus-run-session.";
    // The bus stays until the file manager, which the bus starts, was asked.
    const std::string stay =
        "\"$@\"; for i in $(seq 3000); do [ -s \"$OUT/run/asked\" ] && exit; sleep 0.01; done";
    const Words session = {"dbus-run-session", "--", "sh", "-c", stay, "sh"};
    const std::string cases[][3] = {{"show", "ShowItems", "5000"}, {"properties", "ShowItemProperties", "0"}};
    installs("folders", "inode/directory;", "%f");
    const std::string a = file("\xff a"), b = file("b\nc");
    EXPECT_EQ(asks({"show", a}, {"dbus-run-session", "--"}), "true") << "with no file manager";
    expectStarted(at("files"));
    for (const auto& [verb, method, answersAfterMs] : cases) {
        fs::create_directories(at("data/dbus-1/services"));
        writeFile(at("data/dbus-1/services/manager.service"),
                  "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=" +
                      fs::read_symlink("/proc/self/exe").string() + " --file-manager " + at("run/asked") +
                      " " + answersAfterMs + "\n");
        fs::remove(at("run/asked"));
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(asks({verb, a, b}, session), "true");
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
        EXPECT_EQ(contentOf(at("run/asked")), method + "\n" + fileUrl(a) + "\n" + fileUrl(b) + "\n");
        EXPECT_TRUE(started(0).empty()) << "the folder was opened as well";
    }
}

TEST_F(DesktopUser, TheTaskBarShowsARunUntilItsEnd) {
    if (::access("/usr/bin/dbus-run-session", X_OK) != 0) GTEST_SKIP() << "There is no dbus-run-session.";
    const std::string program = "('application://harborlantern.desktop', {'progress': <";
    EXPECT_EQ(asks({"progress", "25", "50", "-"}, {"dbus-run-session", "--"}),
              program + "0.25>, 'progress-visible': <true>})\n" + program +
                  "0.5>, 'progress-visible': <true>})\n" + program + "0.0>, 'progress-visible': <false>})\n");
    EXPECT_EQ(asks({"unheard", "7", "-"}), "") << "with no bus";
    EXPECT_FALSE(fs::exists(at("run/launched")));
}

TEST_F(DesktopUser, NobodyWaitsForABusThatSaysNothing) {
    installs("a", "text/plain;inode/directory;", "%f");
    const int bus = must(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    at("run/silent").copy(address.sun_path, sizeof address.sun_path - 1);
    must(::bind(bus, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    must(::listen(bus, 8));
    environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + at("run/silent")}};
    const std::string path = file("x.txt");
    const std::pair<Words, std::string> cases[] = {
        {{"open", path}, "failed"},  {{"with", "a.desktop", path}, "false"},
        {{"show", path}, "false"},   {{"properties", path}, "false"},
        {{"unheard", "7", "-"}, ""}, {{"programs", "9", path}, "a.desktop=The a"}};
    for (const auto& [question, answer] : cases) {
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(asks(question), answer) << question[0];
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4)) << question[0];
    }
    ::close(bus);
}

TEST(DesktopPrograms, CopiedFilesCanBePastedIntoAFileManager) {
    WindowClipboard("").copyFiles({"/a b/\xff%\n'~", "/ä"});
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->data(QStringLiteral("text/uri-list")).toStdString(),
              "file:///a%20b/%FF%25%0A%27~\r\nfile:///%C3%A4\r\n");
    EXPECT_EQ(data->data(QStringLiteral("x-special/gnome-copied-files")).toStdString(),
              "copy\nfile:///a%20b/%FF%25%0A%27~\nfile:///%C3%A4");
    EXPECT_EQ(data->text().toStdString(), "/a b/\xef\xbf\xbd%\n'~\n/ä");
}

}  // namespace
}  // namespace hl::test

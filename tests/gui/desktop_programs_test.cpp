// Real desktop entries, programs that write down how they were started, and a session's bus of the test's
// own.
#include "platform/qt/desktop_programs.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>

#include "base/path.h"
#include "support/patience.h"
#include "support/temp_dir.h"
#include "support/trees.h"
#include "support/whole_files.h"

namespace hl {
namespace {

namespace fs = std::filesystem;
using test::TempDir;
using Words = std::vector<std::string>;

/// A user with folders of their own, of which nothing is inherited but the types of files.
class User {
  public:
    User() {
        for (const char* each :
             {"data", "data/applications", "system", "config", "home", "run", "bin", "files"})
            test::makeFolder(at(each));
        test::must(::chmod(at("run").c_str(), 0700));
        fs::create_directory_symlink("/usr/share/mime", at("system/mime"));
        // Written whole before it has its name: who waits for it must not see a part.
        test::writeScript(at("bin/recorder"),
                          "out=\"$OUT/run/started\"\n{ printf '%s\\0' \"$@\"; } > \"$out.$$.new\"\n"
                          "env > \"$OUT/run/env\"\nmv \"$out.$$.new\" \"$out.$$\"\n");
        test::writeScript(at("bin/dbus-launch"), "touch \"$OUT/run/launched\"\n");
    }
    std::string at(const std::string& name) const { return folder_.path() + "/" + name; }

    std::string file(const std::string& name, std::string_view content = "text\n", mode_t mode = 0644) const {
        test::writeFile(at("files/" + name), content);
        test::must(::chmod(at("files/" + name).c_str(), mode));
        return at("files/" + name);
    }

    /// A program that records: "text/plain;" are its types, "%f" its parameters.
    void installs(const std::string& id, const std::string& types, const std::string& parameters,
                  const std::string& more = "") {
        test::writeFile(at("data/applications/" + id + ".desktop"),
                        "[Desktop Entry]\nType=Application\nName=The " + id + "\nExec=" + at("bin/recorder") +
                            " " + parameters + "\nMimeType=" + types + "\n" + more + "\n");
        for (std::size_t from = 0, to = 0; (to = types.find(';', from)) != types.npos; from = to + 1)
            cache_[types.substr(from, to - from)] += id + ".desktop;";
        std::string cache = "[MIME Cache]\n";
        for (const auto& [type, ids] : cache_) cache.append(type).append("=").append(ids).append("\n");
        test::writeFile(at("data/applications/mimeinfo.cache"), cache);
    }
    void chooses(const std::string& id, const std::string& type) {
        choices_ += type + "=" + id + ".desktop\n";
        test::writeFile(at("config/mimeapps.list"), "[Default Applications]\n" + choices_);
    }

    /// What the desktop answers in a process of this user's. `runner` starts it: {"dbus-run-session", "--"}.
    std::string asks(Words words, const Words& runner = {}) const {
        Words all = runner;
        all.insert(all.end(), {fs::read_symlink("/proc/self/exe").string(), "--desktop"});
        all.insert(all.end(), words.begin(), words.end());
        const pid_t child = test::must(::fork());
        if (child == 0) startInChild(all);
        int status = 0;
        test::must(::waitpid(child, &status, 0));
        EXPECT_EQ(status, 0);
        return test::contentOf(at("run/answer"));
    }

    /// Whether one program was started since then, with this argument alone.
    void expectStarted(const std::string& argument) const {
        EXPECT_EQ(started(1), std::multiset<Words>({{argument}}));
    }
    /// The arguments of each program that was started since the last call, in no order.
    std::multiset<Words> started(std::size_t expected) const {
        std::set<std::string> files;
        test::comes([&] {
            files.clear();
            for (const auto& each : fs::directory_iterator(at("run")))
                if (each.path().stem() == "started") files.insert(each.path().string());
            return files.size() >= expected;
        });
        std::multiset<Words> all;
        for (const std::string& name : files) {
            all.insert(split(test::contentOf(name), '\0'));
            fs::remove(name);
        }
        return all;
    }

    static Words split(const std::string& text, char end) {
        Words words;
        for (std::size_t from = 0, to = 0; (to = text.find(end, from)) != text.npos; from = to + 1)
            words.push_back(text.substr(from, to - from));
        return words;
    }

    /// Set for what is asked; the value "-" removes the variable.
    std::map<std::string, std::string> environment;

  private:
    [[noreturn]] void startInChild(const Words& words) const {
        const int out = test::must(::open(at("run/answer").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644));
        ::dup2(out, STDOUT_FILENO);
        std::map<std::string, std::string> all = {{"HOME", at("home")},
                                                  {"XDG_DATA_HOME", at("data")},
                                                  {"XDG_DATA_DIRS", at("system")},
                                                  {"XDG_CONFIG_HOME", at("config")},
                                                  {"XDG_CONFIG_DIRS", at("none")},
                                                  {"XDG_RUNTIME_DIR", at("run")},
                                                  {"HARBORLANTERN_HOME", at("home")},
                                                  {"OUT", folder_.path()},
                                                  {"DBUS_SESSION_BUS_ADDRESS", "-"},
                                                  {"DISPLAY", ":4711"},
                                                  {"LC_ALL", "C"},
                                                  {"XDG_CACHE_HOME", "-"},
                                                  {"PATH", at("bin") + ":/usr/bin:/bin"}};
        for (const auto& [name, value] : environment) all[name] = value;
        for (const auto& [name, value] : all)
            value == "-" ? ::unsetenv(name.c_str()) : ::setenv(name.c_str(), value.c_str(), 1);
        ::alarm(60);  // One that hangs fails its test.
        std::vector<char*> argv;
        for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
        argv.push_back(nullptr);
        ::execvp(argv[0], argv.data());
        ::_exit(127);
    }

    TempDir folder_;
    std::map<std::string, std::string> cache_;
    std::string choices_;
};

const Words kNames = {"plain.txt", "a b.txt",     "it's \"quoted\"", "$(touch x)", "`touch x`",
                      "%f %U %%",  "line\nbreak", "\xff\xfe.txt",    "-n",         "back\\slash",
                      ";#?&|<>*",  "~",           "\xc3\xa4\t"};

TEST(DesktopPrograms, EachNameArrivesUnchangedWhateverItHolds) {
    User user;
    // A file on the disk is handed over by its path even to a program that takes URLs.
    const std::pair<std::string, bool> cases[] = {
        {"%F", true}, {"%f", false}, {"%U", true}, {"%u", false}, {"", false}};
    Words paths;
    std::multiset<Words> each;
    for (const std::string& name : kNames) each.insert({paths.emplace_back(user.file(name))});
    for (const auto& [parameters, together] : cases) {
        user.installs("program", "text/plain;", parameters);
        Words question = {"with", "program.desktop"};
        question.insert(question.end(), paths.begin(), paths.end());
        EXPECT_EQ(user.asks(question), "true") << parameters;
        EXPECT_EQ(user.started(together ? 1 : paths.size()), together ? std::multiset<Words>({paths}) : each)
            << parameters;
    }
    EXPECT_FALSE(fs::exists("x"));
}

TEST(DesktopPrograms, OpeningTakesTheProgramThatIsSetForTheType) {
    User user;
    user.installs("first", "text/plain;", "first %f");
    user.installs("chosen", "text/plain;inode/directory;", "chosen %f");
    user.chooses("chosen", "text/plain");
    test::must(::mkfifo(user.at("files/pipe").c_str(), 0600));
    fs::create_symlink(user.at("files/gone"), user.at("files/dangling"));
    fs::create_symlink(user.file("a.txt"), user.at("files/link"));
    const std::string cases[][2] = {
        {user.file("\xff"), "started"},    {user.at("files/link"), "started"},
        {user.at("files"), "started"},     {user.file("script.sh", "#!/bin/sh\n"), "started"},
        {user.file("x.png", "?"), "none"}, {user.at("files/pipe"), "none"},
        {user.at("files/gone"), "failed"}, {user.at("files/dangling"), "failed"}};
    for (const auto& [path, answer] : cases) {
        EXPECT_EQ(user.asks({"open", path}), answer) << path;
        if (answer == "started") {
            EXPECT_EQ(user.started(1), std::multiset<Words>({{"chosen", path}}));
        }
    }
}

TEST(DesktopPrograms, TheDesktopsOwnChoiceComesFirstAndNoneTwice) {
    User user;
    user.installs("a", "text/plain;text/html;", "%f");
    user.installs("b", "text/plain;image/png;", "%f");
    user.installs("c", "text/plain;text/html;image/png;", "%f", "Name[de]=Das C");
    user.installs("gone", "text/plain;", "%f", "TryExec=/nowhere/at/all");
    user.installs("secret", "text/plain;", "%f", "NoDisplay=true");
    user.installs("aimless", "", "");
    user.chooses("c", "text/plain");
    const std::string text = user.file("x.txt"), page = user.file("x.html"), picture = user.file("x.png"),
                      sound = user.file("x.ogg");
    const std::pair<Words, std::string> cases[] = {
        {{"programs", "9", text}, "c.desktop=The c a.desktop=The a b.desktop=The b"},
        {{"programs", "2", text}, "c.desktop=The c a.desktop=The a"},
        {{"programs", "9", page, text}, "a.desktop=The a c.desktop=The c b.desktop=The b"},
        {{"programs", "9", picture, text}, "b.desktop=The b c.desktop=The c"},
        {{"programs", "9", page, picture}, "c.desktop=The c b.desktop=The b"},
        {{"programs", "9", text, sound}, ""},
        {{"all"}, "a.desktop=The a b.desktop=The b c.desktop=The c"}};
    for (const auto& [question, answer] : cases)
        EXPECT_EQ(user.asks(question), answer) << testing::PrintToString(question);
    user.environment = {{"LANGUAGE", "de"}, {"LC_ALL", "C.UTF-8"}};
    EXPECT_EQ(user.asks({"all"}), "c.desktop=Das C a.desktop=The a b.desktop=The b");
    for (const std::string id : {"gone.desktop", "never.desktop", "", "../applications/a.desktop"})
        EXPECT_EQ(user.asks({"with", id, text}), "false") << id;
}

TEST(DesktopPrograms, WhatIsStartedGetsTheUsersOwnEnvironment) {
    User user;
    user.installs("a", "text/plain;", "%f");
    const std::string cases[][2] = {{"-", "-"}, {user.at("cache"), "unix:path=/nowhere"}};
    for (const auto& [cache, bus] : cases) {
        user.environment = {{"XDG_CACHE_HOME", cache}, {"DBUS_SESSION_BUS_ADDRESS", bus}};
        EXPECT_EQ(user.asks({"with", "a.desktop", user.file("x")}), "true");
        user.started(1);
        const Words lines = User::split(test::contentOf(user.at("run/env")), '\n');
        for (const auto& [name, value] : user.environment) {
            std::string found = "-";
            for (const std::string& line : lines)
                if (line.starts_with(name + "=")) found = line.substr(name.size() + 1);
            EXPECT_EQ(found, value) << name;
        }
    }
    EXPECT_FALSE(fs::exists(user.at("run/launched")));
}

TEST(DesktopPrograms, OnlyWhatCanRunRunsWhenOpened) {
    const User user;
    const std::string program = test::contentOf("/bin/true");
    test::must(::mkfifo(user.at("files/pipe").c_str(), 0777));
    test::makeFolder(user.at("files/folder.desktop"));
    const auto linkTo = [&](const std::string& name, const std::string& target) {
        fs::create_symlink(target, user.at("files/" + name));
        return user.at("files/" + name);
    };
    const std::pair<std::string, bool> cases[] = {
        {user.file("program", program, 0755), true},
        {user.file("program.data", program, 0644), false},
        {linkTo("toProgram", user.at("files/program")), true},
        {user.file("script", "#!/bin/sh\n", 0755), true},
        {user.file("script2", "#!/bin/sh\n", 0644), false},
        {user.file("script.txt", "#!/bin/sh\n", 0755), true},
        {user.file("x.jar", "PK\3\4", 0755), true},
        {user.file("x.jar2.jar", "PK\3\4", 0644), false},
        {user.file("x.exe", "MZ", 0644), true},
        {user.file("entry.desktop", "", 0644), true},
        {user.file("entry", "[Desktop Entry]\nType=Application\n", 0644), false},
        {linkTo("text", user.file("text.txt", "text\n", 0755)), false},
        {user.file("page.html", "<html>", 0755), false},
        {user.file("empty", "", 0755), false},
        {user.at("files/folder.desktop"), false},
        {user.at("files/pipe"), false},
        {linkTo("dangling.desktop", user.at("files/gone")), false},
        {user.at("files/gone.desktop"), false},
        {"", false}};
    DesktopPrograms desktop;
    for (const auto& [path, runs] : cases) EXPECT_EQ(desktop.runsWhenOpened(path), runs) << path;
}

TEST(DesktopPrograms, WithNoBusTheFolderIsOpenedAtOnceAndNoBusIsStarted) {
    User user;
    const Words show = {"show", user.file("\xff a"), user.file("b")};
    EXPECT_EQ(user.asks(show), "false");
    user.installs("folders", "inode/directory;", "%f");
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(user.asks(show), "true");
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
    user.expectStarted(user.at("files"));
    EXPECT_EQ(user.asks({"show", "/usr"}), "true");
    user.expectStarted("/");
    EXPECT_EQ(user.asks({"properties", user.at("files/b")}), "false");
    EXPECT_EQ(user.asks({"show"}), "false");
    EXPECT_FALSE(fs::exists(user.at("run/launched")));
}

TEST(DesktopPrograms, TheFileManagerIsAskedForTheFilesAndMayTakeItsTime) {
    if (::access("/usr/bin/dbus-run-session", X_OK) != 0) GTEST_SKIP() << "There is no dbus-run-session.";
    // The bus stays until the file manager, which the bus starts, was asked.
    const std::string stay =
        "\"$@\"; for i in $(seq 3000); do [ -s \"$OUT/run/asked\" ] && exit; sleep 0.01; done";
    const Words session = {"dbus-run-session", "--", "sh", "-c", stay, "sh"};
    const std::string cases[][3] = {{"show", "ShowItems", "5000"}, {"properties", "ShowItemProperties", "0"}};
    User user;
    user.installs("folders", "inode/directory;", "%f");
    const std::string a = user.file("\xff a"), b = user.file("b\nc");
    EXPECT_EQ(user.asks({"show", a}, {"dbus-run-session", "--"}), "true") << "with no file manager";
    user.expectStarted(user.at("files"));
    for (const auto& [verb, method, answersAfterMs] : cases) {
        fs::create_directories(user.at("data/dbus-1/services"));
        test::writeFile(user.at("data/dbus-1/services/manager.service"),
                        "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=" +
                            fs::read_symlink("/proc/self/exe").string() + " --file-manager " +
                            user.at("run/asked") + " " + answersAfterMs + "\n");
        fs::remove(user.at("run/asked"));
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(user.asks({verb, a, b}, session), "true");
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
        EXPECT_EQ(test::contentOf(user.at("run/asked")),
                  method + "\n" + fileUrl(a) + "\n" + fileUrl(b) + "\n");
        EXPECT_TRUE(user.started(0).empty()) << "the folder was opened as well";
    }
}

TEST(DesktopPrograms, NobodyWaitsForABusThatSaysNothing) {
    User user;
    user.installs("a", "text/plain;inode/directory;", "%f");
    const int bus = test::must(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    user.at("run/silent").copy(address.sun_path, sizeof address.sun_path - 1);
    test::must(::bind(bus, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    test::must(::listen(bus, 8));
    user.environment = {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + user.at("run/silent")}};
    const std::string path = user.file("x.txt");
    const std::pair<Words, std::string> cases[] = {{{"open", path}, "failed"},
                                                   {{"with", "a.desktop", path}, "false"},
                                                   {{"show", path}, "false"},
                                                   {{"properties", path}, "false"},
                                                   {{"programs", "9", path}, "a.desktop=The a"}};
    for (const auto& [question, answer] : cases) {
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(user.asks(question), answer) << question[0];
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4)) << question[0];
    }
    ::close(bus);
}

TEST(DesktopPrograms, CopiedFilesCanBePastedIntoAFileManager) {
    DesktopPrograms desktop;
    desktop.copyFiles({"/a b/\xff%\n'~", "/ä"});
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->data(QStringLiteral("text/uri-list")).toStdString(),
              "file:///a%20b/%FF%25%0A%27~\r\nfile:///%C3%A4\r\n");
    EXPECT_EQ(data->data(QStringLiteral("x-special/gnome-copied-files")).toStdString(),
              "copy\nfile:///a%20b/%FF%25%0A%27~\nfile:///%C3%A4");
    EXPECT_EQ(data->text().toStdString(), "/a b/\xef\xbf\xbd%\n'~\n/ä");
}

}  // namespace
}  // namespace hl

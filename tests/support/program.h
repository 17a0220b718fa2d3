// Runs the program as a user would: as a separate process with a program folder of its own.
#pragma once

#include <stdio.h>
#include <sys/resource.h>

namespace hl::test {

/// Returns the output of a shell command, or an empty text if it fails.
inline std::string outputOf(const std::string& command) {
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return text;
    for (int c = 0; (c = fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    return pclose(pipe) == 0 ? text : "";
}

struct Ended {
    int status = -1;  ///< The exit status, or 128 + signal.
    std::string errors, output;
};

class Program {
  public:
    Program() {
        must(::chmod(home_.path().c_str(), 0777));
        makeFolder(home("run"));
        must(::chmod(home("run").c_str(), 0700));
        setOptions({});
    }

    /// Writes settings of the section Optionen, each "Key=value". The language is German.
    void setOptions(const std::vector<std::string>& options) const {
        std::string text = "[Allgemein]\r\nLang=7\r\n[Optionen]\r\n";
        for (const std::string& option : options) text += option + "\r\n";
        writeFile(home("Harborlantern.ini"), text);
    }
    std::string home(const std::string& file) const { return home_.path() + "/" + file; }

    /// Runs the program in the C locale, with German texts unless set otherwise. `before` runs in the child
    /// first.
    Ended run(const std::vector<std::string>& arguments,
              const std::function<void()>& before = nullptr) const {
        const std::string errors = home("stderr.txt"), output = home("stdout.txt");
        const int status = inChild([&] { return start(arguments, before, errors, output); });
        return {status, contentOf(errors), contentOf(output)};
    }

  private:
    int start(const std::vector<std::string>& arguments, const std::function<void()>& before,
              const std::string& errors, const std::string& output) const {
        for (const auto& [file, descriptor] :
             {std::pair(errors, STDERR_FILENO), std::pair(output, STDOUT_FILENO)})
            ::dup2(must(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666)), descriptor);
        ::setenv("HARBORLANTERN_HOME", home_.path().c_str(), 1);
        ::setenv("LC_ALL", "C", 1);
        // There is no screen, and no other instance that would take the line over.
        ::setenv("XDG_RUNTIME_DIR", home("run").c_str(), 1);
        for (const char* screen : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) ::unsetenv(screen);
        if (before) before();
        std::vector<char*> argv{const_cast<char*>("harborlantern")};
        for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        ::execv(HARBORLANTERN_PROGRAM, argv.data());
        return 127;
    }

    TempDir home_;
};

}  // namespace hl::test

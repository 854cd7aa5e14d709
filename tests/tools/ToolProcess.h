#pragma once
/// ovtool as a process of its own.

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

/// A command of the shell that runs until it is waited for.
class ToolProcess {
public:
    /// @param command  the shell becomes it, so that signals reach it
    /// @param errors   where its error output goes
    ToolProcess(const std::string& command, std::filesystem::path errors)
        : m_errors(std::move(errors)) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("No pipe for the tool");
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, m_errors.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        std::string name = "sh";
        std::string option = "-c";
        std::string text = command;
        const std::array<char*, 4> arguments{name.data(), option.data(), text.data(), nullptr};
        const int failure =
            posix_spawn(&m_process, "/bin/sh", &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        m_out = ends[0];
        if (failure != 0) {
            throw std::runtime_error("The tool can't be started");
        }
    }
    ~ToolProcess() {
        if (m_process > 0) {
            kill(m_process, SIGKILL);
            waitpid(m_process, nullptr, 0);
        }
        CloseOutput();
    }
    ToolProcess(const ToolProcess&) = delete;
    ToolProcess& operator=(const ToolProcess&) = delete;

    /// Waits for the next line of its output; shorter, or empty, at the output's end.
    std::string ReadLine() {
        std::string line;
        for (char next = 0; next != '\n' && read(m_out, &next, 1) == 1;) {
            line += next;
        }
        return line;
    }
    void Signal(int number) const { kill(m_process, number); }
    /// Nobody reads any more what it prints.
    void CloseOutput() {
        if (m_out >= 0) {
            close(m_out);
            m_out = -1;
        }
    }

    /// What it printed from here on, when it has ended.
    ToolRun Wait() {
        ToolRun run;
        for (std::string line = ReadLine(); !line.empty(); line = ReadLine()) {
            run.out += line;
        }
        int status = 0;
        waitpid(m_process, &status, 0);
        m_process = -1;
        // As the shell has it.
        constexpr int kBySignal = 128;
        run.status = WIFSIGNALED(status) ? kBySignal + WTERMSIG(status) : WEXITSTATUS(status);
        std::ifstream file(m_errors);
        run.err = (std::ostringstream() << file.rdbuf()).str();
        return run;
    }

private:
    const std::filesystem::path m_errors;
    pid_t m_process = -1;
    int m_out = -1;
};

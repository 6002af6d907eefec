// The program itself: its exit codes, and what it shows to those who watch.

#include "tests/inspect/inspection.h"

#include <array>
#include <vector>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace inspect_test;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

[[noreturn]] void Become(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {SELVANE_INSPECT_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(pointers.front(), pointers.data());
    _exit(127);
}

std::string ReadAll(int from) {
    std::string all;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = read(from, part.data(), part.size())) > 0;)
        all.append(part.data(), static_cast<std::size_t>(count));
    close(from);
    return all;
}

int ExitCode(pid_t child) {
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The program with both outputs in one pipe.
Outcome RunInPipe(const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
        Become(arguments);
    }
    close(ends[1]);
    Outcome outcome;
    outcome.out = ReadAll(ends[0]);
    outcome.code = ExitCode(child);
    return outcome;
}

/// The program in a terminal.
Outcome RunInTerminal(const std::vector<std::string>& arguments) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) Become(arguments);
    Outcome outcome;
    outcome.out = ReadAll(terminal);
    outcome.code = ExitCode(child);
    return outcome;
}

const std::vector<std::string> two_files = {"lint", "--fail-on", "error", ProjectDescription("identity"),
                                            ProjectDescription("value_nodes")};

TEST(Program, HandsItsExitCodeOn) {
    const std::string identity = ProjectDescription("identity");
    EXPECT_EQ(RunInPipe({"--version"}).code, 0);
    EXPECT_EQ(RunInPipe({"info", identity}).code, 0);
    EXPECT_EQ(RunInPipe({"eval", "1/0"}).code, 1);
    EXPECT_EQ(RunInPipe({"info", identity + ".absent"}).code, 2);
    EXPECT_EQ(RunInPipe({}).code, 2);
}

TEST(Program, ShowsProgressOnATerminalOnly) {
    const Outcome watched = RunInTerminal(two_files);
    EXPECT_EQ(watched.code, 0) << watched.out;
    EXPECT_THAT(watched.out, HasSubstr("2 of 2: "));
    const Outcome unwatched = RunInPipe(two_files);
    EXPECT_EQ(unwatched.code, 0) << unwatched.out;
    EXPECT_THAT(unwatched.out, Not(HasSubstr(" of 2: ")));
    EXPECT_THAT(unwatched.out, Not(HasSubstr("\r")));
}

TEST(Program, OneFileNeedsNoProgress) {
    EXPECT_THAT(RunInTerminal({"lint", ProjectDescription("identity")}).out, Not(HasSubstr(" of 1")));
}

TEST(Program, AFullDiskIsNoSuccess) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    if (full < 0) GTEST_SKIP() << "no device that is always full";
    const pid_t child = fork();
    if (child == 0) {
        dup2(full, STDOUT_FILENO);
        close(STDERR_FILENO);
        Become({"info", ProjectDescription("identity")});
    }
    close(full);
    EXPECT_EQ(ExitCode(child), 2);
}

}  // namespace

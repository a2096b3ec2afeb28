// The console as a person meets it on a terminal: a prompt, progress on long work and Ctrl-C
// that stops the command, not the session. Driven through a pseudo-terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

namespace {

using testing::HasSubstr;

// A console of its own, on a pseudo-terminal as a person meets it or on pipes as a script drives
// it.
class Console {
  public:
    explicit Console(bool terminal) {
        int in[2] = {-1, -1}, out[2] = {-1, -1};
        if (!terminal && (::pipe(in) != 0 || ::pipe(out) != 0)) return;
        pid_ = terminal ? ::forkpty(&out_, nullptr, nullptr, nullptr) : ::fork();
        if (pid_ == 0) {
            if (!terminal) ::dup2(in[0], 0), ::dup2(out[1], 1), ::close(in[1]), ::close(out[0]);
            ::setenv("XDG_STATE_HOME", "/nonexistent-for-tests", 1);  // no history kept
            ::execl(KESTRONE_HOST_BIN, KESTRONE_HOST_BIN, "console", "--module", KESTRONE_MODULE,
                    static_cast<char*>(nullptr));
            ::_exit(127);
        }
        if (terminal) {
            in_ = ::dup(out_);
        } else {
            ::close(in[0]), ::close(out[1]);
            in_ = in[1], out_ = out[0];
        }
    }
    ~Console() {
        for (int fd : {in_, out_})
            if (fd >= 0) ::close(fd);
        if (pid_ > 0) ::kill(pid_, SIGKILL), ::waitpid(pid_, nullptr, 0);
    }
    bool started() const { return pid_ > 0; }
    void type(const std::string& keys) {
        ASSERT_EQ(::write(in_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    // Reads until `text` has appeared in what was read since the last wait, or time runs out.
    std::string wait_for(const std::string& text) {
        read_until([&] { return seen_.find(text) != std::string::npos; });
        std::string out = seen_;
        const std::size_t at = seen_.find(text);
        seen_ = at == std::string::npos ? "" : seen_.substr(at + text.size());
        return out;
    }
    // Reads until `count` lines have come in all.
    std::string lines(int count) {
        read_until([&] { return std::count(seen_.begin(), seen_.end(), '\n') >= count; });
        return seen_;
    }
    void interrupt() { ::kill(pid_, SIGINT); }
    // The exit status once the input ends, or 128 + the signal that ended it.
    int end() {
        ::close(in_);
        in_ = -1;
        int status = 0;
        ::waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

  private:
    template <class Done>
    void read_until(Done done) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!done() && std::chrono::steady_clock::now() < until) {
            pollfd p{out_, POLLIN, 0};
            if (::poll(&p, 1, 100) <= 0) continue;
            char buf[4096];
            const ssize_t n = ::read(out_, buf, sizeof buf);
            if (n <= 0) break;
            seen_.append(buf, static_cast<std::size_t>(n));
        }
    }
    pid_t pid_ = -1;
    int in_ = -1, out_ = -1;
    std::string seen_;
};

TEST(TerminalConsole, CtrlCStopsALongAdvanceAndTheSessionLivesOn) {
    Console t(true);
    ASSERT_TRUE(t.started());
    EXPECT_THAT(t.wait_for("> "), HasSubstr("ok"));
    // Both wheels' timers at 1 ms: a tick every half millisecond of the clock.
    for (const char* line : {"KestroneVersion = 1281", "StartSimulation",
                             "SimMacroCall 9 [0, 200, 255, 56] 0& Empty 0&",
                             "put Timer1(0).Interval = 1", "put Timer1(1).Interval = 1"}) {
        t.type(std::string(line) + "\r");
        EXPECT_THAT(t.wait_for("> "), HasSubstr("ok")) << line;
    }
    t.type("advance 1000000000000\r");
    // "advance: DONE of 1000000000000 ms on the clock (PERCENT%), Ctrl-C stops"
    const std::string progress = t.wait_for("%), Ctrl-C stops");
    const std::size_t at = progress.rfind("advance: ");
    ASSERT_NE(at, std::string::npos) << progress;
    long long done = -1, percent = -1;
    ASSERT_EQ(std::sscanf(progress.c_str() + at,
                          "advance: %lld of 1000000000000 ms on the clock (%lld", &done, &percent),
              2)
        << progress.substr(at);
    EXPECT_GT(done, 0);
    EXPECT_EQ(percent, done * 100 / 1000000000000LL);
    t.type("\x03");
    const std::string stopped = t.wait_for("> ");
    EXPECT_THAT(stopped, HasSubstr("fail interrupted after "));
    // The progress line is wiped before the answer.
    EXPECT_THAT(stopped, HasSubstr("\r\033[K"));
    t.type("get Timer1(0).Interval\r");
    EXPECT_THAT(t.wait_for("> "), HasSubstr("ok 1&"));
    t.type("help\r");
    EXPECT_THAT(t.wait_for("> "), HasSubstr("advance MS"));
    t.type("quit\r");
    EXPECT_EQ(t.end(), 0);
}

// An interrupt stops a long advance of a piped console with a `fail`, and the lines after it are
// still answered; between commands it ends the console as it always did.
TEST(PipedConsole, AnInterruptStopsALongAdvanceAndBetweenCommandsEndsTheConsole) {
    Console busy(false);
    busy.type("StartSimulation\nput Timer1(0).Interval = 1\nadvance 1000000000000\n");
    const std::string started = busy.lines(3);
    EXPECT_EQ(std::count(started.begin(), started.end(), '\n'), 3) << started;
    ::usleep(300'000);
    busy.interrupt();
    busy.type("get Timer1(0).Interval\n");
    const std::string out = busy.lines(5);
    EXPECT_THAT(out, HasSubstr("fail interrupted after ")) << out;
    EXPECT_THAT(out, HasSubstr("\nok 1&\n")) << out;
    EXPECT_EQ(busy.end(), 0);

    Console idle(false);
    idle.lines(1);
    idle.interrupt();
    EXPECT_EQ(idle.end(), 128 + SIGINT);
}

}  // namespace

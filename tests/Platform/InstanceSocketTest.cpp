#include "Platform/InstanceSocket.h"

#include "Platform/Posix/InstanceMessage.h"
#include "Platform/Posix/LocalSocket.h"
#include "support/ChildWork.h"
#include "support/ErrorOf.h"
#include "support/TempDir.h"
#include "support/TurnedLoop.h"

#include <future>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>

using namespace vh;
using namespace vh::test;
using namespace std::chrono_literals;
using testing::HasSubstr;

namespace {

class InstanceSocketTest : public testing::Test {
protected:
    InstanceSocketTest() {
        if (const char* old = ::getenv("XDG_RUNTIME_DIR"))
            before_ = old;
        ::setenv("XDG_RUNTIME_DIR", runtime_.path().c_str(), 1);
    }
    ~InstanceSocketTest() override {
        if (before_)
            ::setenv("XDG_RUNTIME_DIR", before_->c_str(), 1);
        else
            ::unsetenv("XDG_RUNTIME_DIR");
    }

    std::unique_ptr<InstanceSocket> open() {
        return InstanceSocket::open(loop_, "test", [this](const std::string& request) {
            ++asked_;
            return "re: " + request;
        });
    }
    /// Asks from another thread while the loop turns.
    std::optional<std::string> ask(const std::string& request) {
        auto answer = std::async(std::launch::async, [&] { return askInstance("test", request); });
        loop_.waitUntil("the answer is there",
                        [&] { return answer.wait_for(0s) == std::future_status::ready; });
        return answer.get();
    }
    /// Somebody who keeps to no rules.
    FileDescriptor visitor(const std::string& says) {
        const sockaddr_un address = localAddress(socket());
        FileDescriptor visitor = openLocalSocket();
        if (::connect(visitor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::send(visitor.get(), says.data(), says.size(), MSG_NOSIGNAL) !=
                static_cast<ssize_t>(says.size()))
            throwErrno(socket());
        return visitor;
    }
    static bool wasDropped(const FileDescriptor& visitor) {
        char byte = 0;
        const ssize_t got = ::recv(visitor.get(), &byte, 1, 0);
        return got == 0 || (got < 0 && errno == ECONNRESET);
    }
    std::string socket() const { return runtime_ / "varnholt/test.socket"; }

    TempDir runtime_;
    TurnedLoop loop_;
    int asked_ = 0;

private:
    std::optional<std::string> before_;
};

TEST_F(InstanceSocketTest, answersWhoeverAsksUpToTheLimit) {
    EXPECT_EQ(askInstance("test", "anybody there?"), std::nullopt);
    auto opened = open();
    ASSERT_TRUE(opened);
    EXPECT_FALSE(open()) << "the socket is another's";
    EXPECT_EQ(ask(""), "re: ");
    EXPECT_EQ(ask(std::string("a\0é", 4)), std::string("re: a\0é", 8));
    const std::string longest((64 << 10) - 4, 'x');
    EXPECT_EQ(ask(longest), "re: " + longest);
    EXPECT_EQ(ask(longest + "y"), std::nullopt) << "too long an answer";
    EXPECT_THAT(errorOf([&] { ask(longest + "12345"); }), HasSubstr("Message too long"));
    struct stat folder {};
    ASSERT_EQ(::stat((runtime_ / "varnholt").c_str(), &folder), 0);
    EXPECT_EQ(folder.st_mode & 07777, mode_t{0700});
    opened.reset();
    EXPECT_EQ(askInstance("test", "still there?"), std::nullopt);
    EXPECT_TRUE(open());
}

TEST_F(InstanceSocketTest, takesOverFromADeadProcess) {
    // It ends without any farewell and leaves its socket.
    EXPECT_EQ(runInChild([&] { [[maybe_unused]] const auto* left = open().release(); }).status, 0);
    ASSERT_EQ(::access(socket().c_str(), F_OK), 0);
    EXPECT_EQ(askInstance("test", "anybody there?"), std::nullopt);
    const auto opened = open();
    ASSERT_TRUE(opened);
    EXPECT_EQ(ask("you"), "re: you");
}

TEST_F(InstanceSocketTest, isNotHeldUpByWhoKeepsToNoRules) {
    const auto opened = open();
    const FileDescriptor mute = visitor("");
    const FileDescriptor half = visitor(instanceMessage("half a request").substr(0, 9));
    const FileDescriptor boastful = visitor(std::string("\xff\xff\xff\xff", 4) + "text");
    FileDescriptor fleeting = visitor(instanceMessage("gone before the answer"));
    fleeting.reset();
    EXPECT_EQ(ask("me"), "re: me");
    EXPECT_EQ(asked_, 2);
    EXPECT_TRUE(wasDropped(boastful));
    EXPECT_FALSE(wasDropped(mute) || wasDropped(half));
    loop_.advance(10s);
    EXPECT_TRUE(wasDropped(mute) && wasDropped(half));
    EXPECT_EQ(ask("me again"), "re: me again");
}

TEST_F(InstanceSocketTest, standsOpenForItsUserAlone) {
    const auto opened = open();
    const auto comeAsAnother = [&] {
        return runUnprivileged([&] { visitor(instanceMessage("let me in")); }).message;
    };
    EXPECT_THAT(comeAsAnother(), HasSubstr("Permission denied"));
    for (const std::string& path : {runtime_.path(), runtime_ / "varnholt", socket()})
        ASSERT_EQ(::chmod(path.c_str(), 0777), 0); // as if the folder's mode had been no help
    EXPECT_EQ(comeAsAnother(), "");
    loop_.pump();
    EXPECT_EQ(asked_, 0);
    EXPECT_EQ(ask("me"), "re: me");
}

TEST_F(InstanceSocketTest, mayBeClosedByItsOwnAnswer) {
    std::unique_ptr<InstanceSocket> opened = InstanceSocket::open(loop_, "test", [&](const std::string&) {
        opened.reset();
        return std::string("bye");
    });
    EXPECT_EQ(ask("close"), "bye");
    EXPECT_TRUE(open());
}

} // namespace

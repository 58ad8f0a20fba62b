#include "host/viewer_process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "scratch_folder.h"

namespace kelhost {
namespace {

// A viewer that writes down how it was started.
constexpr char SCRIPT[] = R"(#!/bin/sh
echo "$@" >arguments
streams=$(readlink /proc/$$/fd/0 /proc/$$/fd/1)
echo "$streams" >streams
ps -o sid= -p $$ | tr -d ' ' >session
echo $$ >>session
ls /proc/$$/fd >descriptors
)";

std::string nthLine(const std::string& text, int n) {
    std::size_t start = 0;
    while (n-- > 0)
        start = text.find('\n', start) + 1;
    return text.substr(start, text.find('\n', start) - start);
}

TEST(ViewerProcess, IsDetached) {
    const ScratchFolder folder;
    ScratchFolder::write("viewer", SCRIPT);
    std::filesystem::permissions("viewer", std::filesystem::perms::owner_all);
    const int inherited = dup(STDERR_FILENO);  // without close-on-exec
    const ViewerStart started = startViewer("./viewer", "orders");
    ASSERT_EQ(started.error, 0);
    int status = -1;
    ASSERT_EQ(waitpid(started.process, &status, 0), started.process);
    EXPECT_EQ(status, 0);
    close(inherited);
    EXPECT_EQ(ScratchFolder::read("arguments"), "--channel orders\n");
    EXPECT_EQ(ScratchFolder::read("streams"), "/dev/null\n/dev/null\n");
    const std::string session = ScratchFolder::read("session");
    EXPECT_EQ(nthLine(session, 0), nthLine(session, 1));
    EXPECT_EQ(ScratchFolder::read("descriptors").find("\n" + std::to_string(inherited) + "\n"), std::string::npos);
}

TEST(ViewerProcess, SaysThatItIsNotThere) {
    const ViewerStart started = startViewer("/no/such/viewer", "orders");
    EXPECT_EQ(started.error, ENOENT);
    EXPECT_EQ(started.process, 0);
}

// The test's program lies neither beside a viewer nor in a folder beside src.
TEST(ViewerProcess, IsLookedUpInPathAtLast) {
    EXPECT_EQ(viewerProgram(), "kelhpgl");
}

}  // namespace
}  // namespace kelhost

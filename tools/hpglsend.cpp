// hpglsend: a host on the command line. Finds the viewer of a channel or starts one, sends it files, and takes the page
// that its user prints back.

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "client.h"
#include "hpglsend_options.h"
#include "viewer_process.h"
#include "whole_file.h"

namespace {

using kelhost::Client;
using kelhost::FrameKind;
using kelhost::Status;
using std::chrono::milliseconds;

enum ExitStatus : int { EXIT_SHOWN = 0, EXIT_NOT_SHOWN = 1, EXIT_USAGE = 2, EXIT_NO_VIEWER = 3, EXIT_NOT_WRITTEN = 4 };

// A file or standard input, read piece by piece.
class Source {
  public:
    explicit Source(const std::string& name) {
        descriptor_ = name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat about = {};
        if (descriptor_ < 0 || fstat(descriptor_, &about) != 0) error_ = errno;
        if (S_ISDIR(about.st_mode)) error_ = EISDIR;
    }
    ~Source() {
        if (descriptor_ > STDIN_FILENO) close(descriptor_);
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    bool isReadable() const { return error_ == 0; }
    std::string problem() const { return std::strerror(error_); }

    // The next bytes, which are gone with the next call. None at the end, and when it is not readable any more.
    std::string_view read() {
        ssize_t count = 0;
        do {
            count = ::read(descriptor_, bytes_.data(), bytes_.size());
        } while (count < 0 && errno == EINTR);
        if (count < 0) error_ = errno;
        return {bytes_.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
    }

  private:
    int descriptor_ = -1;
    int error_ = 0;
    std::array<char, kelhost::PIECE_BYTES> bytes_;
};

// What becomes of a file.
enum class Fate { Open, Shown, Refused, Unreadable, NoViewer };

struct Verdict {
    Fate fate;
    std::string reason;
};

// What the viewer has decided about the picture, if need be after waiting that long; Open when nothing yet.
Verdict verdict(Client& viewer, milliseconds limit) {
    kelhost::Reply reply{FrameKind::Accepted, {}};
    Status status = Status::Ok;
    while (status == Status::Ok && reply.kind == FrameKind::Accepted) {
        status = viewer.nextReply(reply, limit);
    }
    if (status == Status::TimedOut) return {Fate::Open, {}};
    if (status != Status::Ok) return {Fate::NoViewer, viewer.problem()};
    return {reply.kind == FrameKind::Shown ? Fate::Shown : Fate::Refused, reply.reason};
}

// One transmission, as long as the viewer does not refuse it. The viewer may take its time: it may be busy with a large
// picture, or with another host.
Verdict send(Client& viewer, Source& source) {
    std::string_view piece = source.read();
    Verdict soFar{Fate::Open, {}};
    Status status = viewer.send(FrameKind::Begin, {}, kelhost::FOREVER);
    while (!piece.empty() && status == Status::Ok && soFar.fate == Fate::Open) {
        status = viewer.send(FrameKind::Further, piece, kelhost::FOREVER);
        piece = source.read();
        soFar = verdict(viewer, milliseconds::zero());
    }
    if (soFar.fate != Fate::Open) return soFar;
    if (!source.isReadable()) return {Fate::Unreadable, source.problem()};
    if (status == Status::Ok) viewer.send(FrameKind::End, {}, kelhost::FOREVER);
    // When the viewer has closed the connection, its last reply says why.
    return verdict(viewer, kelhost::FOREVER);
}

std::string endOf(pid_t process, const std::string& program) {
    int status = 0;
    if (process == 0 || waitpid(process, &status, WNOHANG) != process) return {};
    return WIFEXITED(status) ? "; " + program + " has ended with exit code " + std::to_string(WEXITSTATUS(status))
                             : "; " + program + " has ended by signal " + std::to_string(WTERMSIG(status));
}

bool sayThatThereIsNone(const std::string& problem) {
    std::fprintf(stderr, "hpglsend: no viewer: %s\n", problem.c_str());
    return false;
}

// Connects to the viewer that listens or, if none does, to one that is started. A viewer that ends because another has
// just taken the name is none the worse: that one will listen.
bool reachViewer(Client& viewer, const SendOptions& options) {
    Status status = viewer.connect(options.channel, milliseconds::zero());
    if (status == Status::Ok) return true;
    if (status == Status::Failed) return sayThatThereIsNone(viewer.problem());
    const std::string program = options.viewer.empty() ? kelhost::viewerProgram() : options.viewer;
    kelhost::ViewerStart started{};
    if (options.start) started = kelhost::startViewer(program, options.channel);
    if (started.error != 0) return sayThatThereIsNone(program + ": " + std::strerror(started.error));
    status = viewer.connect(options.channel, options.wait);
    return status == Status::Ok || sayThatThereIsNone(viewer.problem() + endOf(started.process, program));
}

Verdict sendFile(Client& viewer, const SendOptions& options, const std::string& name) {
    Source source(name);
    if (!source.isReadable()) return {Fate::Unreadable, source.problem()};
    if (!viewer.isConnected() && !reachViewer(viewer, options)) return {Fate::NoViewer, {}};
    Verdict result = send(viewer, source);
    // Whatever of this picture is on its way is not to be taken for a part of the next.
    if (result.fate != Fate::Shown) viewer.close();
    return result;
}

void say(const std::string& name, const std::string& words) {
    std::printf("%s: %s\n", name.c_str(), words.c_str());
    std::fflush(stdout);
}

std::string inWords(const Verdict& result) {
    const char* words = result.fate == Fate::Shown        ? "shown"
                        : result.fate == Fate::Unreadable ? "cannot read: "
                        : result.fate == Fate::NoViewer   ? "not shown: "
                                                          : "refused: ";
    return words + result.reason;
}

int sendAll(Client& viewer, const SendOptions& options) {
    int status = EXIT_SHOWN;
    for (const std::string& name : options.files) {
        if (status == EXIT_NO_VIEWER) {
            say(name, inWords({Fate::NoViewer, "there is no viewer"}));
            continue;
        }
        const Verdict result = sendFile(viewer, options, name);
        if (result.fate != Fate::NoViewer || !result.reason.empty()) say(name, inWords(result));
        if (result.fate == Fate::NoViewer) {
            status = EXIT_NO_VIEWER;
            continue;
        }
        if (result.fate != Fate::Shown) status = EXIT_NOT_SHOWN;
    }
    return status;
}

// The user chooses the format in the viewer; the file's name may promise another.
std::string remarkOn(const std::string& file, const std::string& format) {
    const std::string ending = std::filesystem::path(file).extension();
    const bool fits = ending.empty() || strcasecmp(ending.c_str(), ("." + format).c_str()) == 0;
    return fits ? "" : ", which is not what its name says";
}

int receive(Client& viewer, const std::string& file) {
    kelhost::Page page;
    const Status status = viewer.nextPage(page, kelhost::FOREVER);
    if (status != Status::Ok) {
        say(file, "not received: " + viewer.problem());
        return status == Status::Failed ? EXIT_NOT_WRITTEN : EXIT_NO_VIEWER;
    }
    if (const std::string problem = kelfiles::writeWhole(file, page.bytes); !problem.empty()) {
        say(file, "cannot write: " + problem);
        return EXIT_NOT_WRITTEN;
    }
    say(file,
        "received, " + page.format + ", " + std::to_string(page.bytes.size()) + " bytes" + remarkOn(file, page.format));
    return EXIT_SHOWN;
}

// A page that is printed as soon as the first file is shown counts, too.
int sendAndReceive(Client& viewer, const SendOptions& options) {
    if (const std::string problem = kelfiles::obstacleTo(options.receive); !problem.empty()) {
        say(options.receive, "cannot write: " + problem);
        return EXIT_NOT_WRITTEN;
    }
    viewer.keepPages();
    const int status = sendAll(viewer, options);
    if (status == EXIT_SHOWN) return receive(viewer, options.receive);
    say(options.receive, "not received: not all files are shown");
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    SendOptions options;
    const std::string problem = parseSendOptions(std::vector<std::string>(argv + 1, argv + argc), options);
    if (!problem.empty()) {
        std::fprintf(stderr, "hpglsend: %s\n%s", problem.c_str(), SEND_USAGE);
        return EXIT_USAGE;
    }
    if (options.help) {
        std::printf("%s%s", SEND_USAGE, SEND_HELP);
        return EXIT_SHOWN;
    }
    Client viewer;
    return options.receive.empty() ? sendAll(viewer, options) : sendAndReceive(viewer, options);
}

// hpglsend: a host on the command line. Finds the viewer of a channel or starts one, sends it files, and takes the page
// that its user prints back.

#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/client.h"
#include "host/viewer_process.h"
#include "hpglsend_options.h"
#include "plotter/plotter.h"
#include "system/shown_text.h"
#include "system/standard_streams.h"
#include "system/whole_file.h"

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

// The same of what is in memory.
class Text {
  public:
    explicit Text(std::string_view bytes) : rest_(bytes) {}

    static bool isReadable() { return true; }
    static std::string problem() { return {}; }
    std::string_view read() {
        const std::string_view piece = rest_.substr(0, kelhost::PIECE_BYTES);
        rest_.remove_prefix(piece.size());
        return piece;
    }

  private:
    std::string_view rest_;
};

// What becomes of a file, or of a page of it.
enum class Fate { Open, Shown, Refused, Unreadable, NoPlot, NoViewer };

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
template <class Bytes>
Verdict send(Client& viewer, Bytes& source) {
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
    std::fprintf(stderr, "hpglsend: no viewer: %s\n", kelsystem::shownText(problem).c_str());
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

template <class Bytes>
Verdict transmit(Client& viewer, const SendOptions& options, Bytes& bytes) {
    if (!viewer.isConnected() && !reachViewer(viewer, options)) return {Fate::NoViewer, {}};
    Verdict result = send(viewer, bytes);
    // Whatever of this picture is on its way is not to be taken for a part of the next.
    if (result.fate != Fate::Shown) viewer.close();
    return result;
}

// Names and what the viewer answers are others' words.
void say(const std::string& name, const std::string& words) {
    std::printf("%s: %s\n", kelsystem::shownText(name).c_str(), kelsystem::shownText(words).c_str());
    std::fflush(stdout);
}

std::string inWords(const Verdict& result) {
    const char* words = result.fate == Fate::Shown        ? "shown"
                        : result.fate == Fate::Unreadable ? "cannot read: "
                        : result.fate == Fate::NoPlot     ? "not a plot: "
                        : result.fate == Fate::NoViewer   ? "not shown: "
                                                          : "refused: ";
    return words + result.reason;
}

// That there is no viewer has been said where it was looked for.
void sayVerdict(const std::string& name, const Verdict& result) {
    if (result.fate != Fate::NoViewer || !result.reason.empty()) say(name, inWords(result));
}

// ---- files ----------------------------------------------------------------------------------------------------------

// Of the exit status: what went worse counts.
int statusOf(Fate fate) {
    return fate == Fate::Shown ? EXIT_SHOWN : fate == Fate::NoViewer ? EXIT_NO_VIEWER : EXIT_NOT_SHOWN;
}

// Whatever a viewer on this machine could take; a device may have no end.
std::size_t mostBytes() {
    return static_cast<std::size_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 2;
}

// Answers why that cannot be, or nothing.
std::string readWhole(Source& source, std::string& bytes) {
    const std::size_t most = mostBytes();
    for (std::string_view piece = source.read(); !piece.empty(); piece = source.read()) {
        if (bytes.size() + piece.size() > most) return "more data than half of the memory";
        bytes += piece;
    }
    return source.isReadable() ? "" : source.problem();
}

bool goOn(std::size_t /*bytesDone*/) {
    return true;
}

// Each page is a picture of its own.
int sendPages(Client& viewer, const SendOptions& options, const std::string& name, std::string_view file) {
    const plotter::Survey survey = plotter::survey(file, goOn);
    if (const std::string said = plotter::summary(survey); !said.empty()) {
        std::fprintf(stderr, "hpglsend: %s: %s\n", kelsystem::shownText(name).c_str(),
                     kelsystem::shownText(said).c_str());
    }
    const std::size_t pages = survey.pages.size();
    plotter::PageWriter writer(file, survey);
    int status = EXIT_SHOWN;
    for (std::size_t page = 0; page < pages && status != EXIT_NO_VIEWER; ++page) {
        std::string plain;
        const auto append = [&](std::string_view piece) {
            plain += piece;
            return true;
        };
        writer.write(page, append, goOn);
        Text text(plain);
        const Verdict result = transmit(viewer, options, text);
        const std::string which = ", page " + std::to_string(page + 1) + " of " + std::to_string(pages);
        sayVerdict(pages > 1 ? name + which : name, result);
        status = std::max(status, statusOf(result.fate));
    }
    return status;
}

// What comes on standard input is sent while it comes.
int sendFile(Client& viewer, const SendOptions& options, const std::string& name) {
    const auto end = [&](const Verdict& result) {
        sayVerdict(name, result);
        return statusOf(result.fate);
    };
    Source source(name);
    if (!source.isReadable()) return end({Fate::Unreadable, source.problem()});
    if (options.asIs || name == "-") return end(transmit(viewer, options, source));
    std::string file;
    if (const std::string problem = readWhole(source, file); !problem.empty()) return end({Fate::Unreadable, problem});
    if (plotter::isPlain(file)) {
        Text text(file);
        return end(transmit(viewer, options, text));
    }
    const std::string_view kind = plotter::foreignKind(file);
    return kind.empty() ? sendPages(viewer, options, name, file) : end({Fate::NoPlot, std::string(kind)});
}

int sendAll(Client& viewer, const SendOptions& options) {
    int status = EXIT_SHOWN;
    for (const std::string& name : options.files) {
        if (status == EXIT_NO_VIEWER) {
            sayVerdict(name, {Fate::NoViewer, "there is no viewer"});
        } else {
            status = std::max(status, sendFile(viewer, options, name));
        }
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
    kelhost::ReceivedPage page;
    const Status status = viewer.nextPage(page, kelhost::FOREVER);
    if (status != Status::Ok) {
        say(file, "not received: " + viewer.problem());
        return status == Status::Failed ? EXIT_NOT_WRITTEN : EXIT_NO_VIEWER;
    }
    if (const std::string problem = kelsystem::writeWhole(file, page.bytes); !problem.empty()) {
        say(file, "cannot write: " + problem);
        return EXIT_NOT_WRITTEN;
    }
    say(file,
        "received, " + page.format + ", " + std::to_string(page.bytes.size()) + " bytes" + remarkOn(file, page.format));
    return EXIT_SHOWN;
}

// A page that is printed as soon as the first file is shown counts, too.
int sendAndReceive(Client& viewer, const SendOptions& options) {
    if (const std::string problem = kelsystem::obstacleTo(options.receive); !problem.empty()) {
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
    kelsystem::holdStandardStreams();
    SendOptions options;
    const std::string problem = parseSendOptions(std::vector<std::string>(argv + 1, argv + argc), options);
    if (!problem.empty()) {
        std::fprintf(stderr, "hpglsend: %s\n%s", kelsystem::shownText(problem).c_str(), SEND_USAGE);
        return EXIT_USAGE;
    }
    if (options.help) {
        std::printf("%s%s", SEND_USAGE, SEND_HELP);
        return EXIT_SHOWN;
    }
    Client viewer;
    return options.receive.empty() ? sendAll(viewer, options) : sendAndReceive(viewer, options);
}

#include "host/viewer_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <filesystem>

namespace kelhost {

namespace {

constexpr char VIEWER[] = "kelhpgl";

// What posix_spawn is told; its C objects, freed at the end.
class Spawn {
  public:
    Spawn() {
        posix_spawnattr_init(&attributes_);
        posix_spawn_file_actions_init(&actions_);
    }
    ~Spawn() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    Spawn(const Spawn&) = delete;
    Spawn& operator=(const Spawn&) = delete;

    void detach() {
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID);
        posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    }
    void discard(int descriptor, int mode) {
        posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", mode, 0);
    }
    int run(pid_t* process, char* const* words) {
        return posix_spawnp(process, words[0], &actions_, &attributes_, words, environ);
    }

  private:
    posix_spawnattr_t attributes_;
    posix_spawn_file_actions_t actions_;
};

std::filesystem::path ownFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace

std::string viewerProgram() {
    const std::filesystem::path folder = ownFolder();
    for (const std::filesystem::path& program : {folder / VIEWER, folder / "../src" / VIEWER}) {
        std::error_code error;
        if (!folder.empty() && std::filesystem::is_regular_file(program, error)) return program;
    }
    return VIEWER;
}

ViewerStart startViewer(const std::string& program, const std::string& channel) {
    std::string words[] = {program, "--channel", channel};
    const std::array<char*, 4> arguments{words[0].data(), words[1].data(), words[2].data(), nullptr};
    Spawn spawn;
    spawn.discard(STDIN_FILENO, O_RDONLY);
    spawn.discard(STDOUT_FILENO, O_WRONLY);
    if (isatty(STDERR_FILENO) == 0) spawn.discard(STDERR_FILENO, O_WRONLY);
    spawn.detach();
    pid_t process = 0;
    const int error = spawn.run(&process, arguments.data());
    return {.process = error == 0 ? process : 0, .error = error};
}

}  // namespace kelhost

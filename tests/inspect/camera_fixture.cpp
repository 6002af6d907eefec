#include "tests/inspect/camera_fixture.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <net/if.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace inspect_test {
namespace {

constexpr const char* camera_program = "/usr/bin/arv-fake-gv-camera-0.8";
constexpr const char* tool_program = "/usr/bin/arv-tool-0.8";

bool turn_loopback_on() {
    const int any = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, "lo", IFNAMSIZ - 1);
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool done = ioctl(any, SIOCSIFFLAGS, &request) == 0;
    close(any);
    return done;
}

// Whether a socket has the port of cameras. A search that came earlier would wait for answers in vain.
bool is_camera_listening() {
    std::ifstream sockets("/proc/self/net/udp");
    const std::string all{std::istreambuf_iterator<char>(sockets), {}};
    return all.find(":0F74 ") != std::string::npos;
}

/// Cameras have one port: no other program of this machine may have one of its own in the same network.
class own_network : public testing::Environment {
public:
    void SetUp() override {
        if (!has_camera_tools()) return;
        if ((unshare(CLONE_NEWNET) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0) && turn_loopback_on())
            return;
        const std::string lock =
            (std::filesystem::temp_directory_path() / "selvane_camera_test.lock").string();
        FILE* const file = std::fopen(lock.c_str(), "w");
        if (file == nullptr || flock(fileno(file), LOCK_EX) != 0) throw std::runtime_error("no lock " + lock);
    }
};

const auto* const network = testing::AddGlobalTestEnvironment(new own_network);

}  // namespace

bool has_camera_tools() {
    return network != nullptr && SELVANE_HAS_ARAVIS != 0 && std::filesystem::exists(camera_program) &&
           std::filesystem::exists(tool_program);
}

std::string OutputOf(const std::string& command) {
    FILE* const pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot start " + command);
    std::string output;
    std::array<char, 4096> part{};
    for (std::size_t size = 0; (size = fread(part.data(), 1, part.size(), pipe)) > 0;)
        output.append(part.data(), size);
    pclose(pipe);
    return output;
}

void CameraTest::SetUp() {
    if (!has_camera_tools())
        GTEST_SKIP() << "no camera: needs libaravis-dev, aravis-tools and aravis-tools-cli "
                        "(scripts/setup test), and a build with them";
    camera_ = fork();
    if (camera_ == 0) {
        if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(126);
        execl(camera_program, camera_program, "-i", "lo", nullptr);
        _exit(127);
    }
    while (!is_camera_listening()) {
        if (waitpid(camera_, nullptr, WNOHANG) != 0) throw std::runtime_error("the camera did not start");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void CameraTest::TearDown() { Unplug(); }

void CameraTest::Unplug() {
    if (camera_ <= 0) return;
    kill(camera_, SIGKILL);
    waitpid(camera_, nullptr, 0);
    camera_ = -1;
}

void CameraTest::Freeze() const {
    kill(camera_, SIGSTOP);
    int status = 0;
    waitpid(camera_, &status, WUNTRACED);
}

Outcome CameraTest::CallOn(const std::string& command, const std::vector<std::string>& rest) {
    std::vector<std::string> arguments = {command, "--camera", name};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    return Call(arguments);
}

}  // namespace inspect_test

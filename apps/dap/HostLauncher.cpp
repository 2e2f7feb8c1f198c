#include "apps/dap/HostLauncher.h"

#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tov {
namespace dap {

namespace {

void closeDescriptor(int& descriptor)
{
    if (descriptor >= 0) {
        ::close(descriptor);
        descriptor = -1;
    }
}

// The first "http://HOST:PORT" of a line, "" when there is none.
std::string findUrl(const std::string& line)
{
    const std::string scheme = "http://";
    for (std::size_t start = line.find(scheme); start != std::string::npos; start = line.find(scheme, start + 1)) {
        std::size_t at = start + scheme.size();
        while (at < line.size() &&
               (std::isalnum(static_cast<unsigned char>(line[at])) || line[at] == '.' || line[at] == '-')) {
            ++at;
        }
        std::size_t digits = at + 1;
        while (digits < line.size() && std::isdigit(static_cast<unsigned char>(line[digits])) && digits - at <= 5) {
            ++digits;
        }
        if (at > start + scheme.size() && at < line.size() && line[at] == ':' && digits > at + 1) {
            return line.substr(start, digits - start);
        }
    }
    return std::string();
}

} // namespace

HostLauncher::~HostLauncher()
{
    stop();
}

bool HostLauncher::start(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& directory, std::string& error)
{
    int output[2];
    int errors[2];
    int failure[2]; // closed on a successful exec; carries errno when exec fails
    // Close-on-exec everywhere: the child gets its ends as 1 and 2 through dup2, and no other program
    // the adapter starts later holds them open.
    if (::pipe2(output, O_CLOEXEC) != 0 || ::pipe2(errors, O_CLOEXEC) != 0 || ::pipe2(failure, O_CLOEXEC) != 0) {
        error = std::string("cannot make pipes: ") + std::strerror(errno);
        return false;
    }
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words) {
        argv.push_back(&word[0]);
    }
    argv.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        // The child: its own process group, so that the editor's Ctrl-C reaches the adapter only.
        ::setpgid(0, 0);
        const int input = ::open("/dev/null", O_RDONLY);
        ::dup2(input, 0);
        ::dup2(output[1], 1);
        ::dup2(errors[1], 2);
        int code = 0;
        if (!directory.empty() && ::chdir(directory.c_str()) != 0) {
            code = errno;
        } else {
            ::execvp(argv[0], argv.data());
            code = errno;
        }
        (void)!::write(failure[1], &code, sizeof code);
        ::_exit(127);
    }
    ::close(output[1]);
    ::close(errors[1]);
    ::close(failure[1]);
    int code = 0;
    const bool execFailed = child > 0 && ::read(failure[0], &code, sizeof code) == static_cast<ssize_t>(sizeof code);
    ::close(failure[0]);
    if (child < 0 || execFailed) {
        error = "cannot start " + program + ": " + std::strerror(child < 0 ? errno : code);
        ::close(output[0]);
        ::close(errors[0]);
        if (child > 0) {
            ::waitpid(child, nullptr, 0);
        }
        return false;
    }
    process = child;
    outputDescriptor = output[0];
    errorDescriptor = errors[0];
    ::fcntl(outputDescriptor, F_SETFL, O_NONBLOCK);
    ::fcntl(errorDescriptor, F_SETFL, O_NONBLOCK);
    return true;
}

std::vector<HostLauncher::Output> HostLauncher::readOutput()
{
    std::vector<Output> output;
    readFrom(outputDescriptor, "stdout", output);
    readFrom(errorDescriptor, "stderr", output);
    return output;
}

void HostLauncher::readFrom(int& descriptor, const char* category, std::vector<Output>& output)
{
    char bytes[4096];
    while (descriptor >= 0) {
        const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
        if (count > 0) {
            output.push_back({category, std::string(bytes, static_cast<std::size_t>(count))});
            if (announcedUrl.empty()) {
                lookForUrl(output.back().text);
            }
        } else if (count == 0) {
            closeDescriptor(descriptor);
        } else if (errno != EINTR) {
            break;
        }
    }
}

void HostLauncher::lookForUrl(const std::string& text)
{
    // Lines may come in pieces: look only at whole ones.
    pendingLine += text;
    std::size_t end;
    while (announcedUrl.empty() && (end = pendingLine.find('\n')) != std::string::npos) {
        announcedUrl = findUrl(pendingLine.substr(0, end));
        pendingLine.erase(0, end + 1);
    }
    if (pendingLine.size() > 4096) {
        pendingLine.clear();
    }
}

bool HostLauncher::isRunning(std::string& status)
{
    if (process <= 0) {
        status = "it was not started";
        return false;
    }
    int code = 0;
    const pid_t ended = ::waitpid(process, &code, WNOHANG);
    if (ended == 0) {
        return true;
    }
    process = -1;
    status = WIFEXITED(code) ? "it exited with status " + std::to_string(WEXITSTATUS(code))
                             : "it was ended by signal " + std::to_string(WTERMSIG(code));
    return false;
}

void HostLauncher::stop()
{
    if (process > 0) {
        ::kill(process, SIGTERM);
        // A host saves its state on the way out; give it a moment, then insist.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        std::string status;
        while (isRunning(status) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        if (process > 0) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
            process = -1;
        }
    }
    closeDescriptor(outputDescriptor);
    closeDescriptor(errorDescriptor);
}

} // namespace dap
} // namespace tov

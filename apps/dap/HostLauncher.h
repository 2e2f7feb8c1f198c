#pragma once
// HostLauncher: starts a host program for the launch request and owns it: its standard output and
// error are read without blocking (for the editor's console, and to learn the inspector's address from
// a line such as "inspector listening on http://127.0.0.1:41337"), and it is ended on disconnect.
//   HostLauncher launcher;  std::string error;
//   if (launcher.start("build/apps/demo/tov-demo", {"--port", "0"}, "", error)) { ... launcher.stop(); }

#include <string>
#include <vector>

namespace tov {
namespace dap {

class HostLauncher {
public:
    struct Output {
        std::string category; // "stdout" or "stderr"
        std::string text;
    };

    ~HostLauncher();
    // `directory` empty keeps the adapter's; false with the reason when the program cannot start.
    bool start(const std::string& program, const std::vector<std::string>& arguments, const std::string& directory,
               std::string& error);
    bool isStarted() const { return process > 0; }
    // What the program wrote since the last call.
    std::vector<Output> readOutput();
    // False once the program ended; `status` then says how.
    bool isRunning(std::string& status);
    // The first "http://HOST:PORT" the program printed, "" while none.
    const std::string& getAnnouncedUrl() const { return announcedUrl; }
    // Asks the program to end, and makes it end after a few seconds if it does not.
    void stop();

private:
    void readFrom(int& descriptor, const char* category, std::vector<Output>& output);
    void lookForUrl(const std::string& text);

    int process = -1;
    int outputDescriptor = -1;
    int errorDescriptor = -1;
    std::string announcedUrl;
    std::string pendingLine;
};

} // namespace dap
} // namespace tov

#include "RunProgram.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

std::vector<std::string> BuildEnvironment(const std::vector<std::string>& extraEnv)
{
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry; ++entry) {
        std::string text(*entry);
        size_t equals = text.find('=');
        variables[text.substr(0, equals)] = text;
    }
    for (const std::string& change : extraEnv) {
        size_t equals = change.find('=');
        if (equals == std::string::npos)
            variables.erase(change);
        else
            variables[change.substr(0, equals)] = change;
    }
    std::vector<std::string> result;
    for (auto& [name, text] : variables)
        result.push_back(text);
    return result;
}

} // namespace

RunResult RunProgram(const std::vector<std::string>& args, const std::vector<std::string>& extraEnv,
                     const std::string& stdinText)
{
    RunResult result;
    int in[2], out[2], err[2];
    if (pipe(in) || pipe(out) || pipe(err))
        return result;
    std::vector<std::string> environment = BuildEnvironment(extraEnv);
    std::vector<char*> argv, envp;
    for (const auto& arg : args)
        argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    for (const auto& entry : environment)
        envp.push_back(const_cast<char*>(entry.c_str()));
    envp.push_back(nullptr);

    pid_t child = fork();
    if (child == 0) {
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]})
            close(fd);
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    close(err[1]);
    signal(SIGPIPE, SIG_IGN);
    if (!stdinText.empty()) {
        ssize_t written = write(in[1], stdinText.data(), stdinText.size());
        (void)written;
    }
    close(in[1]);

    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.out, &result.err};
    int open = 2;
    while (open > 0) {
        if (poll(fds, 2, -1) < 0 && errno != EINTR)
            break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            char buffer[65536];
            ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                sinks[i]->append(buffer, size_t(n));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

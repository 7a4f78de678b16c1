#include "support/Qpdf.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillet {

namespace {

int Spawn(const std::vector<std::string>& words)
{
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) return -1;
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

std::string RunQpdf(const std::string& file, std::vector<std::string> options)
{
    const std::string name =
        std::filesystem::temp_directory_path().string() + "/quillet-qpdf-" + std::to_string(getpid());
    const std::string in = name + "-in.pdf";
    const std::string out = name + "-out.pdf";
    std::ofstream(in, std::ios::binary) << file;
    std::filesystem::remove(out);
    options.insert(options.begin(), {"qpdf", "--allow-weak-crypto", "--no-warn", "--warning-exit-0"});
    options.insert(options.end(), {in, out});
    const int status = Spawn(options);
    std::ifstream made(out, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(made), {}};
    std::filesystem::remove(in);
    std::filesystem::remove(out);
    if (status != 0) throw std::runtime_error("qpdf does not run, or refuses its options");
    return bytes;
}

} // namespace Quillet

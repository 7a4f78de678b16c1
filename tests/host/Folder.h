#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <unistd.h>

namespace Host::Test {

/// An empty folder of the test's own, removed after it.
class Folder
{
public:
    Folder()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        const std::string name = std::string("quillet ") + test->test_suite_name() + test->name();
        path = std::filesystem::path(testing::TempDir()) / (name + std::to_string(getpid()));
        std::filesystem::remove_all(path);
        std::filesystem::create_directory(path);
    }
    ~Folder() { std::filesystem::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path Get(const std::string& name) const { return path / name; }

    void Put(const std::string& name, const std::string& content) const
    {
        std::ofstream(Get(name), std::ios::binary) << content;
    }

    std::string Read(const std::string& name) const
    {
        std::ifstream file(Get(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    auto CountFiles() const { return std::distance(std::filesystem::directory_iterator(path), {}); }

private:
    std::filesystem::path path;
};

} // namespace Host::Test

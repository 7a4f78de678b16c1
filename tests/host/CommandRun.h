#pragma once

#include "CommandLine.h"
#include "Folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Host::Test {

/// Runs the command in this process, in a folder of the test's own.
class CommandRun : public testing::Test
{
public:
    /// Runs the command with words of which those that start with FILE or OUT name files in the test's folder; keeps
    /// what it prints, if that is wanted.
    int Run(std::vector<std::string> words, bool isCaptured = true)
    {
        words.insert(words.begin(), "quillet");
        std::vector<const char*> arguments;
        for (std::string& word : words) {
            for (const char* name : {"FILE", "OUT"}) {
                if (word.starts_with(name)) word.replace(0, std::string(name).size(), folder.Get(name).string());
            }
            arguments.push_back(word.c_str());
        }
        if (!isCaptured) return RunCommandLine(static_cast<int>(arguments.size()), arguments.data());
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = RunCommandLine(static_cast<int>(arguments.size()), arguments.data());
        output = testing::internal::GetCapturedStdout();
        problems = testing::internal::GetCapturedStderr();
        return status;
    }

    /// What becomes of FILE in the format that the suffix names; the conversion must succeed.
    std::string Convert(const std::string& suffix, const std::vector<std::string>& options = {})
    {
        std::vector<std::string> words{"convert", "FILE", "-o", "OUT." + suffix};
        words.insert(words.end(), options.begin(), options.end());
        EXPECT_EQ(Run(words), 0) << problems;
        return folder.Read("OUT." + suffix);
    }

    std::string GetProblem(const std::string& text) const
    {
        return "quillet: " + folder.Get("FILE").string() + ": " + text + "\n";
    }

    Folder folder;
    std::string output;
    std::string problems;
};

} // namespace Host::Test

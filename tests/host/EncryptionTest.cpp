#include "CommandLine.h"

#include "CommandRun.h"
#include "ExitStatus.h"
#include "support/PdfBuilder.h"
#include "support/Qpdf.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Host::Test {
namespace {

using Json = nlohmann::json;
using Quillet::PdfBuilder;
using Quillet::RunQpdf;
using testing::HasSubstr;
using testing::Not;
using Words = std::vector<std::string>;

/// Strings, streams, metadata and a layer name: all that encryption touches.
std::string MakeSample()
{
    PdfBuilder builder = Quillet::MakePageBuilder(
        "/OC /L BDC 1 0 0 rg 10 10 40 40 re f EMC 5 w 0 0 m 50 60 l S",
        {.resources = "/Properties << /L 5 0 R >>",
         .objects = {"<< /Type /OCG /Name (Ground floor) >>", "<< /Title (A \\(nested\\) title) >>",
                     PdfBuilder::MakeStream("<x/>", "/Type /Metadata /Subtype /XML")},
         .catalog = "/Metadata 7 0 R /OCProperties << /OCGs [5 0 R] /D << >> >>"});
    builder.trailer += " /Info 6 0 R";
    return builder.Build();
}

class EncryptionTest : public CommandRun
{
public:
    /// Converts FILE; a null tree if nothing was written.
    Json ConvertToJson(const Words& options = {})
    {
        Words words{"convert", "FILE", "-o", "OUT.json"};
        words.insert(words.end(), options.begin(), options.end());
        std::filesystem::remove(folder.Get("OUT.json"));
        status = Run(words);
        const std::string text = folder.Read("OUT.json");
        return text.empty() ? Json() : Json::parse(text);
    }

    void Protect(const std::string& user, const std::string& owner, const Words& method, const Words& before = {})
    {
        Words options = before;
        options.insert(options.end(), {"--encrypt", user, owner});
        options.insert(options.end(), method.begin(), method.end());
        options.emplace_back("--");
        folder.Put("FILE", RunQpdf(MakeSample(), options));
    }

    int status = -1;
};

/// Each method with two of four pairs of passwords, the file with and without object streams in turn.
TEST_F(EncryptionTest, GivesTheTreeOfTheOpenTwin)
{
    const std::pair<const char*, Words> methods[] = {
        {"RC4-40", {"40"}},
        {"RC4-128", {"128", "--use-aes=n"}},
        {"RC4-128", {"128", "--use-aes=n", "--force-V4"}},
        {"AES-128", {"128", "--use-aes=y"}},
        {"AES-256", {"256", "--allow-insecure"}},
        {"RC4-128", {"128", "--use-aes=n", "--force-V4", "--cleartext-metadata"}},
        {"AES-128", {"128", "--use-aes=y", "--cleartext-metadata"}},
        {"AES-256", {"256", "--allow-insecure", "--cleartext-metadata"}},
    };
    const std::pair<std::string, std::string> passwords[] = {{"", ""}, {"user", ""}, {"user", "owner"}, {"", "owner"}};
    folder.Put("FILE", MakeSample());
    const Json twin = ConvertToJson();
    ASSERT_EQ(twin["pages"][0]["root"]["children"][0]["name"], "Ground floor");
    for (std::size_t i = 0; i < 2 * std::size(methods); ++i) {
        const auto& [name, options] = methods[i / 2];
        const auto& [user, owner] = passwords[(i + i / 8) % 4];
        SCOPED_TRACE(testing::Message() << options.front() << options.back() << ' ' << user << ' ' << owner);
        Protect(user, owner, options, {i % 4 < 2 ? "--object-streams=disable" : "--object-streams=generate"});
        for (const std::string& password : {user, owner, std::string("wrong")}) {
            const Json tree = ConvertToJson({"--password", password});
            if (password == "wrong" || (password.empty() && !user.empty())) {
                EXPECT_EQ(status, ExitPassword);
                EXPECT_TRUE(tree.is_null());
                EXPECT_EQ(problems, GetProblem(password.empty() ? "a password is needed (10)"
                                                                : "the password does not fit (10)"));
                continue;
            }
            EXPECT_EQ(status, ExitDone);
            EXPECT_EQ(tree["pages"], twin["pages"]);
            EXPECT_EQ(tree["document"]["title"], twin["document"]["title"]);
            EXPECT_EQ(tree["document"]["encryption"], name);
            // Up to revision 4 the user's password is the owner's as well where there is no other.
            const bool isShared = owner.empty() && options.front() != "256";
            EXPECT_EQ(tree["document"]["decryptLevel"], !password.empty() && (password == owner || isShared) ? 4 : 3);
        }
    }
}

TEST_F(EncryptionTest, ReadsPasswordsAsTheyAreTyped)
{
    const Words rc4{"128", "--use-aes=n"};
    const Words aes{"256"};
    const struct
    {
        const char* written;
        const char* typed;
        Words method;
        int status;
    } rows[] = {
        // UTF-8, as it stands.
        {"p\u00E4ssw\u00F6rt", "p\u00E4ssw\u00F6rt", rc4, ExitDone},
        {"p\u00E4ssw\u00F6rt", "p\u00E4ssw\u00F6rt", aes, ExitDone},
        {"\u5BC6\u7801", "\u5BC6\u7801", aes, ExitDone},
        // PDFDocEncoding: letters where code page 1252 has them, and a euro where it has another place.
        {"p\xE4ssw\xF6rt", "p\u00E4ssw\u00F6rt", rc4, ExitDone},
        {"5 \xA0", "5 \u20AC", rc4, ExitDone},
        {"5 \xA0", "5 \u20AC", {"40"}, ExitDone},
        {"5 \xA0", "5 \u20AC", {"128", "--use-aes=y"}, ExitDone},
        {"5 \x80", "5 \u20AC", rc4, ExitPassword},
        // Characters that code page 1252 lacks are left out.
        {"az", "a\u5BC6z", rc4, ExitDone},
        // Only 32 bytes count up to revision 4.
        {"12345678901234567890123456789012", "12345678901234567890123456789012345", rc4, ExitDone},
        // SASLprep.
        {"IXz", "\u2168\u00ADz", aes, ExitDone},
        {"a z", "a\u00A0z", aes, ExitDone},
    };
    for (const auto& row : rows) {
        for (const bool isOwner : {false, true}) {
            Protect(isOwner ? "u" : row.written, isOwner ? row.written : "o", row.method, {"--password-mode=bytes"});
            ConvertToJson({"--password", row.typed});
            EXPECT_EQ(status, row.status) << row.typed << isOwner;
            EXPECT_THAT(problems, Not(HasSubstr(row.typed)));
        }
    }
}

TEST_F(EncryptionTest, TellsWhatIsAllowed)
{
    const Words all{"print",   "print in high quality",     "modify",   "assemble",
                    "extract", "extract for accessibility", "annotate", "fill forms"};
    const struct
    {
        Words options;
        Words missing;
    } rows[] = {
        {{"40", "--print=n"}, {"print", "print in high quality"}},
        {{"40", "--extract=n"}, {"extract", "extract for accessibility"}},
        {{"40", "--modify=n"}, {"modify"}},
        {{"40", "--annotate=n"}, {"annotate"}},
        {{"128", "--use-aes=y", "--print=low"}, {"print in high quality"}},
        {{"256", "--print=none"}, {"print", "print in high quality"}},
        {{"256", "--assemble=n"}, {"assemble"}},
        {{"256", "--form=n"}, {"fill forms"}},
        {{"256", "--annotate=n"}, {"annotate"}},
        {{"256", "--modify-other=n"}, {"modify"}},
        {{"256", "--extract=n"}, {"extract"}},
    };
    for (const auto& row : rows) {
        Protect("", "owner", row.options);
        for (const bool isOwner : {false, true}) {
            EXPECT_EQ(Run({"info", "FILE", "--json", "--password", isOwner ? "owner" : ""}), ExitDone);
            Words expected = all;
            if (!isOwner)
                std::erase_if(expected, [&](const auto& name) { return std::ranges::count(row.missing, name); });
            EXPECT_EQ(Json::parse(output)["document"]["permissions"], Json(expected)) << row.options.back();
        }
    }
    EXPECT_EQ(Run({"info", "FILE"}), ExitDone);
    EXPECT_THAT(output, HasSubstr("\nprotection   AES-256, opened as user\n"));
    EXPECT_THAT(output, HasSubstr("\npermissions  print, print in high quality, modify, assemble, extract for"));
}

TEST_F(EncryptionTest, SaysWhenPermissionsWithholdThePages)
{
    // An old file whose user may not extract, and whose page tree lies in an object stream.
    Protect("", "owner", {"40", "--extract=n"}, {"--object-streams=generate"});
    EXPECT_TRUE(ConvertToJson().is_null());
    EXPECT_EQ(status, ExitPassword);
    EXPECT_EQ(problems, GetProblem("the owner's password is needed: a user may not have the pages (10)"));
    EXPECT_EQ(ConvertToJson({"--password", "owner"})["pages"].size(), 1u);
}

TEST_F(EncryptionTest, NeverRepeatsAPassword)
{
    Protect("xyzzy plugh", "owner", {"256"});
    const Words rows[] = {
        {"info", "FILE", "--password", "xyzzy", "plugh"},
        {"info", "FILE", "--pasword", "xyzzy"},
        {"info", "FILE", "--pasword=xyzzy"},
        {"info", "FILE", "--password", "xyzzy", "--password", "plugh"},
        {"info", "FILE", "--password", "xyzzy", "--password-file", "FILE"},
        {"info", "FILE", "--password", "xyzzy"},
    };
    for (const Words& words : rows) {
        EXPECT_THAT(Run(words), testing::AnyOf(ExitCommandLine, ExitPassword));
        EXPECT_THAT(problems, testing::AllOf(Not(HasSubstr("xyzzy")), Not(HasSubstr("plugh"))));
        EXPECT_EQ(output, "");
    }
}

/// What a user at a terminal sees, and the exit status, when `typed` is typed at the prompts.
std::pair<std::string, int> RunOnTerminal(const std::filesystem::path& file, const std::string& typed)
{
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        // Whoever runs the tests in the background made them deaf to it.
        std::signal(SIGINT, SIG_DFL);
        alarm(60);
        const char* words[] = {"quillet", "info", file.c_str()};
        const int status = RunCommandLine(3, words);
        std::fflush(nullptr);
        _exit(status);
    }
    std::string seen;
    std::size_t sent = 0;
    char c = 0;
    while (read(terminal, &c, 1) == 1) {
        seen += c;
        if (sent == typed.size() || !seen.ends_with(": ") || !seen.substr(seen.rfind('\n') + 1).starts_with("Password"))
            continue;
        const std::size_t end = std::min(typed.find('\n', sent), typed.size() - 1);
        EXPECT_EQ(write(terminal, typed.data() + sent, end + 1 - sent), static_cast<ssize_t>(end + 1 - sent));
        sent = end + 1;
    }
    int status = -1;
    waitpid(child, &status, 0);
    close(terminal);
    return {seen, WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)};
}

TEST_F(EncryptionTest, AsksOnATerminal)
{
    Protect("open sesame", "owner", {"256"});
    const struct
    {
        const char* typed;
        int status;
        const char* seen;
        int prompts;
    } rows[] = {
        {"open sesame\n", ExitDone, "opened as user", 1},
        {"no\nowner\n", ExitDone, "opened as owner", 2},
        {"a\nb\nc\n", ExitPassword, "the password does not fit (10)", 3},
        {"\n", ExitPassword, "a password is needed (10)", 1},
        // The end of input, and Ctrl-C.
        {"\4", ExitPassword, "a password is needed (10)", 1},
        {"op\3", 128 + SIGINT, "Password for", 1},
    };
    for (const auto& row : rows) {
        const auto [seen, result] = RunOnTerminal(folder.Get("FILE"), row.typed);
        EXPECT_EQ(result, row.status) << seen;
        EXPECT_THAT(seen, HasSubstr(row.seen));
        EXPECT_THAT(seen, Not(HasSubstr("sesame")));
        int prompts = 0;
        for (auto at = seen.find("Password for"); at != seen.npos; at = seen.find("Password for", at + 1))
            ++prompts;
        EXPECT_EQ(prompts, row.prompts) << seen;
    }
}

} // namespace
} // namespace Host::Test

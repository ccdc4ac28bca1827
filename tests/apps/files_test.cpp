// veld convert: files read and written.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "apps/program.h"
#include "support/sanitizers.h"

namespace test {
namespace {

namespace fs = std::filesystem;

// The one process that this one has started.
pid_t childOf(pid_t parent) {
  const std::string number = std::to_string(parent);
  std::ifstream children("/proc/" + number + "/task/" + number + "/children");
  pid_t child = 0;
  children >> child;
  return child;
}

TEST(VeldFiles, FilesFollowOneAnother) {
  const Folder folder;
  const std::string one = folder.write("one", bytes("C3 A9"));
  const std::string two = folder.write("two", "b");
  const Outcome outcome = convert("utf-8", "wlatin1", "x", {one, "-", two});
  EXPECT_EQ(hex(outcome.output), "E9 78 62");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
}

TEST(VeldFiles, EveryFileIsATextOfItsOwn) {
  const Folder folder;
  const std::string big = folder.write("big", bytes("FE FF 00 E9"));
  const std::string little = folder.write("little", bytes("FF FE E9 00"));
  EXPECT_EQ(hex(convert("utf-16", "utf-8", "", {big, little}).output), "C3 A9 C3 A9");

  const std::string head = folder.write("head", bytes("61 E2 82"));
  const std::string tail = folder.write("tail", bytes("AC"));
  const Outcome cut = convert("utf-8", "utf-16le", "", {head, tail});
  EXPECT_EQ(hex(cut.output), "61 00 FD FF");
  EXPECT_EQ(cut.exitCode, 1);
  EXPECT_EQ(lineCount(cut.errors), 2u) << cut.errors;
}

TEST(VeldFiles, OutputGoesToANewFile) {
  const Folder folder;
  const Outcome outcome = convert("wlatin1", "utf-8", bytes("E9"), {"-o", folder.file("out")});
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(hex(folder.read("out")), "C3 A9");
  EXPECT_EQ(folder.names(), std::vector<std::string>{"out"});
}

TEST(VeldFiles, ADashIsStandardOutput) { EXPECT_EQ(convert("wlatin1", "utf-8", "a", {"-o", "-"}).output, "a"); }

TEST(VeldFiles, AFileCanTakeItsOwnPlace) {
  const Folder folder;
  const std::string file = folder.write("text", times(100000, bytes("E9")));
  chmod(file.c_str(), 0640);
  const Outcome outcome = convert("wlatin1", "utf-8", "", {"-o", file, file});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(folder.read("text"), times(100000, bytes("C3 A9")));
  struct stat facts;
  ASSERT_EQ(stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0640u);
}

// Its set-id bits were for what it held.
TEST(VeldFiles, TheNewFileHasThePermissionsOfTheOld) {
  const Folder folder;
  const std::string file = folder.write("text", "a");
  ASSERT_EQ(chmod(file.c_str(), 06751), 0);
  EXPECT_EQ(convert("wlatin1", "utf-8", "", {"-o", file, file}).exitCode, 0);
  struct stat facts;
  ASSERT_EQ(stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0751u);
}

TEST(VeldFiles, TheNewFileHasTheOwnerOfTheOld) {
  constexpr uid_t other = 65534;
  const Folder folder;
  const std::string file = folder.write("text", "a");
  if (chown(file.c_str(), other, other) != 0) GTEST_SKIP() << "this user can't give files away";
  ASSERT_EQ(chmod(file.c_str(), 04700), 0);
  EXPECT_EQ(convert("wlatin1", "utf-8", "", {"-o", file, file}).exitCode, 0);
  struct stat facts;
  ASSERT_EQ(stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, other);
  EXPECT_EQ(facts.st_gid, other);
  EXPECT_EQ(facts.st_mode & 07777, 0700u);
}

TEST(VeldFiles, NamesInBracketsAreNames) {
  const Folder folder;
  const std::string draft = folder.file("draft");
  folder.write("draft", "d");
  for (const char* name : {"[draft]", "[a,b]", "[]", "{}"}) {
    folder.write(name, name);
    const std::string there = fs::current_path().string();
    for (const char* mark : {"--", "--no-progress"}) {
      fs::current_path(fs::path(draft).parent_path());
      const Outcome outcome = runVeld({.arguments = {"validate", mark, name, "draft"}});
      fs::current_path(there);
      EXPECT_EQ(outcome.output, std::string(name) + ": valid utf-8, " + std::to_string(std::string(name).size()) +
                                    " bytes\ndraft: valid utf-8, 1 bytes\n");
    }
  }
}

TEST(VeldFiles, ALinkStaysALink) {
  const Folder folder;
  folder.write("text", "old");
  fs::create_symlink("text", folder.file("link"));
  EXPECT_EQ(convert("wlatin1", "utf-8", "new", {"-o", folder.file("link")}).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(folder.file("link")));
  EXPECT_EQ(folder.read("text"), "new");
}

TEST(VeldFiles, DevicesAreWrittenDirectly) {
  EXPECT_EQ(convert("wlatin1", "utf-8", "a", {"-o", "/dev/null"}).exitCode, 0);
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

// Others write there too: before, after and meanwhile.
TEST(VeldFiles, TextGoesOnWhereADescriptorStands) {
  for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
    const Folder folder;
    const std::string out = folder.write("out", "head");
    const int file = open(out.c_str(), O_WRONLY | O_APPEND);
    ASSERT_GE(file, 0);
    const std::string target = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file);
    EXPECT_EQ(convert("utf-8", "utf-8", "text", {"-o", target}).exitCode, 0);
    EXPECT_EQ(write(file, "foot", 4), 4);
    EXPECT_EQ(folder.read("out"), "headtextfoot");
    EXPECT_EQ(unlink(out.c_str()), 0);
    EXPECT_EQ(convert("utf-8", "utf-8", "text", {"-o", target}).exitCode, 0);
    EXPECT_EQ(folder.names(), std::vector<std::string>{});
    close(file);

    const Outcome own = convert("utf-8", "utf-8", "text", {"-o", name});
    EXPECT_EQ(own.exitCode, 0) << own.errors;
    EXPECT_EQ(own.output, "text") << name;
  }
  const Outcome absent = convert("utf-8", "utf-8", "text", {"-o", "/dev/fd/99"});
  EXPECT_EQ(absent.exitCode, 2);
  EXPECT_TRUE(contains(absent.errors, "/dev/fd/99: can't be opened for writing: ")) << absent.errors;
}

TEST(VeldFiles, ADescriptorOfAnInputIsRefused) {
  const Folder folder;
  const std::string file = folder.write("text", "ab");
  const Outcome outcome = runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "utf-16le", "-o", "/dev/stdout", file},
                                   .outputFile = file.c_str()});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, file + " is the output too; ")) << outcome.errors;
  EXPECT_EQ(folder.read("text"), "ab");
}

TEST(VeldFiles, ANameMayBeAsLongAsTheSystemTakes) {
  const Folder folder;
  const std::string longest(255, 'x');
  EXPECT_EQ(convert("wlatin1", "utf-8", "a", {"-o", folder.file(longest)}).exitCode, 0);
  EXPECT_EQ(folder.names(), std::vector<std::string>{longest});
  const Outcome tooLong = convert("wlatin1", "utf-8", "a", {"-o", folder.file(longest + 'x')});
  EXPECT_EQ(tooLong.exitCode, 2);
  EXPECT_TRUE(contains(tooLong.errors, "; choose a shorter name")) << tooLong.errors;
}

TEST(VeldFiles, AFullDeviceIsTold) {
  const Outcome outcome = convert("wlatin1", "utf-8", "a", {"-o", "/dev/full"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "/dev/full: can't be written: ")) << outcome.errors;
}

TEST(VeldFiles, AMissingFileIsTold) {
  const Folder folder;
  const Outcome outcome = convert("wlatin1", "utf-8", "", {"-o", folder.file("out"), folder.file("absent")});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, folder.file("absent") + ": can't be opened for reading: ")) << outcome.errors;
  EXPECT_EQ(folder.names(), std::vector<std::string>{});
}

TEST(VeldFiles, AFolderIsNoFile) {
  const Outcome outcome = convert("wlatin1", "utf-8", "", {"/"});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "/: can't be read: ")) << outcome.errors;
}

TEST(VeldFiles, AnOutputInNoFolderIsTold) {
  const Folder folder;
  const Outcome outcome = convert("wlatin1", "utf-8", "a", {"-o", folder.file("absent/out")});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "no file can be made beside it: ")) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, "; make its folder first")) << outcome.errors;
}

TEST(VeldFiles, AnInputThatIsTheOutputIsRefused) {
  const Folder folder;
  const std::string file = folder.write("text", "ab");
  const Outcome outcome =
      runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "utf-16le", file}, .outputFile = file.c_str()});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, file + " is the output too; ")) << outcome.errors;
  EXPECT_EQ(folder.read("text"), "ab");
}

// Ends a program that waits.
void endLate(int) {
  siginfo_t ended{};
  for (int tries = 0; tries < 2500 && ended.si_pid == 0; ++tries) {
    usleep(2000);
    waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT);
  }
  if (ended.si_pid == 0) kill(childOf(getpid()), SIGKILL);
}

TEST(VeldFiles, APipeIsntWaitedForInVain) {
  const Folder folder;
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const auto told = [&](const std::string& input) {
    const Outcome outcome =
        runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "utf-8", "-o", pipe, input}, .writer = endLate});
    EXPECT_EQ(outcome.exitCode, 2);
    return outcome.errors;
  };
  EXPECT_TRUE(contains(told(pipe), pipe + " is the output too; "));
  EXPECT_TRUE(contains(told(folder.file("absent")), "can't be opened for reading"));
}

TEST(VeldFiles, ADeviceMayBeReadAndWritten) {
  EXPECT_EQ(convert("utf-8", "utf-8", "", {"-o", "/dev/null", "/dev/null"}).exitCode, 0);
}

TEST(VeldFiles, MessagesStayOutOfTheOutput) {
  const Folder folder;
  const std::string out = folder.file("out");
  const Outcome outcome = runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1", "-o", out},
                                   .input = bytes("61 CE 94 62"),
                                   .closedFile = STDERR_FILENO});
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(hex(folder.read("out")), "61 1A 62");
  const Outcome closed =
      runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1"}, .input = "a", .closedFile = STDOUT_FILENO});
  EXPECT_EQ(closed.exitCode, 2);
}

// A name is what others choose: a line stays a line, and a terminal what it is.
TEST(VeldFiles, ControlCharactersInNamesAreShownAsEscapes) {
  const Folder folder;
  const std::string odd = folder.write("a\nb\x1B[31m\x7F", bytes("61 CE 94"));
  const Outcome lossy = convert("utf-8", "wlatin1", "", {odd});
  EXPECT_EQ(lineCount(lossy.errors), 1u) << lossy.errors;
  EXPECT_TRUE(contains(lossy.errors, "/a\\nb\\x1B[31m\\x7F: offset 1, ")) << lossy.errors;
  const Outcome valid = runVeld({.arguments = {"validate", odd}});
  EXPECT_EQ(lineCount(valid.output), 1u) << valid.output;
  EXPECT_TRUE(contains(valid.output, "/a\\nb\\x1B[31m\\x7F: valid utf-8")) << valid.output;
  const Outcome fault = runVeld({.arguments = {"validate", "--all", "-f", "utf-16le", odd}});
  EXPECT_EQ(lineCount(fault.output), 2u) << fault.output;
  EXPECT_EQ(lineCount(runVeld({.arguments = {"validate", odd + "\n"}}).errors), 1u);
  EXPECT_EQ(lineCount(convert("utf-8", "wlatin1", "", {odd + "\n"}).errors), 1u);
  EXPECT_EQ(lineCount(convert("x\ny", "wlatin1", "").errors), 1u);
}

// Those of terminals of eight bits, ends of lines, and what turns the direction of writing.
TEST(VeldFiles, ControlsBeyondAsciiAreShownAsEscapes) {
  const auto shown = [](const std::string& name) {
    const std::string errors = convert("utf-8", "utf-8", "", {"/absent/" + name}).errors;
    const size_t start = errors.find("absent/") + 7;
    return errors.substr(start, errors.find(": ", start) - start);
  };
  EXPECT_EQ(shown(bytes("61 C2 9B 62")), "a\\u009Bb");
  EXPECT_EQ(shown(bytes("9B 33 9F 62")), "\\x9B3\\x9Fb");
  EXPECT_EQ(
      shown(bytes("C0 9B E0 82 9B ED A0 80 F4 90 80 80")),
      bytes("C0") + "\\x9B" + bytes("E0") + "\\x82\\x9B" + bytes("ED A0") + "\\x80" + bytes("F4") + "\\x90\\x80\\x80");
  EXPECT_EQ(shown(bytes("E2 80 AE E2 80 A8 E2 80 A9 E2 81 A6 E2 80 8F D8 9C")),
            "\\u202E\\u2028\\u2029\\u2066\\u200F\\u061C");
  EXPECT_EQ(shown(bytes("E2 82")), bytes("E2") + "\\x82");
  for (const char* sound : {"C2 A0", "C3 9B", "E2 82 AC", "F0 9F 98 80", "E9 E8"}) {
    EXPECT_EQ(shown(bytes(sound)), bytes(sound));
  }
}

// At any step, in destructors too.
TEST(VeldFiles, ShortMemoryIsTold) {
  if (test::addressSanitizer || test::threadSanitizer) GTEST_SKIP() << "sanitizers need address space of their own";
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
  size_t refused = 0;
  for (rlim_t limit = 70'000'000; limit < 90'000'000; limit += 500'000) {
    const rlimit small{limit, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_AS, &small), 0);
    const Outcome converted = convert("latin1", "ibm-939", "a");
    const Outcome listed = runVeld({.arguments = {"encodings", "--json"}});
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    for (const Outcome& outcome : {converted, listed}) {
      if (outcome.exitCode == 0) continue;
      ++refused;
      EXPECT_EQ(outcome.exitCode, 2) << limit;
      EXPECT_EQ(outcome.errors, "veld: memory is exhausted; close other programs and try again\n") << limit;
    }
  }
  EXPECT_GT(refused, 0u);
}

TEST(VeldFiles, ASignalLeavesNoFileBeside) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGALRM}) {
    const Folder folder;
    const std::string out = folder.write("out", "old");
    size_t beside = 0;
    const auto writer = [&](int file) {
      if (write(file, "abc", 3) != 3) return;
      for (int tries = 0; tries < 1000 && folder.names().size() < 2; ++tries) usleep(2000);
      beside = folder.names().size();
      kill(childOf(getpid()), number);
      for (int tries = 0; tries < 1000 && folder.names().size() > 1; ++tries) usleep(2000);
    };
    const Outcome outcome =
        runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1", "-o", out}, .writer = writer});
    EXPECT_EQ(beside, 2u);
    EXPECT_EQ(outcome.exitCode, -1);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"out"});
    EXPECT_EQ(folder.read("out"), "old");
  }
}

TEST(VeldFiles, ALinkToAFileYetToBeMadeStaysALink) {
  const Folder folder;
  fs::create_symlink("text", folder.file("link"));
  EXPECT_EQ(convert("wlatin1", "utf-8", "new", {"-o", folder.file("link")}).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(folder.file("link")));
  EXPECT_EQ(folder.read("text"), "new");
  fs::create_symlink("round", folder.file("round"));
  const Outcome round = convert("wlatin1", "utf-8", "new", {"-o", folder.file("round")});
  EXPECT_EQ(round.exitCode, 2);
  EXPECT_TRUE(contains(round.errors, "can't be followed")) << round.errors;
}

}  // namespace
}  // namespace test

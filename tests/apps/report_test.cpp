// veld convert and validate: machine-readable reports, and progress.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "apps/program.h"
#include "progress.h"

namespace test {
namespace {

using Json = nlohmann::json;

Json object(std::string_view line) { return Json::parse(line, nullptr, false); }

std::vector<Json> objects(const std::string& text) {
  std::vector<Json> list;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) list.push_back(object(line));
  return list;
}

const std::vector<std::string> json{"--report", "json"};

TEST(VeldReport, AWholeConversion) {
  const Outcome outcome = convert("shift-jis", "utf-8", bytes("82 A0"), json);
  EXPECT_EQ(object(outcome.errors), Json::parse(R"({"file": "standard input", "from": "shift-jis", "to": "utf-8",
                                                    "result": "whole", "read": 2, "written": 3, "losses": []})"));
  EXPECT_EQ(outcome.output, bytes("E3 81 82"));
}

TEST(VeldReport, EachReasonOfALoss) {
  const auto loss = [](const char* from, const char* to, std::string_view text) {
    const Json report = object(convert(from, to, bytes(text), json).errors);
    EXPECT_EQ(report["result"], "loss");
    return report["losses"];
  };
  EXPECT_EQ(loss("utf-8", "wlatin1", "61 CE 94"), Json::parse(R"([{"offset": 1, "line": 1, "column": 2,
    "bytes": "CE 94", "reason": "unmappable", "character": "U+0394"}])"));
  EXPECT_EQ(loss("utf-8", "utf-16le", "61 0A C0 80"), Json::parse(R"([{"offset": 2, "line": 2, "column": 1,
    "bytes": "C0 80", "reason": "malformed"}])"));
  EXPECT_EQ(loss("wlatin1", "utf-8", "81"), Json::parse(R"([{"offset": 0, "line": 1, "column": 1,
    "bytes": "81", "reason": "unassigned"}])"));
  EXPECT_EQ(loss("utf-8", "iso2022jp", "E2 91 A0 E2 91 A1"), Json::parse(R"([{"offset": 0, "line": 1, "column": 1,
    "bytes": "E2 91 A0", "reason": "unmappable", "character": "U+2460"}])"));
  EXPECT_EQ(loss("utf-8", "wlatin1", "CE 94 61 CE"), Json::parse(R"([{"offset": 0, "line": 1, "column": 1,
    "bytes": "CE 94", "reason": "unmappable", "character": "U+0394"},
    {"offset": 3, "line": 1, "column": 3, "bytes": "CE", "reason": "cut"}])"));
}

TEST(VeldReport, AStopIsTold) {
  std::vector<std::string> more = json;
  more.insert(more.end(), {"--on-loss", "fail"});
  const Json report = object(convert("utf-8", "wlatin1", bytes("61 62 CE 94 63"), more).errors);
  EXPECT_EQ(report["result"], "stopped");
  EXPECT_EQ(report["read"], 2);
  EXPECT_EQ(report["written"], 2);
}

// However the text is cut into blocks.
TEST(VeldReport, ReadEndsAheadOfTheLossThatStops) {
  std::vector<std::string> more = json;
  more.insert(more.end(), {"--on-loss", "fail"});
  for (const size_t ahead : {size_t{3}, size_t{65535}}) {
    const Folder folder;
    std::vector<std::string> words = more;
    words.push_back(folder.write("text", times(ahead, "a") + bytes("A1 C4 62")));
    const Json report = object(convert("euc-jp", "ebcdic1047", "", words).errors);
    EXPECT_EQ(report["losses"][0]["offset"], ahead);
    EXPECT_EQ(report["read"], ahead);
    EXPECT_EQ(report["written"], ahead);
  }
}

TEST(VeldReport, EachFileHasAnObject) {
  const Folder folder;
  const std::string whole = folder.write("whole", "a");
  const std::string odd = folder.write("odd \xFF\n\"\\\x1B name", bytes("C3"));
  const Outcome outcome = runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1", "--report", "json", whole,
                                                 odd, folder.file("absent"), whole}});
  EXPECT_EQ(outcome.exitCode, 2);
  const std::vector<Json> reports = objects(outcome.errors);
  ASSERT_EQ(reports.size(), 3u) << outcome.errors;
  EXPECT_EQ(reports[0]["file"], whole);
  EXPECT_EQ(reports[1]["losses"][0]["reason"], "cut");
  EXPECT_TRUE(contains(reports[1]["file"].get<std::string>(), "odd \xEF\xBF\xBD\n\"\\\x1B name"));
  EXPECT_EQ(reports[2]["result"], "failed");
  EXPECT_TRUE(contains(reports[2]["error"].get<std::string>(), "can't be opened for reading"));
}

TEST(VeldReport, ReadCountsACutEnd) {
  EXPECT_EQ(object(convert("utf-16le", "utf-8", bytes("61 00 62"), json).errors)["read"], 3);
  EXPECT_EQ(object(convert("utf-32le", "utf-8", bytes("61 00 00 00 62 00"), json).errors)["read"], 6);
}

TEST(VeldReport, NotesStandOnlyWhereThereAreAny) {
  const auto report = [](const char* encoding, std::string_view text) {
    return object(
        runVeld({.arguments = {"validate", "--report", "json", "-f", encoding}, .input = bytes(text)}).output);
  };
  EXPECT_FALSE(report("utf-8", "FF").contains("notes"));
  EXPECT_FALSE(report("dec-jp", "8E B1").contains("notes"));
  EXPECT_TRUE(report("ibm-942", "B1").contains("notes"));
}

TEST(VeldReport, WarningsStandInTheObject) {
  const Json report = object(convert("utf-e", "utf-8", bytes("C1"), json).errors);
  ASSERT_EQ(report["warnings"].size(), 1u) << report;
}

TEST(VeldReport, ValidationHasAnObjectForEachFile) {
  const Folder folder;
  const std::string good = folder.write("good", "a");
  const std::string bad = folder.write("bad", bytes("80 0A 80"));
  const Outcome outcome =
      runVeld({.arguments = {"validate", "--all", "--report", "json", good, bad, folder.file("absent"), "/", good}});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_EQ(outcome.errors, "");
  const std::vector<Json> reports = objects(outcome.output);
  ASSERT_EQ(reports.size(), 5u) << outcome.output;
  EXPECT_EQ(reports[0],
            (Json{{"file", good}, {"encoding", "utf-8"}, {"faults", Json::array()}, {"result", "valid"}, {"read", 1}}));
  EXPECT_EQ(reports[1]["result"], "invalid");
  EXPECT_EQ(reports[1]["read"], 3);
  EXPECT_EQ(reports[1]["faults"], Json::parse(R"([{"offset": 0, "line": 1, "column": 1, "bytes": "80 0A 80"},
                                                  {"offset": 2, "line": 2, "column": 1, "bytes": "80"}])"));
  EXPECT_EQ(reports[2]["result"], "failed");
  EXPECT_EQ(reports[3]["result"], "failed");
  EXPECT_TRUE(contains(reports[3]["error"].get<std::string>(), "can't be read"));
  EXPECT_EQ(reports[4]["result"], "valid");
}

// They are the program's own text in a terminal's eyes.
TEST(VeldReport, ControlCharactersAreEscapes) {
  const Folder folder;
  const std::string odd = folder.write("a\x7F\xC2\x9B\xE2\x80\xAE\xC3\xA9", "a");
  const Outcome outcome = runVeld({.arguments = {"validate", "--report", "json", odd}});
  EXPECT_TRUE(contains(outcome.output, "/a\\u007F\\u009B\\u202E\xC3\xA9\"")) << outcome.output;
  EXPECT_EQ(object(outcome.output)["file"], odd);
}

// Writes a line for ever, or until the program reads no more; returns how many bytes it took.
size_t writeLines(int file, std::string_view line) {
  constexpr size_t most = 4 << 20;
  const std::string lines = times(4096 / line.size(), line);
  size_t taken = 0;
  for (ssize_t count = 0; taken < most && (count = write(file, lines.data(), lines.size())) > 0;) {
    taken += static_cast<size_t>(count);
  }
  return taken;
}

TEST(VeldReport, AFailedOutputEndsTheRun) {
  const std::vector<std::pair<std::vector<std::string>, const char*>> runs{
      {{"format", "number"}, "1\n"},
      {{"format", "--report", "json", "number"}, "1\n"},
      {{"validate", "--all"}, "\xFF\n"},
      {{"validate", "--all", "--report", "json"}, "\xFF\n"}};
  for (const auto& [arguments, line] : runs) {
    SCOPED_TRACE(arguments[0] + arguments[1]);
    size_t taken = 0;
    const auto writer = [&](int file) { taken = writeLines(file, line); };
    const Outcome outcome = runVeld({.arguments = arguments, .writer = writer, .outputFile = "/dev/full"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.errors, "veld: standard output can't be written; is its device full?\n");
    EXPECT_LT(taken, size_t{1} << 20);
  }
}

TEST(VeldProgress, AsksNothingOfShortRuns) { EXPECT_EQ(convert("utf-8", "wlatin1", "a").errors, ""); }

TEST(VeldProgress, TellsTheLastStateWhenAsked) {
  const Folder folder;
  const std::string file = folder.write("text", times(1000, "a"));
  const Outcome known = convert("utf-8", "wlatin1", "", {"--progress", file, file});
  EXPECT_TRUE(contains(known.errors, "veld: 100 %, 2.0 kB of 2.0 kB, ")) << known.errors;
  EXPECT_TRUE(contains(known.errors, "/s, 0:00 left\n")) << known.errors;
  const Outcome unknown = convert("utf-8", "wlatin1", times(1000, "a"), {"--progress"});
  EXPECT_TRUE(contains(unknown.errors, "veld: 1.0 kB, ")) << unknown.errors;
  const Outcome validated = runVeld({.arguments = {"validate", "--progress", file}});
  EXPECT_TRUE(contains(validated.errors, "veld: 100 %, 1.0 kB of 1.0 kB, ")) << validated.errors;
  EXPECT_EQ(convert("utf-8", "wlatin1", "a", {"--no-progress"}).errors, "");
  EXPECT_EQ(convert("utf-8", "wlatin1", "a", {"--no-progress", "--progress"}).exitCode, 2);
}

// What a program writes to a terminal.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) std::abort();
    name_ = ptsname(master_);
  }
  ~Terminal() { close(master_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  const char* name() const { return name_.c_str(); }

  // All of it, when no program has it open any more.
  std::string text() const {
    std::string all;
    char part[256];
    for (ssize_t count = 0; (count = read(master_, part, sizeof part)) > 0;) {
      all.append(part, static_cast<size_t>(count));
    }
    return all;
  }

 private:
  int master_;
  std::string name_;
};

// Pauses for longer than progress stays silent, and then for longer than it is left as it is.
void writeSlowly(int file) {
  for (const useconds_t pause : {1'050'000u, 120'000u, 0u}) {
    if (write(file, "abc", 3) != 3) return;
    usleep(pause);
  }
}

TEST(VeldProgress, ShowsByItselfOnATerminalAndIsCleared) {
  const Terminal terminal;
  const Outcome outcome = runVeld(
      {.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1"}, .writer = writeSlowly, .errorFile = terminal.name()});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.output, "abcabcabc");
  const std::string text = terminal.text();
  const std::string start = "\r\x1B[K";
  EXPECT_TRUE(text.starts_with(start + "6 B, ")) << text;
  EXPECT_TRUE(contains(text, "/s" + start + "9 B, ")) << text;
  EXPECT_TRUE(text.ends_with("/s" + start)) << text;
  EXPECT_EQ(lineCount(text), 0u) << text;
}

TEST(VeldProgress, IsSilentOnATerminalThatHasTheOutput) {
  const Terminal terminal;
  const Outcome outcome = runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1"},
                                   .writer = writeSlowly,
                                   .outputFile = terminal.name(),
                                   .errorFile = terminal.name()});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(terminal.text(), "abcabcabc");
}

TEST(VeldProgress, IsSilentOnATerminalInShortRuns) {
  const Terminal terminal;
  const Outcome outcome =
      runVeld({.arguments = {"convert", "-f", "utf-8", "-t", "wlatin1"}, .input = "abc", .errorFile = terminal.name()});
  EXPECT_EQ(outcome.output, "abc");
  EXPECT_EQ(terminal.text(), "");
}

TEST(VeldProgress, Text) {
  using veld::progressText;
  EXPECT_EQ(progressText(0, std::nullopt, 0), "0 B, 0 B/s");
  EXPECT_EQ(progressText(1500, std::nullopt, 0.5), "1.5 kB, 3.0 kB/s");
  EXPECT_EQ(progressText(1'200'000'000, 2'900'000'000, 4), "41 %, 1.2 GB of 2.9 GB, 300.0 MB/s, 0:06 left");
  EXPECT_EQ(progressText(1'000'000, 5'000'000'000, 1), "0 %, 1.0 MB of 5.0 GB, 1.0 MB/s, 1:23:19 left");
  EXPECT_EQ(progressText(0, 10, 1), "0 %, 0 B of 10 B, 0 B/s");
  // A file that grew behind its size.
  EXPECT_EQ(progressText(20, 10, 1), "20 B, 20 B/s");
}

}  // namespace
}  // namespace test

#include "apps/program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "support/guard.h"

namespace test {

namespace {

void writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(file, text.data(), text.size());
    if (count < 0) return;  // the program ended without reading all
    text.remove_prefix(static_cast<size_t>(count));
  }
}

void feed(int file, const Call& call) {
  if (call.writer) return call.writer(file);
  if (call.pieceSize == 0) return writeAll(file, call.input);
  for (size_t start = 0; start < call.input.size(); start += call.pieceSize) {
    writeAll(file, std::string_view(call.input).substr(start, call.pieceSize));
    usleep(2000);
  }
}

[[noreturn]] void runProgram(const Call& call, int input, int output, int errors) {
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  if (call.closedFile >= 0) close(call.closedFile);
  signal(SIGPIPE, SIG_DFL);
  unsetenv("VELD_SESSION_ENCODING");
  unsetenv("VELD_SESSION_LANGUAGE");
  for (const std::string& variable : call.environment) {
    const size_t equals = variable.find('=');
    setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
  }
  std::vector<std::string> words{VELD_PROGRAM};
  words.insert(words.end(), call.arguments.begin(), call.arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execv(VELD_PROGRAM, pointers.data());
  _exit(127);
}

std::string readWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

bool inProcessLocale() { return std::getenv("VELDNLS_DECIMAL_POINT") != nullptr; }

std::vector<std::string> usualEnvironment() {
  if (inProcessLocale()) return {};
  return {"LC_ALL=C"};
}

Outcome runVeld(const Call& call) {
  signal(SIGPIPE, SIG_IGN);
  const Folder folder;
  const std::string outputPath = call.outputFile != nullptr ? call.outputFile : folder.file("output");
  const std::string errorPath = call.errorFile != nullptr ? call.errorFile : folder.file("errors");
  const int output = open(outputPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
  const int errors = open(errorPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
  int input[2];
  if (output < 0 || errors < 0 || pipe2(input, O_CLOEXEC) != 0) std::abort();
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) runProgram(call, input[0], output, errors);
  close(input[0]);
  close(output);
  close(errors);
  feed(input[1], call);
  close(input[1]);

  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  Outcome outcome;
  if (WIFEXITED(status)) outcome.exitCode = WEXITSTATUS(status);
  outcome.peakKilobytes = usage.ru_maxrss;
  if (call.outputFile == nullptr) outcome.output = readWhole(outputPath);
  if (call.errorFile == nullptr) outcome.errors = readWhole(errorPath);
  return outcome;
}

Outcome convert(const std::string& from, const std::string& to, std::string_view input, std::vector<std::string> more) {
  std::vector<std::string> arguments{"convert", "-f", from, "-t", to};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return runVeld({.arguments = std::move(arguments), .input = std::string(input)});
}

Outcome convertInPieces(const std::string& from, const std::string& to, std::string_view input) {
  return runVeld({.arguments = {"convert", "-f", from, "-t", to}, .input = std::string(input), .pieceSize = 1});
}

void expectWhole(const Outcome& outcome, std::string_view expectedHex) {
  EXPECT_EQ(hex(outcome.output), expectedHex);
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.exitCode, 0);
}

void expectLoss(const Outcome& outcome, std::string_view expectedHex, std::string_view place, std::string_view words) {
  EXPECT_EQ(hex(outcome.output), expectedHex);
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(lineCount(outcome.errors), 1u) << outcome.errors;
  const std::string at = "standard input: " + std::string(place);
  EXPECT_TRUE(contains(outcome.errors, at + ": ") || contains(outcome.errors, at + ", ")) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, words)) << outcome.errors;
}

std::string bytes(std::string_view digits) {
  const std::vector<uint8_t> values = fromHex(digits);
  return {values.begin(), values.end()};
}

std::string hex(std::string_view text) { return toHex({reinterpret_cast<const uint8_t*>(text.data()), text.size()}); }

std::string times(size_t count, std::string_view text) {
  std::string whole;
  for (size_t i = 0; i < count; ++i) whole += text;
  return whole;
}

bool contains(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

size_t lineCount(std::string_view text) { return static_cast<size_t>(std::count(text.begin(), text.end(), '\n')); }

Folder::Folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "veld-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  path_ = pattern;
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string Folder::write(const std::string& name, std::string_view content) const {
  std::ofstream(file(name), std::ios::binary) << content;
  return file(name);
}

std::string Folder::read(const std::string& name) const { return readWhole(file(name)); }

std::vector<std::string> Folder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace test

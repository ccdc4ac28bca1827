// The command line of veld.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>

#include "convert.h"
#include "diff.h"
#include "doomed_file.h"
#include "encodings.h"
#include "failure.h"
#include "host_services.h"
#include "info.h"
#include "list_option.h"
#include "locale_commands.h"
#include "module.h"
#include "names.h"
#include "text.h"
#include "validate.h"

namespace {

constexpr const char* convertNotes =
    R"(Names are any that "veld encodings" shows; "session" is the encoding of --session-encoding.
FROM utf-16 reads a byte order mark and takes it off; without one the text is little-endian.
No byte order mark is ever written.

The first character of each file that doesn't come over is told with its offset, line and column, its bytes and the
reason: malformed in FROM, no character there, or no place in TO. A file that ends inside a character counts as cut, and
the part is left out. With --report json each file gets an object on a line of standard error instead of sentences.

What the library doesn't report, this program adds:
  - A replaced character is found by running its block again.
  - Bytes of a single-byte FROM that have no meaning there count as substituted, and so do bytes that another
    single-byte TO has only under another meaning.
  - So do single bytes of a multi-byte FROM that have no meaning there, and an ESC or another byte that begins a
    shift sequence which isn't one.
  - Bytes from 80 on count as substituted when TO us-ascii takes the text as it is.
  - Characters that a code page TO takes and doesn't give back count as substituted: those with a best fit, as letters
    without their accent in ms-936, and those that are written as codes which the page reads as others or not at all.
  - Unpaired surrogates and values beyond U+10FFFF count as malformed in every Unicode form.
  - Characters of plane 16 count as substituted from utf-8 to utf-8, utf-16 and utf-e, and all beyond U+FFFF to gb18030.
  - FROM utf-16be, plain to open EBCDIC pages (as ebcdic1047 to open_ed-1047), single to multi-byte encodings and back,
    and pages FROM aeasteuro go through utf-16le.
  - TO gb18030 has its four-byte codes, whatever was converted before.
  - A shifted TO, as ibm-939 or iso2022jp, has no shift sequences but where the mode changes.
  - FROM utf-e gets a warning: its two-byte characters are read as others, but to multi-byte encodings; so do ibm-1381,
    fujitsu-cn and hitquo-cn, of which only the single bytes have tables.

FROM iso2022jp and jis-7 know ESC $ B and ESC ( J alone, not ESC $ @ and ESC ( B.

Exit status: 0 all came over; 1 something was substituted, malformed or cut; 2 not done.)";

constexpr const char* validateNotes =
    R"(Standard output gets a line for each fault, with its offset, line and column, and the bytes that stand there, and a line
with the result of each file; with --report json an object on a line for each file.
Offsets count bytes from 0, lines and columns from 1; a column is a character, and a line ends with LF, or in EBCDIC with
LF or NEL. NAME utf-16 reads a byte order mark.

With --all the text goes on one byte behind a fault, in UTF-16 and UTF-32 one unit, in the shift state that held there.
Some rules of the library are narrower than what "veld convert" writes, which a note tells beside a fault that may be
sound text: UTF-32 ends at U+1018F, and gb18030 is known in part. utf-8 is taken up to F7 BF BF BF. utf-e, ucsu and some
pages can't be validated.

Exit status: 0 valid; 1 there is a fault; 2 not done.)";

constexpr const char* diffNotes =
    R"(A character counts as one of an encoding if "veld convert" writes it there without a loss. Codes are bytes and pairs of
bytes, in shifted encodings those of either mode, and four bytes of gb18030. They aren't compared with Unicode forms.

Exit status: 0 no difference; 1 there are differences; 2 not done.)";

struct SessionArguments {
  std::string encoding;
  std::string language;
};

struct EncodingsArguments {
  std::string name;
  bool json = false;
};

struct DiffArguments {
  std::string a;
  std::string b;
  bool json = false;
};

veld::Format formatOf(bool json) { return json ? veld::Format::json : veld::Format::text; }

void addFiles(CLI::App& command, std::vector<std::string>& files) {
  veld::takeAsGiven(command.add_option("files", files, "Files to read, - is standard input; else standard input"))
      ->type_name("FILE");
}

void addReport(CLI::App& command, veld::ReportFormat& report, veld::Progress::When& progress) {
  const auto set = [&report](const std::string& word) {
    report = word == "json" ? veld::ReportFormat::json : veld::ReportFormat::text;
  };
  command.add_option_function<std::string>("--report", set, "How to tell of each file")
      ->transform(CLI::IsMember({"text", "json"}, CLI::ignore_case))
      ->default_str("text");
  CLI::Option* on = command.add_flag_callback(
      "--progress", [&progress] { progress = veld::Progress::When::always; },
      "Show bytes, rate and time left on standard error; by itself on a terminal when it takes long");
  CLI::Option* off = command.add_flag_callback(
      "--no-progress", [&progress] { progress = veld::Progress::When::never; }, "Never show them");
  on->excludes(off);
}

void addConvert(CLI::App& app, veld::ConvertArguments& arguments) {
  CLI::App* command = app.add_subcommand("convert", "Convert text from one encoding to another");
  command->add_option("-f,--from", arguments.from, "Encoding of the text")->required()->type_name("FROM");
  command->add_option("-t,--to", arguments.to, "Encoding wanted")->required()->type_name("TO");
  command->add_option("-o,--output", arguments.output, "File to write, replaced only when done; else standard output")
      ->type_name("OUT");
  const auto setOnLoss = [&arguments](const std::string& word) {
    arguments.onLoss = word == "fail" ? veld::OnLoss::fail : veld::OnLoss::substitute;
  };
  command->add_option_function<std::string>("--on-loss", setOnLoss, "What to do when a character doesn't come over")
      ->transform(CLI::IsMember({"substitute", "fail"}, CLI::ignore_case))
      ->default_str("substitute");
  addReport(*command, arguments.report, arguments.progress);
  addFiles(*command, arguments.files);
  command->footer(convertNotes);
  command->fallthrough();
}

void addValidate(CLI::App& app, veld::ValidateArguments& arguments) {
  CLI::App* command = app.add_subcommand("validate", "Find where text isn't well-formed");
  command->add_option("-f,--from", arguments.encoding, "Encoding of the text")
      ->type_name("NAME")
      ->capture_default_str();
  command->add_flag("--all", arguments.all, "Tell all faults, not the first of each file alone");
  addReport(*command, arguments.report, arguments.progress);
  addFiles(*command, arguments.files);
  command->footer(validateNotes);
  command->fallthrough();
}

void addDiff(CLI::App& app, DiffArguments& arguments) {
  CLI::App* command = app.add_subcommand("diff", "Show the characters on which two encodings differ");
  command->add_option("a", arguments.a, "Any name of an encoding")->required()->type_name("A");
  command->add_option("b", arguments.b, "Any name of another")->required()->type_name("B");
  command->add_flag("--json", arguments.json, "Print JSON");
  command->footer(diffNotes);
  command->fallthrough();
}

void addEncodings(CLI::App& app, EncodingsArguments& arguments) {
  CLI::App* command = app.add_subcommand("encodings", "Show the encoding table, or all about one encoding");
  command->add_option("name", arguments.name, "Any name of an encoding")->type_name("NAME");
  command->add_flag("--json", arguments.json, "Print JSON");
  command->fallthrough();
}

// Asks the library for its first double-byte type, which has an encoding in every language that it reads names by.
void applyLanguage(QZNLS& nls, const std::string& language) {
  constexpr int32_t sessionLanguage = 0;
  constexpr int32_t firstType = 1;
  veld::setSessionLanguage(veld::toUtf16(nls, language));
  if (nls.resolveDbcsEncoding(&nls, sessionLanguage, firstType) != 0) return;
  throw veld::Failure("unknown session language \"" + language +
                      "\"; \"veld --help\" lists those of --session-language");
}

void applySession(QZNLS& nls, const SessionArguments& arguments) {
  if (!arguments.language.empty()) applyLanguage(nls, arguments.language);
  if (!arguments.encoding.empty()) veld::setSessionEncoding(veld::findEncoding(nls, arguments.encoding));
}

// The commands and what they were given.
struct CommandLine {
  std::string modulePath;
  SessionArguments session;
  veld::ConvertArguments convert;
  veld::ValidateArguments validate;
  DiffArguments diff;
  EncodingsArguments encodings;
  veld::LocaleCommands locale;
};

void describe(CLI::App& app, CommandLine& line) {
  app.require_subcommand(1);
  app.set_version_flag("--version", veld::versionLine(), "Print the program's version and exit");
  app.add_option("--module", line.modulePath, "The library's module; else beside this program, then the install folder")
      ->type_name("FILE");
  app.add_option("--session-encoding", line.session.encoding, "What the encoding \"session\" is; else the host's")
      ->envname("VELD_SESSION_ENCODING")
      ->type_name("NAME");
  app.add_option("--session-language", line.session.language,
                 "Language in which names of double-byte types, as IBM or EUC, are read: JAPANESE, KOREAN, CHINESE, "
                 "TAIWANESE")
      ->envname("VELD_SESSION_LANGUAGE")
      ->type_name("NAME");
  addConvert(app, line.convert);
  addValidate(app, line.validate);
  addDiff(app, line.diff);
  addEncodings(app, line.encodings);
  line.locale.addTo(app);
  app.add_subcommand("info", "Show versions, and the encoding and locale of the host")->fallthrough();
}

int run(const CLI::App& app, const CommandLine& line) {
  const veld::Library library(line.modulePath);
  QZNLS& nls = library.nls();
  applySession(nls, line.session);
  if (app.got_subcommand("convert")) return veld::convert(nls, line.convert);
  if (app.got_subcommand("validate")) return veld::validate(nls, line.validate);
  if (app.got_subcommand("diff")) return veld::diff(nls, line.diff.a, line.diff.b, formatOf(line.diff.json));
  int result = veld::exitWhole;
  if (line.locale.run(nls, result)) return result;
  if (app.got_subcommand("encodings")) {
    veld::printEncodings(nls, line.encodings.name, formatOf(line.encodings.json));
  } else {
    veld::printInfo(library);
  }
  return veld::exitWhole;
}

// A file that is opened later must not take the place of a closed standard one, as messages would go into it. Reading
// and writing there fail as they would without this, but for messages.
void fillClosedFiles() {
  const int modes[] = {O_WRONLY, O_RDONLY, O_WRONLY};
  for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
    if (fcntl(file, F_GETFD) < 0) open("/dev/null", modes[file]);
  }
}

// "convert, validate and info"
std::string commandNames(const CLI::App& app) {
  const std::vector<const CLI::App*> commands = app.get_subcommands([](const CLI::App*) { return true; });
  std::string names;
  for (const CLI::App* command : commands) {
    if (!names.empty()) names += command == commands.back() ? " and " : ", ";
    names += command->get_name();
  }
  return names;
}

// What is wrong with the command line, and where to read on.
std::string usageFault(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  const std::vector<std::string> unknown = app.remaining();
  std::string fault = error.what();
  if (commands.empty() && (!unknown.empty() || error.get_name() == "RequiredError")) {
    fault = unknown.empty() ? "a command is missing" : '"' + unknown.front() + "\" is no command or option";
    fault += "; the commands are " + commandNames(app);
  }
  const std::string command = commands.empty() ? "" : commands.front()->get_name() + ' ';
  return fault + " (\"veld " + command + "--help\" tells more)";
}

// Ends a run that the command line ends.
int leave(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() != 0) {
    std::cerr << "veld: " << veld::onOneLine(usageFault(app, error)) << '\n';
    return veld::exitNotDone;
  }
  app.exit(error);
  std::cout.flush();
  veld::requireStandardOutput();
  return veld::exitWhole;
}

// Destructors of JSON values ask for memory, and can't pass on that there is none.
[[noreturn]] void endWithoutMemory() {
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc&) {
    veld::removeDoomedFile();
    std::cerr << "veld: " << veld::memoryShort << '\n';
    _exit(veld::exitNotDone);
  } catch (...) {
  }
  std::abort();
}

}  // namespace

int main(int argc, char** argv) {
  std::set_terminate(endWithoutMemory);
  fillClosedFiles();
  CLI::App app("veld: text between encodings, by the veldnls library", "veld");
  CommandLine line;
  describe(app, line);
  try {
    try {
      app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
      return leave(app, error);
    }
    const int result = run(app, line);
    std::cout.flush();
    veld::requireStandardOutput();
    return result;
  } catch (const std::bad_alloc&) {
    std::cerr << "veld: " << veld::memoryShort << '\n';
    return veld::exitNotDone;
  } catch (const std::exception& error) {
    std::cerr << "veld: " << veld::onOneLine(error.what()) << '\n';
    return veld::exitNotDone;
  }
}

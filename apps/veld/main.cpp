// The command line of veld.
#include <CLI/CLI.hpp>
#include <iostream>
#include <map>

#include "convert.h"
#include "encodings.h"
#include "failure.h"
#include "host_services.h"
#include "info.h"
#include "module.h"
#include "names.h"
#include "text.h"

namespace {

constexpr const char* convertNotes =
    R"(Names are any that "veld encodings" shows; "session" is the encoding of --session-encoding.
FROM utf-16 reads a byte order mark and takes it off; without one the text is little-endian.
No byte order mark is ever written.

What the library doesn't report, this program adds:
  - A replaced character is found by running its block again, and reported with its offset.
  - A file that ends inside a character counts as cut, and the part is left out.
  - Bytes of a single-byte FROM that have no meaning there count as substituted, and so do bytes that another
    single-byte TO has only under another meaning.
  - Bytes from 80 on count as substituted when TO us-ascii takes the text as it is.
  - Unpaired surrogates and values beyond U+10FFFF count as malformed in every Unicode form.
  - Characters of plane 16 count as substituted from utf-8 to utf-8, utf-16 and utf-e.
  - FROM utf-16be, and plain to open EBCDIC pages (as ebcdic1047 to open_ed-1047), go through utf-16le.
  - FROM utf-e gets a warning: its two-byte characters are read as others.

Exit status: 0 all came over; 1 something was substituted, malformed or cut; 2 not done.)";

struct SessionArguments {
  std::string encoding;
  std::string language;
};

struct EncodingsArguments {
  std::string name;
  bool json = false;
};

void addConvert(CLI::App& app, veld::ConvertArguments& arguments) {
  CLI::App* command = app.add_subcommand("convert", "Convert text from one encoding to another");
  command->add_option("-f,--from", arguments.from, "Encoding of the text")->required()->type_name("FROM");
  command->add_option("-t,--to", arguments.to, "Encoding wanted")->required()->type_name("TO");
  command->add_option("-o,--output", arguments.output, "File to write, replaced only when done; else standard output")
      ->type_name("OUT");
  const std::map<std::string, veld::OnLoss> ways{{"substitute", veld::OnLoss::substitute},
                                                 {"fail", veld::OnLoss::fail}};
  command->add_option("--on-loss", arguments.onLoss, "What to do when a character doesn't come over")
      ->transform(CLI::CheckedTransformer(ways, CLI::ignore_case).description("{substitute,fail}"))
      ->default_str("substitute");
  command->add_option("files", arguments.files, "Files to read, - is standard input; else standard input")
      ->type_name("FILE");
  command->footer(convertNotes);
  command->fallthrough();
}

void addEncodings(CLI::App& app, EncodingsArguments& arguments) {
  CLI::App* command = app.add_subcommand("encodings", "Show the encoding table, or all about one encoding");
  command->add_option("name", arguments.name, "Any name of an encoding")->type_name("NAME");
  command->add_flag("--json", arguments.json, "Print JSON");
  command->fallthrough();
}

void applySession(QZNLS& nls, const SessionArguments& arguments) {
  if (!arguments.language.empty()) veld::setSessionLanguage(veld::toUtf16(nls, arguments.language));
  if (!arguments.encoding.empty()) veld::setSessionEncoding(veld::findEncoding(nls, arguments.encoding));
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("veld: text between encodings, by the veldnls library", "veld");
  app.require_subcommand(1);
  std::string modulePath;
  SessionArguments session;
  veld::ConvertArguments convertArguments;
  EncodingsArguments encodingsArguments;
  app.add_option("--module", modulePath, "The library's module; else beside this program, then the install folder")
      ->type_name("FILE");
  app.add_option("--session-encoding", session.encoding, "What the encoding \"session\" is; else the host's")
      ->envname("VELD_SESSION_ENCODING")
      ->type_name("NAME");
  app.add_option("--session-language", session.language,
                 "Language in which names of double-byte types, as IBM or EUC, are read: JAPANESE, KOREAN, CHINESE, "
                 "TAIWANESE")
      ->envname("VELD_SESSION_LANGUAGE")
      ->type_name("NAME");
  addConvert(app, convertArguments);
  addEncodings(app, encodingsArguments);
  app.add_subcommand("info", "Show versions, and the encoding and locale of the host")->fallthrough();

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? veld::exitWhole : veld::exitNotDone;
  }

  try {
    const veld::Library library(modulePath);
    applySession(library.nls(), session);
    if (app.got_subcommand("convert")) return veld::convert(library.nls(), convertArguments);
    if (app.got_subcommand("encodings")) {
      veld::printEncodings(library.nls(), encodingsArguments.name,
                           encodingsArguments.json ? veld::Format::json : veld::Format::text);
    } else {
      veld::printInfo(library);
    }
    return veld::exitWhole;
  } catch (const std::exception& error) {
    std::cerr << "veld: " << error.what() << '\n';
    return veld::exitNotDone;
  }
}

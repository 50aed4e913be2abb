// The command line of a vsps command: its description (synopsis, options
// with their help) and the one parser every command uses.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace vsps::tool {

using Args = std::vector<std::string>;

struct OptionSpec {
  const char* name;   // "--codec", "-o"
  const char* value;  // shown in the help ("NAME"); nullptr: a flag without value
  const char* help;   // one line
};

struct CommandSpec {
  const char* name;      // "lpc"
  const char* synopsis;  // the words after the name, e.g. "FILE.wav [options]"
  const char* summary;   // one line for "vsps --help"
  std::vector<OptionSpec> options;
};

// The parsed words: positional ones in order, options with their values
// (flags with an empty value).
struct Options {
  std::vector<std::string> positional;
  std::vector<std::pair<std::string, std::string>> named;
  const std::string* get(const std::string& name) const;
  bool has(const std::string& name) const { return get(name) != nullptr; }
};

enum class ParseResult { Ok, Help, Error };

// Parses args against syntax: "--name value", "--name=value", "-o value",
// flags, positional words anywhere, "--" ends the options. "-h" or "--help"
// prints the command's help on out (ParseResult::Help); an unknown option,
// a missing value or a value given to a flag gives ParseResult::Error with
// the reason on err.
ParseResult parse_command_line(const CommandSpec& syntax, const Args& args, Options* opt, FILE* out, FILE* err);

// "usage: vsps NAME SYNOPSIS", the summary and one line per option.
void print_command_help(const CommandSpec& syntax, FILE* f);

}  // namespace vsps::tool

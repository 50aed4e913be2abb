#include "tools/options.h"

#include <cstring>

namespace vsps::tool {

const std::string* Options::get(const std::string& name) const {
  for (const auto& [k, v] : named)
    if (k == name) return &v;
  return nullptr;
}

void print_command_help(const CommandSpec& syntax, FILE* f) {
  std::fprintf(f, "usage: vsps %s%s%s\n  %s\n", syntax.name, syntax.synopsis[0] ? " " : "", syntax.synopsis,
               syntax.summary);
  if (syntax.options.empty()) return;
  std::fprintf(f, "options (--name=value or --name value):\n");
  for (const OptionSpec& o : syntax.options) {
    const std::string left = std::string(o.name) + (o.value ? std::string(" ") + o.value : "");
    std::fprintf(f, "  %-22s %s\n", left.c_str(), o.help);
  }
  std::fprintf(f, "  %-22s %s\n", "-h, --help", "this help");
}

ParseResult parse_command_line(const CommandSpec& syntax, const Args& args, Options* opt, FILE* out, FILE* err) {
  bool optionsEnded = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (optionsEnded || a.size() < 2 || a[0] != '-') {
      opt->positional.push_back(a);
      continue;
    }
    if (a == "--") {
      optionsEnded = true;
      continue;
    }
    if (a == "-h" || a == "--help") {
      print_command_help(syntax, out);
      return ParseResult::Help;
    }
    const std::size_t eq = a.rfind("--", 0) == 0 ? a.find('=') : std::string::npos;
    const std::string name = a.substr(0, eq);
    const OptionSpec* found = nullptr;
    for (const OptionSpec& o : syntax.options)
      if (name == o.name) found = &o;
    if (found == nullptr) {
      std::fprintf(err, "vsps %s: unknown option %s\n", syntax.name, name.c_str());
      return ParseResult::Error;
    }
    if (found->value == nullptr) {
      if (eq != std::string::npos) {
        std::fprintf(err, "vsps %s: option %s takes no value\n", syntax.name, name.c_str());
        return ParseResult::Error;
      }
      opt->named.emplace_back(name, "");
    } else if (eq != std::string::npos) {
      opt->named.emplace_back(name, a.substr(eq + 1));
    } else if (i + 1 < args.size()) {
      opt->named.emplace_back(name, args[++i]);
    } else {
      std::fprintf(err, "vsps %s: option %s needs a value\n", syntax.name, name.c_str());
      return ParseResult::Error;
    }
  }
  return ParseResult::Ok;
}

}  // namespace vsps::tool

// crv, the command-line face of crvlib: reads the options, pins the locale
// and hands over to a command. Nothing that goes wrong may end the process
// any other way than with an exit status and a message.
#include <cstdio>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/batch.h"
#include "cli/commands.h"
#include "crvlib/locale.h"

namespace {

using crvlib::cli::kExitUsage;

void Write(std::FILE* f, const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), f);
}

int Run(std::vector<std::string> args) {
  namespace cli = crvlib::cli;
  bool escapes = false;
  size_t i = 0;
  for (; i < args.size(); ++i) {
    std::string_view a = args[i];
    if (a == "-h" || a == "--help") {
      Write(stdout, std::string(cli::HelpText()));
      return cli::kExitOk;
    }
    if (a == "-e") {
      escapes = true;
    } else if (a == "--locale") {
      if (++i == args.size()) {
        Write(stderr, "crv: --locale needs a locale name\n");
        return kExitUsage;
      }
      crvlib::SetThreadLocale(args[i]);
    } else if (a.starts_with("--locale=")) {
      crvlib::SetThreadLocale(a.substr(9));
    } else if (a.starts_with("-") && a.size() > 1) {
      Write(stderr, "crv: unknown option " + args[i] + " (see crv --help)\n");
      return kExitUsage;
    } else {
      break;
    }
  }
  if (i == args.size()) {
    Write(stderr, "crv: name a routine (CLASS.MEMBER), batch or list; see crv --help\n");
    return kExitUsage;
  }
  const cli::Surface& surface = cli::ShippedSurface();
  std::string_view command = args[i];
  std::span<const std::string> rest(args.data() + i + 1, args.size() - i - 1);
  cli::Output output;
  int status;
  if (command == "batch") {
    if (!rest.empty()) {
      Write(stderr, "crv: batch takes no arguments; it reads requests on stdin\n");
      return kExitUsage;
    }
    cli::RunBatch(surface, stdin, stdout);
    return cli::kExitOk;
  } else if (command == "list") {
    if (rest.size() > 1) {
      Write(stderr, "crv: list takes at most one class name\n");
      return kExitUsage;
    }
    status = cli::RunList(
        surface, rest.empty() ? std::nullopt : std::optional<std::string_view>(rest[0]), output);
  } else {
    status = cli::RunCall(surface, command, rest, escapes, output);
  }
  Write(stdout, output.out);
  Write(stderr, output.err);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "crv: %s\n", e.what());
  } catch (...) {
    std::fprintf(stderr, "crv: unexpected failure\n");
  }
  return kExitUsage;
}

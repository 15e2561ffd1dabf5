// crv, the command-line face of crvlib: reads the options, pins the locale
// and hands over to a command. Nothing that goes wrong may end the process
// any other way than with an exit status and a message: output that cannot
// be written is an error (status 3), and an over-limit file write is the
// routine's error 61 rather than SIGXFSZ. SIGPIPE keeps its default, so a
// pipeline whose reader has gone ends crv quietly.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
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

// Writes to stdout, remembering the first failure for the final report.
class Stdout {
 public:
  void Write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) Failed();
  }
  // Flushes and gives `status`, or reports on stderr and gives 3 when
  // anything written was lost.
  int Finish(int status) {
    if (status == crvlib::cli::kExitInputOutput) return status;  // reported already
    if (std::fflush(stdout) != 0) Failed();
    if (error_ == 0 && !std::ferror(stdout)) return status;
    Report("cannot write the output: " + std::string(std::strerror(error_ ? error_ : EIO)));
    return crvlib::cli::kExitInputOutput;
  }

  static void Report(const std::string& message) {
    std::string line = "crv: " + message + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
  }

 private:
  void Failed() {
    if (error_ == 0) error_ = errno ? errno : EIO;
  }
  int error_ = 0;
};

int Usage(const std::string& message) {
  Stdout::Report(message);
  return kExitUsage;
}

// Pins the locale `name`, or says why not.
std::optional<int> PinLocale(std::string_view name) {
  if (name.empty()) return Usage("--locale needs a locale name");
  if (!crvlib::IsKnownLocale(name)) {
    return Usage("the locale data does not know the language of \"" + std::string(name) +
                 "\" (give a tag such as de-DE)");
  }
  crvlib::SetThreadLocale(name);
  return std::nullopt;
}

int Run(std::vector<std::string> args, Stdout& out) {
  namespace cli = crvlib::cli;
  cli::CallOptions options;
  size_t i = 0;
  for (; i < args.size(); ++i) {
    std::string_view a = args[i];
    if (a == "-h" || a == "--help") {
      out.Write(cli::HelpText());
      return cli::kExitOk;
    }
    if (a == "--version") {
      out.Write("crv " CRVLIB_VERSION "\n");
      return cli::kExitOk;
    }
    std::optional<int> refused;
    if (a == "-e") {
      options.escapes = true;
    } else if (a == "-r") {
      options.result_only = true;
    } else if (a == "--locale") {
      if (++i == args.size()) return Usage("--locale needs a locale name");
      refused = PinLocale(args[i]);
    } else if (a.starts_with("--locale=")) {
      refused = PinLocale(a.substr(9));
    } else if (a.starts_with("-") && a.size() > 1) {
      return Usage("unknown option " + args[i] + " (see crv --help)");
    } else {
      break;
    }
    if (refused) return *refused;
  }
  if (i == args.size())
    return Usage("name a routine (CLASS.MEMBER), batch, list or idl; see crv --help");
  const cli::Surface& surface = cli::ShippedSurface();
  std::string_view command = args[i];
  std::span<const std::string> rest(args.data() + i + 1, args.size() - i - 1);
  cli::Output output;
  int status;
  if (command == "batch") {
    if (!rest.empty()) return Usage("batch takes no arguments; it reads requests on stdin");
    std::string failure;
    if (!cli::RunBatch(surface, STDIN_FILENO, stdout, &failure)) {
      Stdout::Report(failure);
      return cli::kExitInputOutput;
    }
    return cli::kExitOk;
  } else if (command == "list") {
    if (rest.size() > 1) return Usage("list takes at most one class name");
    status = cli::RunList(
        surface, rest.empty() ? std::nullopt : std::optional<std::string_view>(rest[0]), output);
  } else if (command == "idl") {
    if (!rest.empty()) return Usage("idl takes no arguments");
    status = cli::RunIdl(surface, output);
  } else {
    status = cli::RunCall(surface, command, rest, options, output);
  }
  out.Write(output.out);
  std::fwrite(output.err.data(), 1, output.err.size(), stderr);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);
#endif
  Stdout out;
  try {
    return out.Finish(Run(std::vector<std::string>(argv + 1, argv + argc), out));
  } catch (const std::exception& e) {
    Stdout::Report(e.what());
  } catch (...) {
    Stdout::Report("unexpected failure");
  }
  return kExitUsage;
}

#include "sandbox/core/Options.h"

#include <charconv>
#include <optional>

namespace zuvi::sandbox {
namespace {

constexpr std::uint16_t defaultPort = 8080;
constexpr auto defaultData = "zuvi-sandbox-data";

/// The options as text, before they are looked at.
struct Arguments {
  std::optional<std::string> port, data, merchants, tls, snapshot, pictures;
  std::vector<std::string> failRules;
  bool help = false;
};

std::optional<std::string>* placeOf(std::string_view name, Arguments& arguments) {
  if (name == "--port") return &arguments.port;
  if (name == "--data") return &arguments.data;
  if (name == "--merchant") return &arguments.merchants;
  if (name == "--tls") return &arguments.tls;
  if (name == "--snapshot") return &arguments.snapshot;
  if (name == "--pictures") return &arguments.pictures;
  return nullptr;
}

Result<Arguments> split(const std::vector<std::string>& texts) {
  Arguments arguments;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string& name = texts[i];
    if (name == "--help") {
      arguments.help = true;
      continue;
    }
    auto* place = placeOf(name, arguments);
    if (place == nullptr && name != "--fail") return Error{"there is no option " + name};
    ++i;
    if (i == texts.size() || texts[i].empty()) return Error{name + " lacks its value"};
    if (place == nullptr) {
      arguments.failRules.push_back(texts[i]);
    } else if (*place) {
      return Error{name + " is given twice"};
    } else {
      *place = texts[i];
    }
  }
  return arguments;
}

Result<std::uint16_t> readPort(const std::string& text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (error != std::errc() || end != text.data() + text.size())
    return Error{"--port is no number from 0 to 65535"};
  return port;
}

Result<Options> snapshotOptions(const Arguments& arguments) {
  if (arguments.port || arguments.merchants || arguments.tls || !arguments.failRules.empty())
    return Error{"--snapshot goes with --data and --pictures only"};
  Options options;
  options.task = Task::snapshot;
  options.snapshot = {*arguments.snapshot, arguments.data.value_or(defaultData),
                      arguments.pictures.value_or("")};
  return options;
}

} // namespace

Result<Options> readOptions(const std::vector<std::string>& texts) {
  const auto arguments = split(texts);
  if (!arguments) return arguments.error();
  Options options;
  if (arguments->help) {
    options.task = Task::help;
    return options;
  }
  if (arguments->snapshot) return snapshotOptions(*arguments);
  if (arguments->pictures) return Error{"--pictures goes with --snapshot only"};

  const auto port = arguments->port ? readPort(*arguments->port) : defaultPort;
  if (!port) return port.error();
  options.server.port = *port;
  options.server.dataFolder = arguments->data.value_or(defaultData);
  options.server.tlsFolder = arguments->tls.value_or("");
  if (arguments->merchants) {
    auto merchants = Merchants::fromFile(*arguments->merchants);
    if (!merchants) return merchants.error();
    options.server.merchants = std::move(*merchants);
  }
  auto rules = FailPlan::parse(arguments->failRules);
  if (!rules) return rules.error();
  options.server.failRules = std::move(*rules);
  return options;
}

std::string_view usage() {
  return R"(zuvi-sandbox: a local back end to try a client against

  zuvi-sandbox [--port N] [--data DIR] [--merchant FILE] [--tls DIR] [--fail RULE]...
  zuvi-sandbox --snapshot FILE [--data DIR] [--pictures DIR]

  --port N         listen on this port of 127.0.0.1 (8080); 0 takes a free one
  --data DIR       keep what arrives there (zuvi-sandbox-data)
  --merchant FILE  a JSON object of merchants by client id, in place of the built-in ones
  --tls DIR        serve HTTPS; the certificate authority is made there on the first start
  --fail RULE      let operations fail: OPERATION:WHICH:ACTION, may be repeated
                   OPERATION  merchant identity append-face face document photo verify track
                              chat-template chat-page chat-message
                   WHICH      the number of a call, a range such as 2-4, or *
                   ACTION     drop cut truncate nonjson empty never message=TEXT
                              status=CODE json=TEXT delay=SECONDS
  --snapshot FILE  write a page of all that is stored, and end
  --pictures DIR   show the PNG pictures of that folder on it
)";
}

} // namespace zuvi::sandbox

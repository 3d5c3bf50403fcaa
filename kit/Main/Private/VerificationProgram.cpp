#include "kit/Main/Private/VerificationProgram.h"

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "kit/Main/Private/ZVKYCHelper.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/ProcessInfo.h"

#include <filesystem>
#include <utility>

namespace zuvi {

std::vector<std::string> locateProgram(std::vector<std::string> command) {
  if (command.empty() || command.front().find('/') != std::string::npos) return command;
  const std::filesystem::path code =
      ProcessInfo::folderOfCode(reinterpret_cast<const void*>(&locateProgram));
  for (const char* bin : {".", "../bin", "../../bin"}) { // the last from lib/ARCHITECTURE
    const auto program = code / bin / command.front();
    std::error_code none;
    if (!std::filesystem::is_regular_file(program, none)) continue;
    command.front() = program.string();
    break;
  }
  return command;
}

std::string verificationInput() {
  const ZVKYCHelper& helper = ZVKYCHelper::instance();
  Value::Dictionary input{{"client-id", helper.clinetId->value_or("")},
                          {"server", ZVEndpoints::serverURL()},
                          {"tracking", ZVEndpoints::trackingURL()},
                          {"chat-template", ZVEndpoints::chatTemplateURL()}};
  const auto add = [&input](const char* option, const std::optional<std::string>& value) {
    if (value && !value->empty()) input[option] = *value;
  };
  add("chat-domain", ZVEndpoints::chatDomain());
  add("chat-group", *LiveChat::groupId);
  add("chat-name", *LiveChat::name);
  add("chat-email", *LiveChat::email);
  add("host-version", stringValue(Bundle::main().infoDictionary(), "CFBundleShortVersionString"));
  add("host-build", stringValue(Bundle::main().infoDictionary(), "CFBundleVersion"));
  add("texts", helper.textsFile());
  add("language", helper.language());
  add("identity", helper.identity());
  add("ca", ZVEndpoints::additionalAuthorities());
  if (helper.style() != UIUserInterfaceStyle::Unspecified)
    input["style"] = helper.style() == UIUserInterfaceStyle::Dark ? "dark" : "light";
  if (const auto metadata = helper.metadata()) {
    Value::Dictionary texts; // as a form carries them; JSON has no dates
    for (const auto& [key, value] : *metadata)
      texts[key] = value.description();
    input["metadata"] = std::move(texts);
  }
  const auto json = JSONSerialization::data(input);
  return json ? json->string() : "{}";
}

} // namespace zuvi

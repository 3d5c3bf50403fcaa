// Property lists, of any bytes.

#include "fuzz/Json.h"
#include "platform/Foundation/PropertyList.h"
#include "testing/support/TemporaryFolder.h"

using namespace zuvi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const test::TemporaryFolder folder;
  const auto value = propertyListFromFile(folder.write("list.plist", fuzz::textOf(bytes, size)));
  if (value) (void)value->description();
  return 0;
}

#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/ProcessInfo.h"
#include "platform/Foundation/PropertyList.h"
#include "platform/Foundation/UserDefaults.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/support/ChildProcess.h"
#include "testing/support/ScopedEnvironment.h"
#include "testing/support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace zuvi {
namespace {

using test::TemporaryFolder;

unsigned mode(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
}

TEST(UserDefaultsTest, OutlivesTheObjectPrivatelyAndAlone) {
  const TemporaryFolder folder;
  const std::string path = folder.path("a/b/defaults.json");
  {
    UserDefaults defaults(path);
    defaults.set("list", Value::List{"x", "y"});
    defaults.set("gone", 1);
    defaults.set("gone", nullptr);
    defaults.set("refused", Value::List{Date{0}});
    defaults.set("refused", "\xff");
  }
  const UserDefaults defaults(path);
  EXPECT_EQ(defaults.value("list"), (Value::List{"x", "y"}));
  EXPECT_TRUE(defaults.value("gone").isNull());
  EXPECT_TRUE(defaults.value("refused").isNull());
  EXPECT_EQ(mode(path), 0600U);
  EXPECT_EQ(mode(folder.path("a")), 0700U);
  const std::filesystem::directory_iterator files(folder.path("a/b"));
  EXPECT_EQ(std::distance(begin(files), end(files)), 1); // no temporary file is left
}

TEST(UserDefaultsTest, ADamagedFileIsKeptAsideAndReadsAsEmpty) {
  for (const char* bytes : {"", "{\"a\":", "[1]", "\xff\xfe", "null"}) {
    const TemporaryFolder folder;
    const std::string path = folder.write("defaults.json", bytes);
    UserDefaults defaults(path);
    EXPECT_TRUE(defaults.value("a").isNull());
    EXPECT_EQ(TemporaryFolder::read(path + ".damaged"), bytes);
    defaults.set("a", 1);
    defaults.set("a", 2);
    defaults.synchronize();
    EXPECT_EQ(UserDefaults(path).value("a"), 2);
    EXPECT_EQ(TemporaryFolder::read(path + ".damaged"), bytes);
  }
}

TEST(UserDefaultsTest, WhatCannotBeReadStaysAndWhatCannotBeWrittenIsTriedAgain) {
  const TemporaryFolder folder;
  VirtualTime time;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  testing::internal::CaptureStderr();
  UserDefaults unreadable(pipe);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  unreadable.set("a", 1);
  unreadable.synchronize();
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
  EXPECT_EQ(unreadable.value("a"), 1);

  const std::string path = folder.path("in/the/way/defaults.json");
  UserDefaults defaults(path);
  folder.write("in", "no folder");
  defaults.set("a", 1);
  defaults.synchronize();
  std::filesystem::remove(folder.path("in"));
  time.advance(10);
  EXPECT_TRUE(time.waitUntil([&] { return UserDefaults(path).value("a") == 1; }));
}

TEST(UserDefaultsTest, TwoCopiesOfAProgramLoseNothing) {
  const TemporaryFolder folder;
  const std::string path = folder.path("defaults.json");
  {
    UserDefaults first(path);
    first.set("list", Value::List{"a", "b"});
    first.set("count", 1);
  }
  UserDefaults one(path), two(path);
  one.append("list", "c");
  one.set("count", 2);
  one.set("one", true);
  one.synchronize();
  two.set("list", Value::List{"b"}); // without a
  two.append("list", "d");
  two.synchronize();
  const UserDefaults both(path);
  EXPECT_EQ(both.value("list"), (Value::List{"b", "c", "d"}));
  EXPECT_EQ(both.value("count"), 2);
  EXPECT_EQ(both.value("one"), true);
  one.set("list", nullptr); // which never knew of d
  one.synchronize();
  EXPECT_EQ(UserDefaults(path).value("list"), Value::List{"d"});
  one.set("both", Value::List{});
  one.synchronize();
  two.set("both", Value::List{});
  two.synchronize();
  for (int i = 0; i < 50; i++)
    for (UserDefaults* copy : {&one, &two}) // while they save
      copy->append("both", copy == &one ? i : -i);
  one.synchronize();
  two.synchronize();
  EXPECT_EQ(UserDefaults(path).value("both").list()->size(), 99U);
}

TEST(ProcessInfoTest, KeepsItsNameWhenItsFileIsReplaced) {
  if (std::getenv("ZUVI_TEST_REPLACED")) {
    std::filesystem::remove(ProcessInfo::executablePath());
    EXPECT_EQ(ProcessInfo::processName(), "a program");
    return;
  }
  const TemporaryFolder folder;
  std::filesystem::copy(ProcessInfo::executablePath(), folder.path("a program"));
  const test::ScopedEnvironment replaced("ZUVI_TEST_REPLACED", "1");
  test::ChildProcess program({folder.path("a program"), "--gtest_filter=ProcessInfoTest.*"},
                             folder.path("log"));
  EXPECT_EQ(program.wait(), 0) << TemporaryFolder::read(folder.path("log"));
}

TEST(FileManagerTest, ReadsWholeFilesAndOnlyFiles) {
  const TemporaryFolder folder;
  const std::string bytes(3'000'000, 'z');
  const std::string path = folder.write("film", bytes);
  const auto data = FileManager::contents(path);
  EXPECT_TRUE(FileManager::removeItem(path));
  EXPECT_FALSE(FileManager::removeItem(path));
  ASSERT_TRUE(data);
  EXPECT_TRUE(data->view() == bytes);
  EXPECT_TRUE(FileManager::contents(folder.write("empty", ""))->empty());
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  std::filesystem::resize_file(folder.write("large", ""), std::uintmax_t{1} << 40);
  for (const auto& none :
       {path, folder.path(), folder.path("pipe"), folder.path("large"), std::string()})
    EXPECT_FALSE(FileManager::contents(none)) << none;
}

TEST(FileManagerTest, DocumentsAreTheUsersAloneAlsoWhereTheHomeCannotBeWritten) {
  const TemporaryFolder folder;
  {
    const test::ScopedEnvironment data("XDG_DATA_HOME", folder.path("data"));
    const std::string usual = FileManager::documentsDirectory().value_or("");
    EXPECT_TRUE(usual.starts_with(folder.path("data/"))) << usual;
    EXPECT_EQ(mode(usual), 0700U);
  }
  const test::ScopedEnvironment none("XDG_DATA_HOME", std::nullopt),
      run("XDG_RUNTIME_DIR", folder.path("run"));
  folder.write("file", "nobody makes a folder below this");
  for (const auto& home : {std::optional<std::string>(), std::optional(folder.path("file"))}) {
    const test::ScopedEnvironment set("HOME", home);
    testing::internal::CaptureStderr();
    const auto documents = FileManager::documentsDirectory();
    EXPECT_EQ(FileManager::documentsDirectory(), documents);
    const std::string told = testing::internal::GetCapturedStderr();
    ASSERT_TRUE(documents);
    EXPECT_TRUE(documents->starts_with(folder.path("run/"))) << *documents;
    EXPECT_EQ(mode(*documents), 0700U);
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), home ? 0 : 1) << "told once: " << told;
  }
}

TEST(PropertyListTest, ReadsValuesAndRefusesWhatIsNone) {
  const TemporaryFolder folder;
  EXPECT_EQ(propertyListFromFile(folder.write("good", R"(<?xml version="1.0"?><plist><dict>
              <key>a &amp; é</key><array><true/><integer>-7</integer><real>0.5</real></array>
              <key>empty</key><string/></dict></plist>)")),
            Value(Value::Dictionary{{"a & é", Value::List{true, -7, 0.5}}, {"empty", ""}}));
  std::string deep = "<plist>";
  for (int i = 0; i < 100'000; ++i)
    deep += "<array>";
  for (const char* text : {"", "no xml", "<plist/>", "<plist><dict><key>a</key></dict></plist>",
                           "<plist><integer>1x</integer></plist>", "<plist><true/><true/></plist>",
                           "<plist><odd/></plist>", "<plist><dict>", deep.c_str()})
    EXPECT_FALSE(propertyListFromFile(folder.write("x", text))) << std::string(text).substr(0, 80);
}

} // namespace
} // namespace zuvi

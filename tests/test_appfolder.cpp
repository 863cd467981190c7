// Finding the program folder: the default data beside the program in a build
// tree and in an installation, and the per-user folder made from it on the
// first run, the user's own from then on.
#include <cstdlib>
#include <filesystem>
#include <optional>

#include <gtest/gtest.h>

#include "platform/appfolder.h"
#include "testutil.h"

namespace fs = std::filesystem;

namespace {

std::string Text(const std::string& path) {
  auto b = kvtest::ReadBytes(path);
  return std::string(b.begin(), b.end());
}

// Sets an environment variable for the life of the object.
class EnvVar {
 public:
  EnvVar(const char* name, const char* value) : name_(name) {
    if (const char* old = std::getenv(name)) old_ = old;
    if (value)
      setenv(name, value, 1);
    else
      unsetenv(name);
  }
  ~EnvVar() {
    if (old_)
      setenv(name_, old_->c_str(), 1);
    else
      unsetenv(name_);
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

// A default program folder in `dir` as an installation has it: folders and
// files that nobody may write.
void MakeReadOnlySeed(const std::string& dir) {
  kvtest::WriteText(dir + "/data/terrain.txt", "\"Terrains\",1\r\n");
  kvtest::WriteText(dir + "/mapedit/t00/000000.txt", "001\r\n");
  kvtest::WriteText(dir + "/flags.xy", "20,30\r\n");
  fs::create_directories(dir + "/mapedit/roadpatterns");
  for (auto& e : fs::recursive_directory_iterator(dir))
    fs::permissions(e.path(), e.is_directory() ? fs::perms(0555) : fs::perms(0444));
}

void MakeWritableAgain(const std::string& dir) {
  for (auto& e : fs::recursive_directory_iterator(dir))
    fs::permissions(e.path(), fs::perms::owner_all, fs::perm_options::add);
}

}  // namespace

TEST(AppFolder, TheDefaultDataIsFoundBesideTheProgramInABuildTreeAndInAnInstallation) {
  kvtest::TempDir build, prefix, bare;
  kvtest::WriteText(build / "data/data/terrain.txt", "x");
  fs::create_directories(build / "bin");
  kvtest::WriteText(prefix / "share/korvane-mapedit/data/terrain.txt", "x");
  fs::create_directories(prefix / "bin");
  fs::create_directories(bare / "bin");
  fs::create_directories(bare / "share/korvane-mapedit/data");  // no tables: not the default data

  EXPECT_EQ(kv::DefaultDataFolder(build / "bin"), fs::canonical(build / "data").string());
  EXPECT_EQ(kv::DefaultDataFolder(prefix / "bin"), fs::canonical(prefix / "share/korvane-mapedit").string());
  EXPECT_EQ(kv::DefaultDataFolder(bare / "bin"), "");
}

TEST(AppFolder, TheFirstRunCopiesReadOnlyDefaultDataIntoAFolderTheUserMayChange) {
  kvtest::TempDir prefix, home;
  fs::create_directories(prefix / "bin");
  const std::string seed = prefix / "share/korvane-mapedit";
  MakeReadOnlySeed(seed);
  EnvVar xdg("XDG_DATA_HOME", home.path().c_str());

  std::string err;
  const std::string dir = kv::ResolveAppFolder("", prefix / "bin", &err);
  MakeWritableAgain(seed);
  ASSERT_EQ(dir, home / "korvane-mapedit") << err;
  EXPECT_EQ(Text(dir + "/data/terrain.txt"), "\"Terrains\",1\r\n");
  EXPECT_EQ(Text(dir + "/mapedit/t00/000000.txt"), "001\r\n");
  EXPECT_TRUE(fs::is_directory(dir + "/mapedit/roadpatterns"));
  int entries = 0;
  for (auto& e : fs::recursive_directory_iterator(dir)) {
    const fs::perms p = e.status().permissions();
    EXPECT_NE(p & fs::perms::owner_write, fs::perms::none) << e.path();
    if (e.is_directory()) {
      EXPECT_NE(p & fs::perms::owner_exec, fs::perms::none) << e.path();
    }
    ++entries;
  }
  EXPECT_EQ(entries, 7);  // data, terrain.txt, mapedit, t00, its list, roadpatterns, flags.xy
}

TEST(AppFolder, TheUsersFolderIsKeptAsItIsOnLaterRuns) {
  kvtest::TempDir prefix, home;
  kvtest::WriteText(prefix / "share/korvane-mapedit/data/terrain.txt", "default");
  kvtest::WriteText(prefix / "share/korvane-mapedit/flags.xy", "20,30");
  fs::create_directories(prefix / "bin");
  EnvVar xdg("XDG_DATA_HOME", home.path().c_str());
  std::string err;
  const std::string dir = kv::ResolveAppFolder("", prefix / "bin", &err);
  ASSERT_EQ(dir, home / "korvane-mapedit") << err;

  // What the user changed and removed stays changed and removed.
  kvtest::WriteText(dir + "/data/terrain.txt", "mine");
  fs::remove(dir + "/flags.xy");
  EXPECT_EQ(kv::ResolveAppFolder("", prefix / "bin", &err), dir);
  EXPECT_EQ(Text(dir + "/data/terrain.txt"), "mine");
  EXPECT_FALSE(fs::exists(dir + "/flags.xy"));
}

TEST(AppFolder, NoUsableFolderSaysWhy) {
  kvtest::TempDir prefix, home;
  fs::create_directories(prefix / "bin");
  std::string err;
  EXPECT_EQ(kv::ResolveAppFolder(home / "nowhere", prefix / "bin", &err), "");
  EXPECT_EQ(err, "The program folder " + (home / "nowhere") + " does not exist.");

  {
    EnvVar xdg("XDG_DATA_HOME", home.path().c_str());
    EXPECT_EQ(kv::ResolveAppFolder("", prefix / "bin", &err), "");
    EXPECT_NE(err.find("the default data was not found beside the program"), std::string::npos) << err;
    EXPECT_FALSE(fs::exists(home / "korvane-mapedit/data"));
  }
  EnvVar xdg("XDG_DATA_HOME", nullptr);
  EnvVar noHome("HOME", nullptr);
  EXPECT_EQ(kv::ResolveAppFolder("", prefix / "bin", &err), "");
  EXPECT_EQ(err, "No program folder: neither --app, XDG_DATA_HOME nor HOME is set.");
}

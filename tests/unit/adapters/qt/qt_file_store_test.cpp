// SPDX-License-Identifier: MIT
// SPDX-FileCopyrightText: 2026 The Pallimo authors

#include "adapters/qt/qt_file_store.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace pallimo::adapters::qt {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

/// A folder of one test, gone with it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (fs::temp_directory_path() / "pallimo-files-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_all, ignored);
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  fs::path operator/(const std::string& name) const { return path_ / name; }
  const fs::path& path() const { return path_; }

  /// The names in it, sorted.
  Texts names() const {
    Texts names;
    for (const auto& entry : fs::directory_iterator(path_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  fs::path path_;
};

/// A variable of the environment for the life of the object.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    if (const char* former = getenv(name)) former_ = former;
    setenv(name, value.c_str(), 1);
  }
  ~Variable() {
    if (former_) {
      setenv(name_, former_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> former_;
};

/// No file of this process grows beyond `bytes`: what a full disk looks like to a writer.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{bytes, former_.rlim_max};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no limit");
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &former_);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit former_{};
  void (*handler_)(int);
};

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::optional<std::string> writePieces(const fs::path& path, const Texts& pieces) {
  return QtFileStore().writeAtomically(path.string(), [&pieces](const auto& writer) {
    for (const std::string& piece : pieces) writer(piece);
  });
}

TEST(QtFileStore, WritesThePiecesAsOneFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(writePieces(folder / "log.csv", {"one\n", "", "two\n"}), std::nullopt);
  EXPECT_EQ(contents(folder / "log.csv"), "one\ntwo\n");
  EXPECT_EQ(folder.names(), Texts{"log.csv"});
}

TEST(QtFileStore, WritesBytesAsTheyAre) {
  const TemporaryFolder folder;
  const std::string bytes("\0\r\n\xff\xc3\xbc", 6);
  EXPECT_EQ(writePieces(folder / "log.csv", {bytes}), std::nullopt);
  EXPECT_EQ(contents(folder / "log.csv"), bytes);
}

TEST(QtFileStore, WritesAnEmptyFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(writePieces(folder / "log.csv", {}), std::nullopt);
  EXPECT_TRUE(fs::exists(folder / "log.csv"));
}

TEST(QtFileStore, WritesManyLargePieces) {
  const TemporaryFolder folder;
  std::string whole;
  Texts pieces;
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    pieces.emplace_back(100'000, letter);
    whole += pieces.back();
  }
  EXPECT_EQ(writePieces(folder / "log.csv", pieces), std::nullopt);
  EXPECT_EQ(contents(folder / "log.csv"), whole);
}

TEST(QtFileStore, TheFileTakesItsPlaceInOneStep) {
  const TemporaryFolder folder;
  ASSERT_EQ(writePieces(folder / "log.csv", {"old"}), std::nullopt);
  std::string meanwhile;
  QtFileStore().writeAtomically((folder / "log.csv").string(), [&](const auto& writer) {
    writer("new");
    meanwhile = contents(folder / "log.csv");
  });
  EXPECT_EQ(meanwhile, "old");
  EXPECT_EQ(contents(folder / "log.csv"), "new");
}

TEST(QtFileStore, AShorterFileReplacesALongerOne) {
  const TemporaryFolder folder;
  ASSERT_EQ(writePieces(folder / "log.csv", {"a long text"}), std::nullopt);
  EXPECT_EQ(writePieces(folder / "log.csv", {"short"}), std::nullopt);
  EXPECT_EQ(contents(folder / "log.csv"), "short");
  EXPECT_EQ(folder.names(), Texts{"log.csv"});
}

TEST(QtFileStore, GivesTheFileThePermissionsThatTheMaskLeaves) {
  const TemporaryFolder folder;
  const mode_t former = umask(027);
  const auto error = writePieces(folder / "log.csv", {"text"});
  umask(former);
  EXPECT_EQ(error, std::nullopt);
  EXPECT_EQ(static_cast<int>(fs::status(folder / "log.csv").permissions()), 0640);
}

TEST(QtFileStore, TakesNamesAsTheyAre) {
  const TemporaryFolder folder;
  Texts names = {"PwrData 2024-03-05 at 14.02.33.csv",
                 "it's \"here\"",
                 "two\nlines",
                 "電力 für",
                 "100%20",
                 "-rf *"};
  for (const std::string& name : names) {
    EXPECT_EQ(writePieces(folder / name, {name}), std::nullopt);
    EXPECT_EQ(contents(folder / name), name);
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(folder.names(), names);
}

TEST(QtFileStore, WithoutItsFolderTheFileIsNotWritten) {
  const TemporaryFolder folder;
  const auto path = folder / "gone/log.csv";
  EXPECT_EQ(writePieces(path, {"text"}), path.string() + ": No such file or directory");
  EXPECT_EQ(folder.names(), Texts{});
}

TEST(QtFileStore, AFileIsNoFolder) {
  const TemporaryFolder folder;
  ASSERT_EQ(writePieces(folder / "file", {"text"}), std::nullopt);
  EXPECT_EQ(writePieces(folder / "file/log.csv", {"text"}),
            (folder / "file/log.csv").string() + ": Not a directory");
  EXPECT_EQ(contents(folder / "file"), "text");
}

TEST(QtFileStore, AFolderIsNotReplaced) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "log.csv");
  EXPECT_NE(writePieces(folder / "log.csv", {"text"}), std::nullopt);
  EXPECT_TRUE(fs::is_directory(folder / "log.csv"));
  EXPECT_EQ(folder.names(), Texts{"log.csv"});
}

TEST(QtFileStore, AnErrorIsOneLineWhateverTheFoldersName) {
  const auto error = writePieces("/nowhere\nat\rall/log.csv", {"text"});
  EXPECT_EQ(error, "/nowhere\\nat\\rall/log.csv: No such file or directory");
}

/// Leaves the rights of root, which no permission stops; ends the process where that fails.
void becomeOrdinaryUser() {
  constexpr uid_t kNobody = 65534;
  if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(3);
}

TEST(QtFileStoreDeathTest, AFolderInWhichNothingMayBeMadeIsAnError) {
  const TemporaryFolder folder;
  fs::permissions(folder.path(), fs::perms(0555));
  const auto write = [&folder] {
    becomeOrdinaryUser();
    std::cerr << writePieces(folder / "log.csv", {"text"}).value_or("no error") << std::endl;
    _exit(0);
  };
  EXPECT_EXIT(write(), testing::ExitedWithCode(0), "log.csv: Permission denied");
  EXPECT_EQ(folder.names(), Texts{});
}

/// A file of which the folder allows no successor is not written over either.
TEST(QtFileStoreDeathTest, AFileThatCannotBeReplacedStaysAsItIs) {
  const TemporaryFolder folder;
  ASSERT_EQ(writePieces(folder / "log.csv", {"old"}), std::nullopt);
  fs::permissions(folder / "log.csv", fs::perms(0666));
  fs::permissions(folder.path(), fs::perms(0555));
  const auto write = [&folder] {
    becomeOrdinaryUser();
    std::cerr << writePieces(folder / "log.csv", {"new"}).value_or("no error") << std::endl;
    _exit(0);
  };
  EXPECT_EXIT(write(), testing::ExitedWithCode(0), "log.csv: Permission denied");
  EXPECT_EQ(contents(folder / "log.csv"), "old");
}

TEST(QtFileStore, WithoutRoomTheFormerFileStaysAndNoOtherIsLeft) {
  const TemporaryFolder folder;
  ASSERT_EQ(writePieces(folder / "log.csv", {"old"}), std::nullopt);
  std::optional<std::string> error;
  {
    const FileSizeLimit limit(150'000);
    error = writePieces(folder / "log.csv", Texts(4, std::string(64 * 1024, 'x')));
  }
  EXPECT_EQ(error, (folder / "log.csv").string() + ": File too large");
  EXPECT_EQ(contents(folder / "log.csv"), "old");
  EXPECT_EQ(folder.names(), Texts{"log.csv"});
}

TEST(QtFileStore, ALastPieceWithoutRoomIsNoticed) {
  const TemporaryFolder folder;
  std::optional<std::string> error;
  {
    const FileSizeLimit limit(1000);
    error = writePieces(folder / "log.csv", {std::string(900, 'x'), std::string(200, 'y')});
  }
  EXPECT_NE(error, std::nullopt);
  EXPECT_EQ(folder.names(), Texts{});
}

TEST(QtFileStore, AFolderThatGoesWhileTheFileIsWrittenIsAnError) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "logs");
  const auto error = QtFileStore().writeAtomically((folder / "logs/log.csv").string(),
                                                   [&folder](const auto& writer) {
                                                     writer("text");
                                                     fs::remove_all(folder / "logs");
                                                   });
  EXPECT_NE(error, std::nullopt);
  EXPECT_EQ(folder.names(), Texts{});
}

TEST(QtFileStore, WritesAgainAfterAFailure) {
  const TemporaryFolder folder;
  QtFileStore store;
  const auto write = [](const auto& writer) { writer("text"); };
  const std::string path = (folder / "logs/log.csv").string();
  EXPECT_NE(store.writeAtomically(path, write), std::nullopt);
  fs::create_directory(folder / "logs");
  EXPECT_EQ(store.writeAtomically(path, write), std::nullopt);
}

TEST(QtFileStore, OfTwoThreadsThatWriteOneFileOneWins) {
  const TemporaryFolder folder;
  const auto write = [&folder](char letter) {
    for (int i = 0; i < 20; ++i) {
      EXPECT_EQ(writePieces(folder / "log.csv", Texts(3, std::string(50'000, letter))),
                std::nullopt);
    }
  };
  std::thread other(write, 'b');
  write('a');
  other.join();
  const std::string text = contents(folder / "log.csv");
  EXPECT_TRUE(text == std::string(150'000, 'a') || text == std::string(150'000, 'b'));
  EXPECT_EQ(folder.names(), Texts{"log.csv"});
}

/// A home without settings of its own.
struct Home {
  TemporaryFolder folder;
  Variable home{"HOME", folder.path().string()};
  Variable config{"XDG_CONFIG_HOME", (folder / "config").string()};

  void nameDesktop(const std::string& text) const {
    fs::create_directory(folder / "config");
    std::ofstream(folder / "config/user-dirs.dirs") << "XDG_DESKTOP_DIR=\"" << text << "\"\n";
  }
};

TEST(QtFileStore, TheDesktopIsAtHome) {
  const Home home;
  EXPECT_EQ(QtFileStore().desktopFolder(), (home.folder / "Desktop").string());
}

TEST(QtFileStore, TheDesktopIsTheOneThatTheUserHasNamed) {
  const Home home;
  home.nameDesktop("$HOME/Schreibtisch");
  EXPECT_EQ(QtFileStore().desktopFolder(), (home.folder / "Schreibtisch").string());
}

TEST(QtFileStore, TheDesktopHasNoSlashAtItsEnd) {
  const Home home;
  home.nameDesktop("$HOME/");
  EXPECT_EQ(QtFileStore().desktopFolder(), home.folder.path().string());
}

}  // namespace
}  // namespace pallimo::adapters::qt
